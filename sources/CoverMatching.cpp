// Whether two titles and two authors are those of one work.

#include "records/Text.h"
#include "sources/CoverFinder.h"

#include <QRegularExpression>

namespace quire::CoverFinder {

namespace {

constexpr int sameTitle = 130;
constexpr int sameMainTitle = 110;
constexpr int titleAndMore = 85;
constexpr int sharedAuthor = 35;
constexpr int threshold = 110;

// A main title shorter than this says little about the work.
constexpr qsizetype tellingLength = 6; // characters

constexpr qsizetype shortestToken = 3; // characters

// What is compared of a title.
struct MatchTitle
{
    explicit MatchTitle(const QString &title)
        : whole(normalize(title))
        , base(title.contains(u':') ? baseTitle(title) : whole)
    {
    }

    QString whole;
    QString base;
};

int score(const MatchTitle &a, const MatchTitle &b)
{
    if (a.whole == b.whole) {
        return sameTitle;
    }
    if (a.base == b.base) {
        return sameMainTitle;
    }
    if (a.base.size() < tellingLength) {
        return 0;
    }
    if (a.whole.startsWith(b.base + u' ') || b.whole.startsWith(a.base + u' ')) {
        return titleAndMore;
    }
    return 0;
}

// Each bracketed note becomes one space. By hand, since an expression would
// look for the end of each of a million open brackets.
QString withoutNotes(const QString &text)
{
    QString rest;
    qsizetype at = 0;
    for (;;) {
        const qsizetype open = text.indexOf(u'(', at);
        const qsizetype close = open < 0 ? -1 : text.indexOf(u')', open);
        if (close < 0) {
            return rest += QStringView(text).mid(at);
        }
        rest += QStringView(text).mid(at, open - at);
        rest += u' ';
        at = close + 1;
    }
}

bool isLatinLetterOrDigit(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9');
}

} // namespace

QString normalize(const QString &text)
{
    static const QRegularExpression kinds(QStringLiteral("\\b(a novel|a memoir|the complete series)\\b"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);

    QString folded = Text::folded(text);
    folded.replace(u'&', QStringLiteral(" and "));
    folded = withoutNotes(folded);
    folded.replace(kinds, QStringLiteral(" "));

    QString words;
    words.reserve(folded.size());
    for (const QChar c : std::as_const(folded)) {
        if (isLatinLetterOrDigit(c)) {
            words += c;
        } else if (!words.isEmpty() && words.back() != u' ') {
            words += u' ';
        }
    }
    if (words.endsWith(u' ')) {
        words.chop(1);
    }
    return words.toLower();
}

QSet<QString> tokens(const QString &text)
{
    QSet<QString> words;
    for (const QString &word : normalize(text).split(u' ', Qt::SkipEmptyParts)) {
        const bool isStopWord
            = word == QStringLiteral("and") || word == QStringLiteral("the") || word == QStringLiteral("translator");
        if (word.size() >= shortestToken && !isStopWord) {
            words.insert(word);
        }
    }
    return words;
}

QString baseTitle(const QString &text)
{
    return normalize(text.left(text.indexOf(u':'))); // all of it without a colon
}

int titleScore(const QString &a, const QString &b)
{
    return score(MatchTitle(a), MatchTitle(b));
}

std::optional<PortraitCover> bestMatch(
    const QString &title, const std::optional<QString> &author, const QList<PortraitCover> &candidates)
{
    const MatchTitle wanted(title);
    const QSet<QString> wantedAuthor = tokens(author.value_or(QString()));
    const bool isTelling = wanted.base.size() >= tellingLength;

    const PortraitCover *best = nullptr;
    int bestScore = 0;
    for (const PortraitCover &candidate : candidates) {
        const int titlePoints = score(wanted, MatchTitle(candidate.title));
        if (titlePoints == 0) {
            continue; // an author alone is never enough, and a library is long
        }
        const bool isShared = wantedAuthor.intersects(tokens(candidate.author));
        const int points = titlePoints + (isShared ? sharedAuthor : 0);
        const bool qualifies = points >= threshold && (isTelling || isShared);
        if (qualifies && points > bestScore) {
            best = &candidate;
            bestScore = points;
        }
    }
    return best ? std::optional(*best) : std::nullopt;
}

QList<PortraitCover> candidatesOf(const QList<Book> &library)
{
    QList<PortraitCover> candidates;
    for (const Book &book : library) {
        const auto &url = book.coverURL ? book.coverURL : book.goodreadsImageURL;
        if (url) {
            candidates.append(
                {.title = book.title, .author = book.author, .url = *url, .source = QStringLiteral("Books library")});
        }
    }
    return candidates;
}

} // namespace quire::CoverFinder
