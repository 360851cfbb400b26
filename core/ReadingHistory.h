// ReadingHistory is what the statistics and the insights look at: the visible
// books that were read, each with the instant at which it was finished. It is
// made in one walk over the library, in which no date text is parsed twice, and
// serves both.
//
// Thread: immutable once made; any thread.

#pragma once

#include "core/CalendarYear.h"
#include "records/Book.h"
#include "records/Instant.h"

#include <QList>
#include <QString>
#include <QStringView>

#include <optional>
#include <span>
#include <vector>

namespace quire {

class LibraryIndex;

class ReadingHistory
{
public:
    struct ReadBook
    {
        // Beside each other, texts as views: records lie far apart, and to look at
        // each again would cost more than what is made of it.
        qint64 id = 0;
        QStringView author;
        std::span<const QString> tags;
        double userRating = 0;
        std::optional<qint64> numberOfPages;
        Instant recency; // when it was finished, else when it was added; distantPast when undated
        int monthOfThisYear = 0; // in which it was finished, 1 to 12; 0 for another year, or undated
    };

    // books: all of the library; hidden ones count nowhere. now: whose year, on
    // the local calendar, is this year. index: the keys of exactly these books,
    // which spare the parsing of their dates.
    ReadingHistory(const QList<Book> &books, Instant now);
    ReadingHistory(const QList<Book> &books, const LibraryIndex &index, Instant now);

    // In the order of the library.
    const std::vector<ReadBook> &readBooks() const { return m_readBooks; }

    qint64 reading() const { return m_reading; } // books on the shelf "currently-reading"
    qint64 toRead() const { return m_toRead; }
    qint64 didNotFinish() const { return m_didNotFinish; }

    int thisYear() const { return m_year.number(); }

private:
    void count(const QString &shelf);
    void addReadBook(const Book &book, Instant recency);

    const QList<Book> m_books; // where the texts lie; const, or a look at a book would copy them all
    CalendarYear m_year;
    std::vector<ReadBook> m_readBooks;
    qint64 m_reading = 0;
    qint64 m_toRead = 0;
    qint64 m_didNotFinish = 0;
};

} // namespace quire
