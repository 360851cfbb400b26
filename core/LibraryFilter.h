// Which titles the grids show, and in which order.
//
// Thread: pure functions, any thread.

#pragma once

#include "core/LibraryIndex.h"
#include "records/Enumerations.h"

#include <QList>
#include <QString>

#include <optional>

namespace quire {

// What the reader asked to see.
struct LibrarySelection
{
    LibraryShelf shelf = LibraryShelf::Read;
    LibrarySort sort = LibrarySort::Recent;
    QString searchText; // as typed; blanks around it, case and diacritics do not count
};

// The rows that `selection` leaves, in its order. The search text is one
// string, not a set of words.
QList<int> filteredRows(const LibraryIndex &index, const LibrarySelection &selection);

// Of the titles that `shelf` shows, the row of the most recent one; the first in
// the list's order when several are. Nothing when there are none.
std::optional<int> mostRecentRow(const LibraryIndex &index, LibraryShelf shelf);

// The shelf that shows a title with this stored word; All for an unknown one.
LibraryShelf shelfSelection(QStringView word);

} // namespace quire
