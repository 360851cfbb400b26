// LibraryIndex holds what filtering and sorting need of a list of titles, made
// once per load and off the interface thread: the folded text to search in, the
// shelves that show a title, and for each sort the order of all rows. A
// keystroke is then one walk over it; no date is parsed, no title folded and no
// collator asked.
//
// Thread: immutable once made; any thread.

#pragma once

#include "core/TitleFacets.h"
#include "records/Instant.h"

#include <QByteArray>
#include <QCollatorSortKey>
#include <QList>
#include <QString>

#include <array>
#include <memory>
#include <vector>

namespace quire {

class LibraryIndex
{
public:
    // Keys for every row of `records`, a list of Book or of Audiobook.
    // recordsBefore, before: an earlier state of the list with its index; a
    // title whose texts stayed the same keeps its keys.
    template<typename Record>
    static std::shared_ptr<const LibraryIndex> of(const QList<Record> &records, const QList<Record> &recordsBefore = {},
        const std::shared_ptr<const LibraryIndex> &before = nullptr);

    // Rows, numbered from 0 as in the list.
    qsizetype size() const { return qsizetype(m_recency.size()); }

    // Every row once, in the order of `sort`.
    const QList<int> &order(LibrarySort sort) const { return m_orders[std::size_t(sort)]; }

    // The instant by which the title of `row` counts as recent.
    Instant recency(qsizetype row) const { return m_recency[std::size_t(row)]; }

    // Whether `shelf` shows the title of `row` while nothing is searched.
    bool isShown(qsizetype row, LibraryShelf shelf) const
    {
        return (m_shelves[std::size_t(row)] & TitleFacets::only(shelf)) != 0;
    }

    // One flag a row: whether the title's text contains `folded`, a text that
    // is not empty and folded as titles are.
    std::vector<bool> rowsContaining(const QString &folded) const;

private:
    // Fills everything but the orders. The result tells for each row from which
    // row of `before` its title key came, -1 for a fresh one.
    template<typename Record>
    std::vector<int> addTitles(
        const QList<Record> &records, const QList<Record> &recordsBefore, const LibraryIndex *before);
    QList<int> sortedByTitle(const std::vector<int> &rowsBefore, const LibraryIndex *before) const;
    std::vector<int> titleRanks(const QList<int> &byTitle) const;

    QByteArrayView text(qsizetype row) const;

    QByteArray m_text; // UTF-8, all rows end to end: a search runs over one block
    std::vector<qsizetype> m_textEnds; // in m_text, row by row
    std::vector<QCollatorSortKey> m_titleKeys;
    std::vector<Instant> m_recency;
    std::vector<TitleFacets::ShelfSet> m_shelves;
    std::array<QList<int>, allLibrarySorts.size()> m_orders;
};

extern template std::shared_ptr<const LibraryIndex> LibraryIndex::of(
    const QList<Book> &, const QList<Book> &, const std::shared_ptr<const LibraryIndex> &);
extern template std::shared_ptr<const LibraryIndex> LibraryIndex::of(
    const QList<Audiobook> &, const QList<Audiobook> &, const std::shared_ptr<const LibraryIndex> &);

} // namespace quire
