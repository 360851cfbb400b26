#include "core/GoodreadsStatistics.h"

#include "ReadBooks.h"

#include "core/LibraryIndex.h"

#include <gtest/gtest.h>

#include <limits>

using namespace quire;
using namespace quire::testing;

namespace {

const Instant now = at(QStringLiteral("2026-11-21 12:00:00"));

Book onShelf(const QString &shelf)
{
    Book book = readBook();
    book.shelf = shelf;
    return book;
}

Book by(const QString &author)
{
    Book book = readBook();
    book.author = author;
    return book;
}

// The same books give the same figures whichever way their dates are known.
GoodreadsStatistics statisticsOf(const QList<Book> &books)
{
    auto statistics = makeGoodreadsStatistics(books, now);
    EXPECT_EQ(statistics, makeGoodreadsStatistics(ReadingHistory(books, *LibraryIndex::of(books), now)));
    return statistics;
}

} // namespace

TEST(GoodreadsStatistics, OfNoBooksAreAllZero)
{
    GoodreadsStatistics nothing;
    nothing.year = 2026;

    EXPECT_EQ(statisticsOf({}), nothing);
}

TEST(GoodreadsStatistics, CountBooksByTheExactWordOfTheirShelf)
{
    const auto statistics = statisticsOf(
        {onShelf(QStringLiteral("read")), onShelf(QStringLiteral("read")), onShelf(QStringLiteral("currently-reading")),
            onShelf(QStringLiteral("to-read")), onShelf(QStringLiteral("to-read")), onShelf(QStringLiteral("to-read")),
            onShelf(QStringLiteral("did-not-finish")), onShelf(QStringLiteral("Read")),
            onShelf(QStringLiteral(" read")), onShelf(QString())});

    EXPECT_EQ(statistics.read, 2);
    EXPECT_EQ(statistics.reading, 1);
    EXPECT_EQ(statistics.toRead, 3);
    EXPECT_EQ(statistics.didNotFinish, 1);
}

TEST(GoodreadsStatistics, CountHiddenBooksNowhere)
{
    Book book = longBook(300, QStringLiteral("2026-03-05"));
    book.author = QStringLiteral("Ann Author");
    book.userRating = 5;
    GoodreadsStatistics nothing;
    nothing.year = 2026;

    EXPECT_EQ(statisticsOf({hidden(book), hidden(onShelf(QStringLiteral("to-read")))}), nothing);
}

TEST(GoodreadsStatistics, AddPagesOfTheBooksThatHaveThem)
{
    const auto statistics
        = statisticsOf({longBook(100, QStringLiteral("2026-03-05")), longBook(201, QStringLiteral("2025-03-05")),
            longBook(std::nullopt, QStringLiteral("2026-03-05")), onShelf(QStringLiteral("to-read"))});

    EXPECT_EQ(statistics.totalPages, 301);
    EXPECT_EQ(statistics.pagesThisYear, 100);
    EXPECT_EQ(statistics.booksThisYear, 2);
}

TEST(GoodreadsStatistics, KeepASumOfAbsurdPageCountsWithinItsType)
{
    constexpr qint64 most = std::numeric_limits<qint64>::max();

    EXPECT_EQ(statisticsOf({longBook(most), longBook(most)}).totalPages, most);
    EXPECT_EQ(statisticsOf({longBook(-most), longBook(-most)}).totalPages, std::numeric_limits<qint64>::min());
}

TEST(GoodreadsStatistics, TakeTheMeanOfRatedBooksAlone)
{
    Book lastYear = rated(2);
    lastYear.readAt = QStringLiteral("2025-12-31");
    Book thisYear = rated(4.5);
    thisYear.readAt = QStringLiteral("2026-01-01");
    Book unrated = readBook(QStringLiteral("2026-01-02"));

    const auto statistics = statisticsOf({lastYear, thisYear, unrated});

    EXPECT_DOUBLE_EQ(statistics.averageRating, 3.25);
    EXPECT_DOUBLE_EQ(statistics.averageRatingThisYear, 4.5);
    EXPECT_EQ(statisticsOf({unrated}).averageRating, 0);
}

TEST(GoodreadsStatistics, TakeRatingsThatAreNoneForNoRating)
{
    const auto statistics = statisticsOf({rated(-3), rated(std::numeric_limits<double>::quiet_NaN()), rated(4)});

    EXPECT_DOUBLE_EQ(statistics.averageRating, 4);
}

TEST(GoodreadsStatistics, CountExactlyFiveStarsAsFive)
{
    EXPECT_EQ(statisticsOf({rated(5), rated(4.5), rated(4.999), rated(5.5), rated(5)}).fiveStarCount, 2);
}

TEST(GoodreadsStatistics, TakeTheDateOfAdditionForAFinishThatCannotBeRead)
{
    Book book = readBook(QStringLiteral("le 5 mars 2026"));
    book.dateAdded = QStringLiteral("Thu, 05 Mar 2026 10:15:30 +0000");

    EXPECT_EQ(statisticsOf({book}).booksThisYear, 1);
}

TEST(GoodreadsStatistics, CountAnUndatedBookAsReadButInNoYear)
{
    Book book = longBook(250, QStringLiteral("someday"));
    book.dateAdded = QStringLiteral("9999-99-99");
    book.userRating = 5;

    const auto statistics = statisticsOf({book});

    EXPECT_EQ(statistics.read, 1);
    EXPECT_EQ(statistics.totalPages, 250);
    EXPECT_EQ(statistics.fiveStarCount, 1);
    EXPECT_EQ(statistics.booksThisYear, 0);
    EXPECT_EQ(statistics.pagesThisYear, 0);
}

TEST(GoodreadsStatistics, BeginAndEndTheYearAtLocalMidnight)
{
    // Oslo is an hour ahead of UTC in winter.
    EXPECT_EQ(statisticsOf({readBook(QStringLiteral("2025-12-31T22:59:59.999Z"))}).booksThisYear, 0);
    EXPECT_EQ(statisticsOf({readBook(QStringLiteral("2025-12-31T23:00:00Z"))}).booksThisYear, 1);
    EXPECT_EQ(statisticsOf({readBook(QStringLiteral("2026-12-31T22:59:59.999Z"))}).booksThisYear, 1);
    EXPECT_EQ(statisticsOf({readBook(QStringLiteral("2026-12-31T23:00:00Z"))}).booksThisYear, 0);
    EXPECT_EQ(makeGoodreadsStatistics({}, at(QStringLiteral("2026-12-31T22:59:59Z"))).year, 2026);
    EXPECT_EQ(makeGoodreadsStatistics({}, at(QStringLiteral("2026-12-31T23:00:00Z"))).year, 2027);
}

TEST(GoodreadsStatistics, BearDatesFromTheFirstYearToTheLast)
{
    EXPECT_EQ(
        statisticsOf({readBook(QStringLiteral("0001-01-01T00:00:00Z")), readBook(QStringLiteral("0001-01-01")),
                         readBook(QStringLiteral("9999-12-31")), readBook(QStringLiteral("9999-12-31T23:59:59-23:59"))})
            .booksThisYear,
        0);
    EXPECT_EQ(makeGoodreadsStatistics({readBook(QStringLiteral("9999-12-31"))}, at(QStringLiteral("9999-12-31")))
                  .booksThisYear,
        1);
}

TEST(GoodreadsStatistics, NameTheAuthorReadMostOften)
{
    const auto statistics = statisticsOf({by(QStringLiteral("Zoe")), by(QStringLiteral("Ann")),
        by(QStringLiteral("Zoe")), by(QString()), by(QString()), by(QString())});

    EXPECT_EQ(statistics.topAuthor, QStringLiteral("Zoe"));
    EXPECT_EQ(statistics.topAuthorCount, 2);
}

TEST(GoodreadsStatistics, NameNobodyWhenNobodyIsNamed)
{
    const auto statistics = statisticsOf({by(QString())});

    EXPECT_EQ(statistics.topAuthor, std::nullopt);
    EXPECT_EQ(statistics.topAuthorCount, 0);
}

TEST(GoodreadsStatistics, TakeTheAuthorAsItStands)
{
    const auto statistics
        = statisticsOf({by(QStringLiteral(" Zoe")), by(QStringLiteral("Zoe")), by(QStringLiteral(" Zoe"))});

    EXPECT_EQ(statistics.topAuthor, QStringLiteral(" Zoe"));
    EXPECT_EQ(statistics.topAuthorCount, 2);
}

TEST(GoodreadsStatistics, NameTheAuthorThatSortsFirstOfSeveralWhateverTheOrderOfTheBooks)
{
    const QList<Book> books{by(QStringLiteral("Author 10")), by(QStringLiteral("author 9")),
        by(QStringLiteral("Émile")), by(QStringLiteral("zoe"))};

    EXPECT_EQ(statisticsOf(books).topAuthor, QStringLiteral("author 9"));
    EXPECT_EQ(statisticsOf({books.rbegin(), books.rend()}).topAuthor, QStringLiteral("author 9"));
}

TEST(GoodreadsStatistics, ChooseTheSameOfTwoAuthorsThatDifferInCaseAlone)
{
    const QList<Book> books{by(QStringLiteral("ann")), by(QStringLiteral("Ann"))};

    EXPECT_EQ(statisticsOf(books).topAuthor, QStringLiteral("Ann"));
    EXPECT_EQ(statisticsOf({books.rbegin(), books.rend()}).topAuthor, QStringLiteral("Ann"));
}
