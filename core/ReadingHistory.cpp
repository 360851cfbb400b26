#include "core/ReadingHistory.h"

#include "core/LibraryIndex.h"

namespace quire {

ReadingHistory::ReadingHistory(const QList<Book> &books, Instant now)
    : m_books(books)
    , m_year(CalendarYear::of(now))
{
    m_readBooks.reserve(std::size_t(m_books.size()));
    for (const Book &book : m_books) {
        if (book.isHidden) {
            continue;
        }
        if (book.shelf == u"read") {
            addReadBook(book, recencyDate(book));
        } else {
            count(book.shelf);
        }
    }
}

ReadingHistory::ReadingHistory(const QList<Book> &books, const LibraryIndex &index, Instant now)
    : m_books(books)
    , m_year(CalendarYear::of(now))
{
    m_readBooks.reserve(std::size_t(m_books.size()));
    Q_ASSERT(index.size() == books.size());
    for (qsizetype row = 0; row < m_books.size(); ++row) {
        if (index.isShown(row, LibraryShelf::Read)) {
            addReadBook(m_books[row], index.recency(row));
        } else {
            m_reading += index.isShown(row, LibraryShelf::Active) ? 1 : 0;
            m_toRead += index.isShown(row, LibraryShelf::ToRead) ? 1 : 0;
            m_didNotFinish += index.isShown(row, LibraryShelf::DidNotFinish) ? 1 : 0;
        }
    }
}

void ReadingHistory::count(const QString &shelf)
{
    if (shelf == u"currently-reading") {
        ++m_reading;
    } else if (shelf == u"to-read") {
        ++m_toRead;
    } else if (shelf == u"did-not-finish") {
        ++m_didNotFinish;
    }
}

void ReadingHistory::addReadBook(const Book &book, Instant recency)
{
    // The distant past is in no month of this year, so an undated book is in none.
    m_readBooks.push_back({.id = book.id,
        .author = book.author,
        .tags = {book.tags.constData(), std::size_t(book.tags.size())},
        .userRating = book.userRating,
        .numberOfPages = book.numberOfPages,
        .recency = recency,
        .monthOfThisYear = recency == distantPast ? 0 : m_year.month(recency)});
}

} // namespace quire
