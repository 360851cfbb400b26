// Small operations on text that many rooms share.
//
// Thread: pure functions, any thread.

#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace quire::Text {

// `text` without white space and newlines at both ends (Unicode white space).
QString trimmed(const QString &text);

// The trimmed text, or nothing when that leaves nothing.
std::optional<QString> nonEmptyValue(const std::optional<QString> &text);

// For searching and matching: decomposed, combining marks dropped, case
// folded. "Élan" and "elan" give the same text.
QString folded(const QString &text);

// The number of user-perceived characters (extended grapheme clusters).
qsizetype characterCount(const QString &text);

// The first `count` user-perceived characters; the whole text when it has no
// more than that.
QString firstCharacters(const QString &text, qsizetype count);

// A whole number in base 10 with an optional sign and nothing else, no blanks;
// nothing for any other text and for what does not fit.
std::optional<qint64> decimalInteger(QStringView text);

// The shortest decimal text that reads back as the same double, with a
// fraction or an exponent always shown: 4 gives "4.0".
QString shortestDecimal(double value);

} // namespace quire::Text
