#pragma once

#include "persistence/database/SQLiteStatement.h"
#include "records/Url.h"

#include <optional>

namespace quire {

// The URL that a column of the current row spells; a text that is none gives
// nothing and leaves the row as readable as before.
inline std::optional<Url> urlColumn(const SQLiteStatement &row, int column)
{
    const auto text = row.optionalString(column);
    return text ? Url::parse(*text) : std::nullopt;
}

} // namespace quire
