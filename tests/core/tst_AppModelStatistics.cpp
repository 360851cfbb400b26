// The figures that the model derives of what it loaded.

#include "ModelTest.h"

#include "core/GoodreadsStatistics.h"
#include "core/ReadingInsights.h"
#include "records/DateParser.h"

#include <QSignalSpy>

namespace quire {

namespace {

using testing::await;

class AppModelStatistics : public ModelTest
{
protected:
    void addFinishedBook(const QString &title, const QString &readAt)
    {
        addBook(title);
        library.execute("UPDATE goodreads_books SET read_at = ? WHERE title = ?", {readAt, title});
    }
};

TEST_F(AppModelStatistics, AreEmptyBeforeTheFirstLoad)
{
    makeModel();

    EXPECT_EQ(model->goodreadsStatistics(), GoodreadsStatistics());
    EXPECT_EQ(model->readingInsights(), ReadingInsightsSnapshot());
    EXPECT_EQ(model->audibleStatistics(), AudibleStatistics());
}

TEST_F(AppModelStatistics, AreThoseOfTheBooksOfTheLoad)
{
    addFinishedBook(QStringLiteral("Emma"), QStringLiteral("2026-03-05"));
    addFinishedBook(QStringLiteral("Momo"), QStringLiteral("2025-03-05"));
    addFinishedBook(QStringLiteral("Hidden"), QStringLiteral("2026-03-05"));
    library.execute("UPDATE goodreads_books SET hidden = 1 WHERE title = 'Hidden'");
    addAudiobook(QStringLiteral("Dune"));

    startModel();

    EXPECT_EQ(model->goodreadsStatistics().read, 2);
    EXPECT_EQ(model->goodreadsStatistics().booksThisYear, 1);
    EXPECT_EQ(model->readingInsights().bestMonth, QStringLiteral("Mar"));
    EXPECT_EQ(model->audibleStatistics().total, 1);
    EXPECT_EQ(model->goodreadsStatistics(), makeGoodreadsStatistics(model->books(), clock.now()));
    EXPECT_EQ(model->readingInsights(), makeReadingInsights(model->books(), clock.now()));
}

TEST_F(AppModelStatistics, FollowTheYearOfTheClockAtEachLoad)
{
    addFinishedBook(QStringLiteral("Emma"), QStringLiteral("2026-12-31"));
    startModel();
    const QSignalSpy figures(model.get(), &AppModel::goodreadsStatisticsChanged);
    const QSignalSpy insights(model.get(), &AppModel::readingInsightsChanged);

    clock.setNow(DateParser::date(QStringLiteral("2027-01-01")).value());
    await(model->reload());

    EXPECT_EQ(model->goodreadsStatistics().year, 2027);
    EXPECT_EQ(model->goodreadsStatistics().booksThisYear, 0);
    EXPECT_EQ(model->readingInsights().activeMonths, 0);
    EXPECT_EQ(figures.size(), 1); // one announcement each
    EXPECT_EQ(insights.size(), 1);
}

TEST_F(AppModelStatistics, GiveTheFirstOfSeveralAsTheTitleInProgress)
{
    addBook(QStringLiteral("First"), QStringLiteral("currently-reading"));
    addBook(QStringLiteral("Second"), QStringLiteral("currently-reading"));
    addBook(QStringLiteral("Latest, but hidden"), QStringLiteral("currently-reading"));
    library.execute("UPDATE goodreads_books SET date_added = '2020-01-01'");
    library.execute("UPDATE goodreads_books SET hidden = 1, date_added = '2026-01-01' WHERE title LIKE 'Latest%'");
    addAudiobook(QStringLiteral("Dune"), QStringLiteral("reading"));

    startModel();

    ASSERT_TRUE(model->currentBook());
    const auto &books = model->books();
    const auto first = std::find_if(books.begin(), books.end(), [](const Book &book) { return !book.isHidden; });
    EXPECT_EQ(model->currentBook()->title, first->title);
    ASSERT_TRUE(model->currentAudiobook());
    EXPECT_EQ(model->currentAudiobook()->title, QStringLiteral("Dune"));
}

} // namespace

} // namespace quire
