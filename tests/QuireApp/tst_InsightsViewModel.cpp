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

TEST_F(InsightsViewModelTest, FollowsTheLibrary)
{
    addBook(QStringLiteral("Now"), QStringLiteral("currently-reading"));
    makeModel();
    const auto insights = std::make_unique<InsightsViewModel>(*model);
    EXPECT_EQ(insights->currentBooks()->count(), 0);
    testing::await(model->start());
    EXPECT_EQ(insights->currentBooks()->count(), 1);
    EXPECT_FALSE(insights->hasFinishedBooks());
    addBook(QStringLiteral("Done"));
    testing::await(model->reload());
    EXPECT_TRUE(insights->hasFinishedBooks());
}

} // namespace

} // namespace quire
