#include "records/Text.h"

#include <QTextBoundaryFinder>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace quire::Text {

namespace {

// Between these a double is written out in full, outside them with an exponent.
constexpr double smallestPlain = 1e-4;
constexpr double largestPlain = 0x1p54;

// In code units; ordinary titles are one piece.
constexpr qsizetype foldedPiece = 512;

// True for text whose code units are its user-perceived characters: ASCII
// without a carriage return, which may join the line feed after it.
bool isOneUnitPerCharacter(QStringView text)
{
    for (const QChar c : text) {
        if (c.unicode() >= 0x80 || c == u'\r') {
            return false;
        }
    }
    return true;
}

} // namespace

QString trimmed(const QString &text)
{
    return text.trimmed();
}

std::optional<QString> nonEmptyValue(const std::optional<QString> &text)
{
    if (!text) {
        return std::nullopt;
    }
    QString value = trimmed(*text);
    if (value.isEmpty()) {
        return std::nullopt;
    }
    return value;
}

QString folded(const QString &text)
{
    // Both steps move the rest of the text for every character that grows, which
    // takes minutes for a long text of accented letters; so it goes piece by
    // piece. A mark that a cut parts from its letter is dropped all the same.
    QString result;
    result.reserve(text.size());
    for (qsizetype at = 0; at < text.size();) {
        qsizetype length = std::min(foldedPiece, text.size() - at);
        if (at + length < text.size() && text[at + length].isLowSurrogate()) {
            ++length;
        }
        QString letters = text.mid(at, length).normalized(QString::NormalizationForm_D);
        letters.removeIf([](QChar c) { return c.isMark(); });
        letters = letters.toCaseFolded();
        letters.replace(u'\u00df', QStringLiteral("ss")); // the one common letter that Qt does not fold in full
        result += letters;
        at += length;
    }
    return result;
}

qsizetype characterCount(const QString &text)
{
    if (isOneUnitPerCharacter(text)) {
        return text.size();
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1) {
        ++count;
    }
    return count;
}

QString firstCharacters(const QString &text, qsizetype count)
{
    if (count <= 0) {
        return {};
    }
    if (count >= text.size()) { // a character is at least one code unit
        return text;
    }
    if (isOneUnitPerCharacter(text)) {
        return text.left(count);
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (qsizetype taken = 0; taken < count; ++taken) {
        const qsizetype next = finder.toNextBoundary();
        if (next == -1) {
            return text;
        }
        end = next;
    }
    return text.left(end);
}

std::optional<qint64> decimalInteger(QStringView text)
{
    const bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+')) {
        text = text.mid(1);
    }
    if (text.isEmpty()) {
        return std::nullopt;
    }
    // Counted down from zero: the negative range is the larger by one.
    constexpr qint64 lowest = std::numeric_limits<qint64>::min();
    qint64 value = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9') {
            return std::nullopt;
        }
        const int digit = c.unicode() - u'0';
        if (value < (lowest + digit) / 10) {
            return std::nullopt;
        }
        value = value * 10 - digit;
    }
    if (negative) {
        return value;
    }
    if (value == lowest) {
        return std::nullopt;
    }
    return -value;
}

QString shortestDecimal(double value)
{
    if (!std::isfinite(value)) {
        return std::isnan(value) ? QStringLiteral("nan") : value < 0 ? QStringLiteral("-inf") : QStringLiteral("inf");
    }
    const double size = std::abs(value);
    const bool plain = size == 0 || (size >= smallestPlain && size < largestPlain);
    char digits[64];
    const auto end = std::to_chars(
        std::begin(digits), std::end(digits), value, plain ? std::chars_format::fixed : std::chars_format::scientific);
    QString text = QString::fromLatin1(digits, end.ptr - digits);
    if (plain && !text.contains(u'.')) {
        text += QStringLiteral(".0");
    }
    return text;
}

} // namespace quire::Text
