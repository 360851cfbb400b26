#include "publishing/MarkdownEscape.h"

#include "publishing/TextScan.h"

namespace quire {

namespace {

bool isMarkup(QChar c)
{
    return c == u'\\' || c == u'`' || c == u'*' || c == u'_' || c == u'[' || c == u']';
}

// Whether `text`, trimmed, stands as it is. True of most titles, and quick to tell:
// no way out of the loop, so that the compiler takes many characters at once.
bool isPlain(QStringView text)
{
    const char16_t *const units = text.utf16();
    const qsizetype last = text.size() - 1;
    unsigned found = 0;
    for (qsizetype at = 0; at < last; ++at) {
        const char16_t c = units[at];
        found |= unsigned(c < u' ') | unsigned(c > u'~') | unsigned(c == u'\\') | unsigned(c == u'`')
            | unsigned(c == u'*') | unsigned(c == u'_') | unsigned(c == u'[') | unsigned(c == u']')
            | (unsigned(c == u' ') & unsigned(units[at + 1] == u' '));
    }
    return found == 0 && (text.isEmpty() || !isMarkup(text.back()));
}

} // namespace

void appendEscapedMarkdown(QString &document, QStringView text)
{
    text = text.trimmed();
    if (isPlain(text)) {
        document += text;
        return;
    }
    qsizetype appended = 0; // all before it
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar c = text[at];
        if (c == u' ' && !text[at + 1].isSpace()) { // the last one is none
            continue;
        }
        if (c.isSpace()) {
            document += text.sliced(appended, at - appended);
            document += u' ';
            while (text[at + 1].isSpace()) {
                ++at;
            }
            appended = at + 1;
        } else if (isMarkup(c)) {
            document += text.sliced(appended, at - appended);
            document += u'\\';
            appended = at; // with what follows
        }
    }
    document += text.sliced(appended);
}

void appendQuotedMarkdown(QString &document, QStringView text)
{
    document += u"> ";
    text = text.trimmed();
    for (;;) {
        const qsizetype end = indexOfAny<u'\n', u'\r'>(text);
        document += text.first(end);
        if (end == text.size()) {
            return;
        }
        if (text[end] == u'\n') {
            document += u"\n> ";
        }
        text = text.sliced(end + 1);
    }
}

} // namespace quire
