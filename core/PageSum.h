// A sum of page counts, of any numbers that a source may have sent.
//
// Thread: pure, any thread.

#pragma once

#include <QtNumeric>

#include <limits>
#include <optional>

namespace quire {

class PageSum
{
public:
    // numberOfPages: absent for a book whose length is not known.
    void add(const std::optional<qint64> &numberOfPages)
    {
        if (!numberOfPages) {
            return;
        }
        ++m_books;
        if (qAddOverflow(m_pages, *numberOfPages, &m_pages)) {
            using Limits = std::numeric_limits<qint64>;
            m_pages = *numberOfPages < 0 ? Limits::min() : Limits::max();
        }
    }

    // Never beyond what the type holds.
    qint64 pages() const { return m_pages; }

    // Of the books that have a count, without its fraction; 0 when none has.
    qint64 mean() const { return m_books == 0 ? 0 : m_pages / m_books; }

private:
    qint64 m_pages = 0;
    qint64 m_books = 0;
};

} // namespace quire
