#include "core/LibraryIndex.h"

#include "records/Text.h"
#include "records/TitleCollator.h"

#include <QCollator>
#include <QHash>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <tuple>

namespace quire {

namespace {

// Finds the row that a title had in an earlier state of its list.
template<typename Record>
class RowsBefore
{
public:
    explicit RowsBefore(const QList<Record> &records)
        : m_records(records)
    {
    }

    // -1 for a new title. row: where the title is now, most often the same.
    qsizetype find(const Record &record, qsizetype row)
    {
        if (row < m_records.size() && m_records[row].id == record.id) {
            return row;
        }
        if (m_rows.isEmpty()) {
            m_rows.reserve(m_records.size());
            for (qsizetype at = 0; at < m_records.size(); ++at) {
                m_rows.insert(m_records[at].id, at);
            }
        }
        return m_rows.value(record.id, -1);
    }

private:
    const QList<Record> &m_records;
    QHash<qint64, qsizetype> m_rows;
};

// One row with everything that its place in an order depends on.
template<typename Key>
struct Placed
{
    Key key; // greater goes first
    int titleRank;
    int row;

    bool operator<(const Placed &other) const
    {
        return std::tie(other.key, titleRank, row) < std::tie(key, other.titleRank, other.row);
    }
};

template<typename Key, typename KeyOf>
QList<int> rowsByKey(const std::vector<int> &titleRanks, KeyOf keyOf)
{
    std::vector<Placed<Key>> placed;
    placed.reserve(titleRanks.size());
    for (std::size_t row = 0; row < titleRanks.size(); ++row) {
        placed.push_back({keyOf(row), titleRanks[row], int(row)});
    }
    std::sort(placed.begin(), placed.end());
    QList<int> rows;
    rows.reserve(qsizetype(placed.size()));
    for (const Placed<Key> &title : placed) {
        rows.append(title.row);
    }
    return rows;
}

} // namespace

template<typename Record>
std::shared_ptr<const LibraryIndex> LibraryIndex::of(
    const QList<Record> &records, const QList<Record> &recordsBefore, const std::shared_ptr<const LibraryIndex> &before)
{
    const auto index = std::make_shared<LibraryIndex>();
    const auto rowsBefore = index->addTitles(records, recordsBefore, before.get());
    auto byTitle = index->sortedByTitle(rowsBefore, before.get());
    const auto ranks = index->titleRanks(byTitle);
    index->m_orders[std::size_t(LibrarySort::Title)] = std::move(byTitle);
    index->m_orders[std::size_t(LibrarySort::Recent)]
        = rowsByKey<Instant>(ranks, [&index](std::size_t row) { return index->m_recency[row]; });
    index->m_orders[std::size_t(LibrarySort::Rating)] = rowsByKey<double>(
        ranks, [&records](std::size_t row) { return TitleFacets::rating(records[qsizetype(row)]); });
    return index;
}

template<typename Record>
std::vector<int> LibraryIndex::addTitles(
    const QList<Record> &records, const QList<Record> &recordsBefore, const LibraryIndex *before)
{
    const auto count = std::size_t(records.size());
    m_textEnds.reserve(count);
    m_titleKeys.reserve(count);
    m_recency.reserve(count);
    m_shelves.reserve(count);
    std::vector<int> keysFrom;
    keysFrom.reserve(count);
    if (before) {
        m_text.reserve(before->m_text.size());
    }

    const QCollator collator = titleCollator();
    RowsBefore rowsBefore(recordsBefore);
    for (qsizetype row = 0; row < records.size(); ++row) {
        const Record &record = records[row];
        const qsizetype rowBefore = before ? rowsBefore.find(record, row) : -1;
        const Record *recordBefore = rowBefore < 0 ? nullptr : &recordsBefore[rowBefore];

        if (recordBefore && TitleFacets::haveSameText(record, *recordBefore)) {
            m_text += before->text(rowBefore);
        } else {
            m_text += Text::folded(TitleFacets::searchableText(record)).toUtf8();
        }
        m_textEnds.push_back(m_text.size());

        if (recordBefore && record.title == recordBefore->title) {
            m_titleKeys.push_back(before->m_titleKeys[std::size_t(rowBefore)]);
            keysFrom.push_back(int(rowBefore));
        } else {
            m_titleKeys.push_back(collator.sortKey(record.title));
            keysFrom.push_back(-1);
        }

        if (recordBefore && TitleFacets::haveSameDates(record, *recordBefore)) {
            m_recency.push_back(before->recency(rowBefore));
        } else {
            m_recency.push_back(recencyDate(record));
        }

        m_shelves.push_back(TitleFacets::shelves(record));
    }
    return keysFrom;
}

// Titles that kept their key are nearly sorted already, as they were before;
// only fresh ones are sorted anew and merged in.
QList<int> LibraryIndex::sortedByTitle(const std::vector<int> &rowsBefore, const LibraryIndex *before) const
{
    const auto isBefore = [this](int a, int b) {
        const int order = m_titleKeys[std::size_t(a)].compare(m_titleKeys[std::size_t(b)]);
        return order < 0 || (order == 0 && a < b); // equal titles stand as in the list
    };
    std::vector<int> fresh;
    std::vector<int> rowsNow(before ? std::size_t(before->size()) : 0, -1);
    for (std::size_t row = 0; row < rowsBefore.size(); ++row) {
        if (rowsBefore[row] < 0) {
            fresh.push_back(int(row));
        } else {
            rowsNow[std::size_t(rowsBefore[row])] = int(row);
        }
    }
    std::vector<int> kept;
    if (before) {
        for (const int rowBefore : before->order(LibrarySort::Title)) {
            if (const int row = rowsNow[std::size_t(rowBefore)]; row >= 0) {
                kept.push_back(row);
            }
        }
    }
    if (!std::is_sorted(kept.begin(), kept.end(), isBefore)) {
        std::sort(kept.begin(), kept.end(), isBefore); // equal titles changed places in the list
    }
    std::sort(fresh.begin(), fresh.end(), isBefore);

    QList<int> rows;
    rows.reserve(qsizetype(rowsBefore.size()));
    std::merge(kept.begin(), kept.end(), fresh.begin(), fresh.end(), std::back_inserter(rows), isBefore);
    return rows;
}

// Equal titles share a rank, so that ties of the other sorts are settled by one
// whole number and fall to the order of the list.
std::vector<int> LibraryIndex::titleRanks(const QList<int> &byTitle) const
{
    std::vector<int> ranks(std::size_t(byTitle.size()));
    int rank = 0;
    for (qsizetype at = 0; at < byTitle.size(); ++at) {
        if (at > 0 && m_titleKeys[std::size_t(byTitle[at - 1])] < m_titleKeys[std::size_t(byTitle[at])]) {
            ++rank;
        }
        ranks[std::size_t(byTitle[at])] = rank;
    }
    return ranks;
}

QByteArrayView LibraryIndex::text(qsizetype row) const
{
    const qsizetype start = row == 0 ? 0 : m_textEnds[std::size_t(row - 1)];
    return QByteArrayView(m_text).sliced(start, m_textEnds[std::size_t(row)] - start);
}

std::vector<bool> LibraryIndex::rowsContaining(const QString &folded) const
{
    Q_ASSERT(!folded.isEmpty());
    const QByteArray wanted = folded.toUtf8();
    std::vector<bool> found(m_textEnds.size());
    const char *const start = m_text.constData();
    const char *const end = start + m_text.size();
    const char *at = start;
    std::size_t row = 0;
    while (const void *hit = memmem(at, std::size_t(end - at), wanted.constData(), std::size_t(wanted.size()))) {
        at = static_cast<const char *>(hit);
        while (m_textEnds[row] <= at - start) {
            ++row;
        }
        if (at - start + wanted.size() <= m_textEnds[row]) {
            found[row] = true;
            at = start + m_textEnds[row]; // one hit a title is enough
        } else {
            ++at; // the end of one title and the start of the next
        }
    }
    return found;
}

template std::shared_ptr<const LibraryIndex> LibraryIndex::of(
    const QList<Book> &, const QList<Book> &, const std::shared_ptr<const LibraryIndex> &);
template std::shared_ptr<const LibraryIndex> LibraryIndex::of(
    const QList<Audiobook> &, const QList<Audiobook> &, const std::shared_ptr<const LibraryIndex> &);

} // namespace quire
