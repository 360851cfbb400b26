// Whole numbers in JSON that somebody else may have written.
//
// Thread: pure functions, any thread.

#pragma once

#include <QJsonValue>

#include <optional>

namespace quire {

// Nothing for what is no number, has a fraction, or does not fit into 64 bits.
inline std::optional<qint64> wholeNumber(const QJsonValue &value)
{
    // It gives what it is told for anything else, which then differs.
    const qint64 number = value.toInteger(0);
    return number == value.toInteger(1) ? std::optional(number) : std::nullopt;
}

} // namespace quire
