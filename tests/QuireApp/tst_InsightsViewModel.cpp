#include "ModelTest.h"
#include "QuireApp/ViewModels/InsightsViewModel.h"

namespace quire {

namespace {

Book book(qint64 id, const char *shelf, const char *added, bool hidden = false)
{
    Book book;
    book.id = id;
    book.shelf = QString::fromLatin1(shelf);
    book.dateAdded = QString::fromLatin1(added);
    book.isHidden = hidden;
    return book;
}

class InsightsViewModelTest : public ModelTest
{
};

TEST(CurrentlyReading, HoldsTheVisibleBooksBeingReadNewestFirst)
{
    const QList<Book> current = currentlyReading({
        book(1, "currently-reading", "2024-01-01"),
        book(2, "read", "2025-01-01"),
        book(3, "currently-reading", "2025-01-01"),
        book(4, "currently-reading", "2026-01-01", true),
        book(5, "currently-reading", "2024-01-01"),
    });
    QList<qint64> ids;
    for (const Book &title : current) {
        ids.append(title.id);
    }
    EXPECT_EQ(ids, (QList<qint64>{3, 1, 5}));
}

TEST(RecentlyFinished, HoldsTheWantedBooksNewestFirst)
{
    const QList<Book> recent = recentlyFinished(
        {book(1, "read", "2024-01-01"), book(2, "read", "2026-01-01"), book(3, "read", "2025-01-01")}, {1, 2});
    ASSERT_EQ(recent.size(), 2);
    EXPECT_EQ(recent[0].id, 2);
    EXPECT_EQ(recent[1].id, 1);
}

TEST(RecentlyFinished, LeavesOutWhatWasJustHiddenAndWhatIsGone)
{
    EXPECT_TRUE(recentlyFinished({book(1, "read", "2024-01-01", true)}, {1, 9}).isEmpty());
}

TEST_F(InsightsViewModelTest, FollowsTheLibrary)
{
    addBook(QStringLiteral("Now"), QStringLiteral("currently-reading"));
    makeModel();
    const auto insights = std::make_unique<InsightsViewModel>(*model);
    EXPECT_EQ(insights->currentBooks()->count(), 0);
    testing::await(model->start());
    EXPECT_EQ(insights->currentBooks()->count(), 1);
    EXPECT_FALSE(insights->hasRecentFinishes());
    EXPECT_EQ(insights->fiveStarsDetail(), QStringLiteral("0 waiting to be read"));
    addBook(QStringLiteral("Done"));
    testing::await(model->reload());
    EXPECT_TRUE(insights->hasRecentFinishes());
    EXPECT_EQ(insights->recentBooks()->count(), 1);
}

TEST_F(InsightsViewModelTest, ALibraryWithoutReadBooksHasZerosAndEmptyChartsWithEveryRow)
{
    makeModel();
    testing::await(model->start());
    const auto insights = std::make_unique<InsightsViewModel>(*model);
    EXPECT_EQ(insights->booksFinished(), QStringLiteral("0"));
    EXPECT_EQ(insights->pagesRead(), QStringLiteral("0"));
    EXPECT_EQ(insights->ratingThisYear(), QStringLiteral("—"));
    EXPECT_EQ(insights->activeMonths(), QStringLiteral("0 of 12"));
    EXPECT_EQ(insights->months()->count(), 12);
    EXPECT_EQ(insights->ratings()->count(), 5);
    EXPECT_EQ(insights->averageLength(), QStringLiteral("No page data"));
    EXPECT_TRUE(insights->tags().isEmpty());
    EXPECT_FALSE(insights->hasRecentFinishes());
    EXPECT_EQ(insights->currentBooks()->count(), 0);
}

} // namespace

} // namespace quire
