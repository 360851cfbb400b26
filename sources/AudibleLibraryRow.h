// One title of the Audible application's database as Quire takes it over. The
// columns are another program's: any may be absent, of another type or hold JSON
// that is none, and costs its own field only.
//
// Thread: pure functions, any thread.

#pragma once

#include "persistence/database/SQLiteValue.h"
#include "records/AudibleLibraryItem.h"
#include "sources/JSONValue.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace quire::AudibleLibraryRow {

struct Contributor
{
    std::optional<QString> name;
};

// row: by the names that AudibleLibraryReader gives the columns. Nothing for one
// without an ASIN or a title. audibleWeb: where the pages of titles are.
std::optional<AudibleLibraryItem> map(const SQLiteRow &row, const QUrl &audibleWeb);

// The names that are present and not empty, joined; nothing when there is none.
std::optional<QString> joinedNames(const QList<Contributor> &contributors);

// The record that the JSON in a column tells; nothing when it is absent or not of
// exactly that shape.
template<typename Record>
std::optional<JSONValue::Decoded<Record>> decode(const std::optional<QString> &json, const Record &record)
{
    if (!json) {
        return std::nullopt;
    }
    try {
        return std::invoke(record, JSONValue::parse(json->toUtf8()));
    } catch (const JSONDecodingError &) {
        return std::nullopt;
    }
}

} // namespace quire::AudibleLibraryRow
