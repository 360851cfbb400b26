#include "core/LibraryFilter.h"

#include "records/Text.h"

namespace quire {

QList<int> filteredRows(const LibraryIndex &index, const LibrarySelection &selection)
{
    const QString query = Text::folded(Text::trimmed(selection.searchText));
    const auto found = query.isEmpty() ? std::vector<bool>() : index.rowsContaining(query);

    QList<int> rows;
    for (const int row : index.order(selection.sort)) {
        if (index.isShown(row, selection.shelf) && (query.isEmpty() || found[std::size_t(row)])) {
            rows.append(row);
        }
    }
    return rows;
}

std::optional<int> mostRecentRow(const LibraryIndex &index, LibraryShelf shelf)
{
    std::optional<int> best;
    for (int row = 0; row < index.size(); ++row) {
        if (index.isShown(row, shelf) && (!best || index.recency(row) > index.recency(*best))) {
            best = row;
        }
    }
    return best;
}

LibraryShelf shelfSelection(QStringView word)
{
    if (word == u"currently-reading" || word == u"reading") {
        return LibraryShelf::Active;
    }
    const auto shelf = fromRawValue<LibraryShelf>(word);
    return shelf && *shelf != LibraryShelf::Active ? *shelf : LibraryShelf::All;
}

} // namespace quire
