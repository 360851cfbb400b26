#include "persistence/NormalizedText.h"

#include "records/Text.h"

namespace quire {

namespace {

// Marks count: a vowel sign that folding leaves is a part of its word, and
// splitting there would make two words of one.
bool isAlphanumeric(char32_t c)
{
    return QChar::isLetterOrNumber(c) || QChar::isMark(c);
}

} // namespace

QString normalizedText(const QString &text)
{
    QString spelledOut = text;
    spelledOut.replace(u'&', QStringLiteral(" and "));
    const QString folded = Text::folded(spelledOut).toLower();

    QString words;
    words.reserve(folded.size());
    bool betweenWords = false;
    for (qsizetype at = 0; at < folded.size();) {
        const bool isPair = folded[at].isHighSurrogate() && at + 1 < folded.size() && folded[at + 1].isLowSurrogate();
        const char32_t c = isPair ? QChar::surrogateToUcs4(folded[at], folded[at + 1]) : folded[at].unicode();
        const qsizetype length = isPair ? 2 : 1;
        if (isAlphanumeric(c)) {
            if (betweenWords && !words.isEmpty()) {
                words += u' ';
            }
            words += QStringView(folded).mid(at, length);
            betweenWords = false;
        } else {
            betweenWords = true;
        }
        at += length;
    }
    return words;
}

} // namespace quire
