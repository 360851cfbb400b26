#include "QuireApp/ViewModels/DetailTexts.h"

#include <gmock/gmock.h>

namespace quire {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QLocale english(QLocale::English, QLocale::UnitedStates);
const QLocale norwegian(QLocale::NorwegianBokmal);

QStringList words(const QList<Choice> &pills)
{
    QStringList words;
    for (const Choice &pill : pills) {
        words << pill.title;
    }
    return words;
}

TEST(DetailTexts, ABookOfWhichNothingIsKnownHasNoMetadata)
{
    EXPECT_EQ(DetailTexts::bookMetadata(Book{}, english), QString());
}

TEST(DetailTexts, DatePagesAndYearStandInThatOrder)
{
    Book book;
    book.readAt = QStringLiteral("2026-03-05T23:30:00Z"); // past midnight in Oslo
    book.numberOfPages = 1320;
    book.publishedYear = 1998;
    EXPECT_EQ(DetailTexts::bookMetadata(book, english), QStringLiteral("Mar 6, 2026 · 1320 pages · 1998"));
    book.numberOfPages.reset();
    EXPECT_EQ(DetailTexts::bookMetadata(book, english), QStringLiteral("Mar 6, 2026 · 1998"));
    book.readAt = QStringLiteral("some day");
    EXPECT_EQ(DetailTexts::bookMetadata(book, english), QStringLiteral("1998"));
}

TEST(DetailTexts, ARuntimeIsInHoursAndMinutes)
{
    EXPECT_EQ(DetailTexts::runtime(0), QStringLiteral("0 min"));
    EXPECT_EQ(DetailTexts::runtime(59), QStringLiteral("59 min"));
    EXPECT_EQ(DetailTexts::runtime(60), QStringLiteral("1 hr"));
    EXPECT_EQ(DetailTexts::runtime(61), QStringLiteral("1 hr 1 min"));
    EXPECT_EQ(DetailTexts::runtime(6000), QStringLiteral("100 hr"));
}

TEST(DetailTexts, TheAverageOfABookStandsBeforeItsTags)
{
    Book book;
    EXPECT_THAT(DetailTexts::bookPills(book, english), IsEmpty());
    book.averageRating = 4.12;
    book.tags = {QStringLiteral("sea"), QStringLiteral("essays")};
    EXPECT_THAT(words(DetailTexts::bookPills(book, english)),
        ElementsAre(QStringLiteral("Goodreads: 4.12/5"), QStringLiteral("sea"), QStringLiteral("essays")));
    EXPECT_EQ(words(DetailTexts::bookPills(book, norwegian)).first(), QStringLiteral("Goodreads: 4,12/5"));
    book.averageRating = 4;
    EXPECT_EQ(words(DetailTexts::bookPills(book, english)).first(), QStringLiteral("Goodreads: 4/5"));
}

TEST(DetailTexts, RuntimeAverageAndProgressOfAnAudiobookStandInThatOrder)
{
    Audiobook audiobook;
    EXPECT_THAT(DetailTexts::audiobookPills(audiobook, english), IsEmpty());
    audiobook.runtimeMinutes = 125;
    audiobook.averageRating = 4.5;
    audiobook.listeningProgress = 41.5;
    EXPECT_THAT(words(DetailTexts::audiobookPills(audiobook, english)),
        ElementsAre(QStringLiteral("2 hr 5 min"), QStringLiteral("Audible: 4.5/5"), QStringLiteral("42% listened")));
}

TEST(DetailTexts, ProgressIsToldWhileThereIsSomeLeft)
{
    Audiobook audiobook;
    for (const double ends : {0.0, 100.0, -1.0, 101.0}) {
        audiobook.listeningProgress = ends;
        EXPECT_THAT(DetailTexts::audiobookPills(audiobook, english), IsEmpty()) << ends;
    }
    audiobook.listeningProgress = 99.6;
    EXPECT_THAT(words(DetailTexts::audiobookPills(audiobook, english)), ElementsAre(QStringLiteral("100% listened")));
}

} // namespace

} // namespace quire
