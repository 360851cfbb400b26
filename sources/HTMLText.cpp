#include "sources/HTMLText.h"

#include "records/Text.h"

namespace quire::HTMLText {

// These are scanners and not regular expressions, since the text comes from
// outside: an expression for a tag takes quadratic time on a text of many "<"
// without a ">". The tests compare them with the expressions they stand for.
namespace {

// Every `before`, as often as its tail follows again, replaced. An empty tail
// makes it the plain replacement, in which nothing is looked at twice.
QString replaced(const QString &text, QStringView before, QChar after, QStringView tail = {})
{
    qsizetype at = text.indexOf(before);
    if (at < 0) {
        return text;
    }
    const QStringView all(text);
    QString result;
    result.reserve(text.size());
    qsizetype copied = 0;
    for (; at >= 0; at = text.indexOf(before, copied)) {
        result += all.sliced(copied, at - copied);
        result += after;
        copied = at + before.size();
        while (!tail.isEmpty() && all.sliced(copied).startsWith(tail)) {
            copied += tail.size();
        }
    }
    result += all.sliced(copied);
    return result;
}

qsizetype afterSpace(QStringView text, qsizetype at)
{
    while (at < text.size() && text[at].isSpace()) {
        ++at;
    }
    return at;
}

bool standsAt(QStringView text, qsizetype at, QStringView word)
{
    return text.sliced(at).startsWith(word, Qt::CaseInsensitive);
}

// The three kinds of tag. `at` is where a "<" stands; the answer is the end of
// the tag that begins there, or `at` when none does.

// <\s*br\s*/?>
qsizetype endOfLineBreak(QStringView text, qsizetype at)
{
    qsizetype end = afterSpace(text, at + 1);
    if (end == text.size() || text[end].toLower() != u'b' || !standsAt(text, end, u"br")) {
        return at;
    }
    end = afterSpace(text, end + 2);
    if (end < text.size() && text[end] == u'/') {
        ++end;
    }
    return end < text.size() && text[end] == u'>' ? end + 1 : at;
}

// </(p|div)>
qsizetype endOfBlockEnd(QStringView text, qsizetype at)
{
    if (at + 1 == text.size() || text[at + 1] != u'/') {
        return at;
    }
    for (const QStringView tag : {QStringView(u"</p>"), QStringView(u"</div>")}) {
        if (standsAt(text, at, tag)) {
            return at + tag.size();
        }
    }
    return at;
}

// <[^>]+>
qsizetype endOfTag(QStringView text, qsizetype at)
{
    const qsizetype close = text.indexOf(u'>', at + 1);
    if (close < 0) {
        return -1; // nor does any begin further on
    }
    return close > at + 1 ? close + 1 : at;
}

QString withTagsReplaced(const QString &text, qsizetype (*endOf)(QStringView, qsizetype), QChar by)
{
    qsizetype at = text.indexOf(u'<');
    if (at < 0) {
        return text;
    }
    QString result;
    result.reserve(text.size());
    qsizetype copied = 0;
    while (at >= 0) {
        const qsizetype end = endOf(text, at);
        if (end < 0) {
            break;
        }
        if (end == at) {
            at = text.indexOf(u'<', at + 1);
            continue;
        }
        result += QStringView(text).sliced(copied, at - copied);
        result += by;
        copied = end;
        at = text.indexOf(u'<', copied);
    }
    result += QStringView(text).sliced(copied);
    return result;
}

// Carriage returns go, runs of blanks and tabs become one space, runs of three
// and more line feeds become two.
QString withRunsShortened(const QString &text)
{
    QString result;
    result.reserve(text.size());
    int lineFeeds = 0; // at the end of the result
    for (const QChar c : text) {
        if (c == u'\r') {
            continue;
        }
        const bool isBlank = c == u' ' || c == u'\t';
        if (isBlank && result.endsWith(u' ')) {
            continue;
        }
        lineFeeds = c == u'\n' ? lineFeeds + 1 : 0;
        if (lineFeeds < 3) {
            result += isBlank ? QChar(u' ') : c;
        }
    }
    return result;
}

} // namespace

QString decode(const QString &text)
{
    if (!text.contains(u'&')) {
        return text;
    }
    QString result = replaced(text, u"&amp;", u'&', u"amp;");
    result = replaced(result, u"&lt;", u'<');
    result = replaced(result, u"&gt;", u'>');
    result = replaced(result, u"&quot;", u'"');
    result = replaced(result, u"&#39;", u'\'');
    return replaced(result, u"&nbsp;", u' ');
}

QString plainText(const QString &text, std::optional<qsizetype> maximumLength)
{
    QString result = withTagsReplaced(text, endOfLineBreak, u'\n');
    result = withTagsReplaced(result, endOfBlockEnd, u'\n');
    result = withTagsReplaced(result, endOfTag, u' ');
    result = Text::trimmed(withRunsShortened(decode(result)));
    if (maximumLength) {
        const QString kept = Text::firstCharacters(result, *maximumLength);
        if (kept.size() < result.size()) {
            return kept + QStringLiteral("...");
        }
    }
    return result;
}

} // namespace quire::HTMLText
