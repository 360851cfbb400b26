#include "core/Paging.h"

#include "records/Book.h"

#include <gtest/gtest.h>

#include <numeric>

namespace quire {

namespace {

LibrarySlice<Book> booksNumbered(int count)
{
    QList<Book> books(count);
    QList<int> rows(count);
    std::iota(rows.begin(), rows.end(), 0);
    for (int row = 0; row < count; ++row) {
        books[row].id = row + 1;
    }
    return {books, rows};
}

TEST(Paging, AnEmptyLibraryHasOneEmptyPage)
{
    EXPECT_EQ(Paging::pageCount(0), 1);
    EXPECT_TRUE(Paging::page(booksNumbered(0), 1).isEmpty());
    EXPECT_EQ(Paging::description(1, 1), QStringLiteral("Page 1 of 1"));
}

TEST(Paging, ThirtySixBooksFillAPageAndOneMoreOpensASecond)
{
    EXPECT_EQ(Paging::pageCount(36), 1);
    EXPECT_EQ(Paging::pageCount(37), 2);
    EXPECT_EQ(Paging::page(booksNumbered(37), 1).size(), 36);
    EXPECT_EQ(Paging::page(booksNumbered(37), 2).ids(), QList<qint64>{37});
}

TEST(Paging, APageOutOfRangeShowsTheNearestOneAndIsNamedAsItIs)
{
    EXPECT_EQ(Paging::page(booksNumbered(40), 9).ids(), Paging::page(booksNumbered(40), 2).ids());
    EXPECT_EQ(Paging::page(booksNumbered(40), -1).ids(), Paging::page(booksNumbered(40), 1).ids());
    EXPECT_EQ(Paging::description(9, 2), QStringLiteral("Page 9 of 2"));
}

TEST(LibrarySlice, ShowsRowsInTheOrderGiven)
{
    QList<Book> books(3);
    books[0].id = 10;
    books[2].id = 30;
    const LibrarySlice<Book> slice(books, {2, 0});

    EXPECT_EQ(slice.ids(), (QList<qint64>{30, 10}));
    EXPECT_EQ(slice.at(1).id, 10);
    EXPECT_EQ(slice.mid(1, 5).ids(), QList<qint64>{10});
    EXPECT_TRUE(slice.mid(2, 5).isEmpty());
}

TEST(LibrarySlice, ComparesTheTitlesItShowsAcrossLists)
{
    QList<Book> before(2);
    before[0].id = 1;
    before[1].id = 2;
    const QList<Book> after{before[1], before[0]};

    EXPECT_TRUE(LibrarySlice<Book>(before, {0, 1}).hasSameIds({after, {1, 0}}));
    EXPECT_FALSE(LibrarySlice<Book>(before, {0, 1}).hasSameIds({after, {0, 1}}));
    EXPECT_FALSE(LibrarySlice<Book>(before, {0, 1}).hasSameIds({before, {0}}));
    EXPECT_TRUE(LibrarySlice<Book>(before, {1}).hasSameIds({before, {1}}));
}

} // namespace

} // namespace quire
