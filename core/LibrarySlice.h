// Some rows of a list of records, in an order of their own: what a filter or a
// page gives. The records themselves are shared with the whole list and not
// copied, so a slice of a large library costs one number a row.
//
// Thread: a value; copies may cross threads.

#pragma once

#include <QList>

#include <algorithm>
#include <iterator>

namespace quire {

template<typename Record>
class LibrarySlice
{
public:
    LibrarySlice() = default;

    // rows: indices into `records`, each in range.
    LibrarySlice(QList<Record> records, QList<int> rows)
        : m_records(std::move(records))
        , m_rows(std::move(rows))
    {
    }

    qsizetype size() const { return m_rows.size(); }
    bool isEmpty() const { return m_rows.isEmpty(); }

    // position: 0 to size() - 1.
    const Record &at(qsizetype position) const { return m_records.at(m_rows.at(position)); }

    // At most `count` records from `position` on; empty when it is at or past
    // the end. Neither may be negative.
    LibrarySlice mid(qsizetype position, qsizetype count) const { return {m_records, m_rows.mid(position, count)}; }

    QList<qint64> ids() const
    {
        QList<qint64> ids;
        ids.reserve(size());
        for (const Record &record : *this) {
            ids.append(record.id);
        }
        return ids;
    }

    // Whether both show the same titles in the same order, whatever else of
    // them changed.
    bool hasSameIds(const LibrarySlice &other) const
    {
        if (m_records.constData() == other.m_records.constData()) {
            return m_rows == other.m_rows; // no record looked at
        }
        return std::equal(
            begin(), end(), other.begin(), other.end(), [](const Record &a, const Record &b) { return a.id == b.id; });
    }

    class const_iterator
    {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Record;
        using difference_type = qsizetype;
        using pointer = const Record *;
        using reference = const Record &;

        const_iterator() = default;
        const_iterator(const LibrarySlice *slice, qsizetype position)
            : m_slice(slice)
            , m_position(position)
        {
        }

        reference operator*() const { return m_slice->at(m_position); }
        pointer operator->() const { return &m_slice->at(m_position); }
        const_iterator &operator++()
        {
            ++m_position;
            return *this;
        }
        const_iterator operator++(int) { return {m_slice, m_position++}; }
        bool operator==(const const_iterator &) const = default;

    private:
        const LibrarySlice *m_slice = nullptr;
        qsizetype m_position = 0;
    };

    const_iterator begin() const { return {this, 0}; }
    const_iterator end() const { return {this, size()}; }

private:
    QList<Record> m_records;
    QList<int> m_rows;
};

} // namespace quire
