// What the reader typed, as a question to a catalogue.
//
// Thread: a pure function, any thread.

#pragma once

#include "records/Text.h"

#include <QString>

#include <optional>

namespace quire {

// The trimmed text, or nothing when that is too short to ask for.
inline std::optional<QString> catalogQuery(const QString &typed)
{
    constexpr qsizetype shortest = 2; // user-perceived characters
    const QString query = Text::trimmed(typed);
    return Text::characterCount(query) < shortest ? std::nullopt : std::optional(query);
}

} // namespace quire
