#include "records/AppNotice.h"
#include "records/AudibleAppAvailability.h"
#include "records/AudibleLibraryItem.h"
#include "records/Audiobook.h"
#include "records/Book.h"
#include "records/CatalogBooks.h"
#include "records/CustomAccentColor.h"
#include "records/DateParser.h"
#include "records/Statistics.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <memory>

namespace quire {

namespace {

using std::chrono::sys_days;
using std::chrono::year;

const auto url = [](const QString &text) { return Url::parse(text); };

// Changes of one field each. A record is compared and hashed over all of them.
template<typename Record>
using Changes = std::vector<std::function<void(Record &)>>;

template<typename Record>
void expectEveryFieldCounts(const Changes<Record> &changes)
{
    const Record plain;
    for (std::size_t i = 0; i < changes.size(); ++i) {
        SCOPED_TRACE(i);
        Record changed;
        changes[i](changed);
        EXPECT_NE(changed, plain);
        EXPECT_NE(qHash(changed), qHash(plain));
        Record same;
        changes[i](same);
        EXPECT_EQ(changed, same);
        EXPECT_EQ(qHash(changed), qHash(same));
    }
}

const QString word = QStringLiteral("word");
const auto address = url(QStringLiteral("https://example.org/a"));
const CoverBytes cover(QByteArrayLiteral("\x89PNG"));

TEST(Book, EqualityAndHashAreTakenOverAllFields)
{
    const Changes<Book> changes{[](Book &b) { b.id = 1; }, [](Book &b) { b.goodreadsID = word; },
        [](Book &b) { b.title = word; }, [](Book &b) { b.author = word; }, [](Book &b) { b.isbn = word; },
        [](Book &b) { b.shelf = word; }, [](Book &b) { b.userRating = 0.5; }, [](Book &b) { b.averageRating = 0; },
        [](Book &b) { b.numberOfPages = 0; }, [](Book &b) { b.summary = QString(); },
        [](Book &b) { b.goodreadsURL = address; }, [](Book &b) { b.publishedYear = 1; },
        [](Book &b) { b.coverURL = address; }, [](Book &b) { b.goodreadsImageURL = address; },
        [](Book &b) { b.coverData = cover; }, [](Book &b) { b.readAt = word; }, [](Book &b) { b.dateAdded = word; },
        [](Book &b) { b.dateSynced = word; }, [](Book &b) { b.dateModified = word; }, [](Book &b) { b.notes = word; },
        [](Book &b) { b.tags = {word}; }, [](Book &b) { b.isHidden = true; }};
    EXPECT_EQ(changes.size(), 22u);
    expectEveryFieldCounts(changes);
}

TEST(Audiobook, EqualityAndHashAreTakenOverAllFields)
{
    const Changes<Audiobook> changes{[](Audiobook &a) { a.id = 1; }, [](Audiobook &a) { a.asin = word; },
        [](Audiobook &a) { a.title = word; }, [](Audiobook &a) { a.author = word; },
        [](Audiobook &a) { a.narrator = word; }, [](Audiobook &a) { a.series = word; },
        [](Audiobook &a) { a.bookNumber = 0; }, [](Audiobook &a) { a.coverURL = address; },
        [](Audiobook &a) { a.coverData = cover; }, [](Audiobook &a) { a.audibleURL = address; },
        [](Audiobook &a) { a.dateAdded = word; }, [](Audiobook &a) { a.dateSynced = word; },
        [](Audiobook &a) { a.notes = word; }, [](Audiobook &a) { a.userRating = 0; },
        [](Audiobook &a) { a.finishedAt = word; }, [](Audiobook &a) { a.summary = word; },
        [](Audiobook &a) { a.status = word; }, [](Audiobook &a) { a.runtimeMinutes = 0; },
        [](Audiobook &a) { a.releaseDate = word; }, [](Audiobook &a) { a.purchaseDate = word; },
        [](Audiobook &a) { a.averageRating = 0; }, [](Audiobook &a) { a.performanceRating = 0; },
        [](Audiobook &a) { a.storyRating = 0; }, [](Audiobook &a) { a.reviewCount = 0; },
        [](Audiobook &a) { a.listeningProgress = 0; }, [](Audiobook &a) { a.audibleOwned = true; },
        [](Audiobook &a) { a.lastAudibleSync = word; }};
    EXPECT_EQ(changes.size(), 27u);
    expectEveryFieldCounts(changes);
}

TEST(BookCatalogBook, EqualityAndHashAreTakenOverAllFields)
{
    const Changes<BookCatalogBook> changes{[](BookCatalogBook &b) { b.workID = word; },
        [](BookCatalogBook &b) { b.title = word; }, [](BookCatalogBook &b) { b.author = word; },
        [](BookCatalogBook &b) { b.isbn = word; }, [](BookCatalogBook &b) { b.numberOfPages = 0; },
        [](BookCatalogBook &b) { b.publishedYear = 0; }, [](BookCatalogBook &b) { b.coverURL = address; }};
    expectEveryFieldCounts(changes);
}

TEST(AudibleCatalogBook, EqualityAndHashAreTakenOverAllFields)
{
    const Changes<AudibleCatalogBook> changes{[](AudibleCatalogBook &b) { b.asin = word; },
        [](AudibleCatalogBook &b) { b.title = word; }, [](AudibleCatalogBook &b) { b.author = word; },
        [](AudibleCatalogBook &b) { b.narrator = word; }, [](AudibleCatalogBook &b) { b.series = word; },
        [](AudibleCatalogBook &b) { b.bookNumber = 0; }, [](AudibleCatalogBook &b) { b.coverURL = address; },
        [](AudibleCatalogBook &b) { b.audibleURL = address; }, [](AudibleCatalogBook &b) { b.year = word; },
        [](AudibleCatalogBook &b) { b.summary = word; }};
    expectEveryFieldCounts(changes);
}

TEST(AudibleLibraryItem, EqualityAndHashAreTakenOverAllFields)
{
    using Item = AudibleLibraryItem;
    const Changes<Item> changes{[](Item &i) { i.asin = word; }, [](Item &i) { i.title = word; },
        [](Item &i) { i.author = word; }, [](Item &i) { i.narrator = word; }, [](Item &i) { i.series = word; },
        [](Item &i) { i.bookNumber = 0; }, [](Item &i) { i.coverURL = address; },
        [](Item &i) { i.audibleURL = address; }, [](Item &i) { i.summary = word; },
        [](Item &i) { i.runtimeMinutes = 0; }, [](Item &i) { i.releaseDate = word; },
        [](Item &i) { i.purchaseDate = word; }, [](Item &i) { i.averageRating = 0; },
        [](Item &i) { i.performanceRating = 0; }, [](Item &i) { i.storyRating = 0; },
        [](Item &i) { i.reviewCount = 0; }, [](Item &i) { i.listeningProgress = 1; },
        [](Item &i) { i.isStarted = true; }, [](Item &i) { i.isFinished = true; },
        [](Item &i) { i.ownedIndefinitely = true; }};
    EXPECT_EQ(changes.size(), 20u);
    expectEveryFieldCounts(changes);
}

TEST(TagCount, EqualityAndHashAreTakenOverBothFields)
{
    expectEveryFieldCounts<TagCount>({[](TagCount &t) { t.tag = word; }, [](TagCount &t) { t.count = 1; }});
}

TEST(CoverBytes, TwoCoversOfTheSameBytesAreEqualAndCopiesShareThem)
{
    const CoverBytes first(QByteArray("image", 5));
    const auto copy = std::make_unique<CoverBytes>(first);
    EXPECT_EQ(copy->bytes().constData(), first.bytes().constData());
    EXPECT_EQ(first, CoverBytes(QByteArray("image", 5)));
    EXPECT_NE(first, CoverBytes(QByteArray("imagf", 5)));
    EXPECT_EQ(first.size(), 5);
}

TEST(BookRecency, IsTheDateReadWhenThatParses)
{
    Book book;
    book.readAt = QStringLiteral("2024-03-05T10:15:30Z");
    book.dateAdded = QStringLiteral("2025-03-05T10:15:30Z");
    EXPECT_EQ(recencyDate(book), DateParser::date(u"2024-03-05T10:15:30Z"));
}

TEST(BookRecency, FallsBackToTheDateAddedWhenTheDateReadDoesNotParse)
{
    Book book;
    book.readAt = QStringLiteral("last summer");
    book.dateAdded = QStringLiteral("2025-03-05T10:15:30Z");
    EXPECT_EQ(recencyDate(book), DateParser::date(u"2025-03-05T10:15:30Z"));
    book.readAt = std::nullopt;
    EXPECT_EQ(recencyDate(book), DateParser::date(u"2025-03-05T10:15:30Z"));
}

TEST(BookRecency, IsTheDistantPastWithoutAnyDate)
{
    Book book;
    EXPECT_EQ(recencyDate(book), distantPast);
    book.readAt = QStringLiteral("?");
    book.dateAdded = QStringLiteral(" ");
    EXPECT_EQ(recencyDate(book), distantPast);
    EXPECT_LT(distantPast, sys_days(year(1000) / 1 / 1));
}

TEST(AudiobookRecency, FollowsFinishedThenAddedThenTheDistantPast)
{
    Audiobook audiobook;
    EXPECT_EQ(recencyDate(audiobook), distantPast);
    audiobook.dateAdded = QStringLiteral("2025-03-05T10:15:30Z");
    EXPECT_EQ(recencyDate(audiobook), DateParser::date(u"2025-03-05T10:15:30Z"));
    audiobook.finishedAt = QStringLiteral("2020-01-01T00:00:00Z");
    EXPECT_EQ(recencyDate(audiobook), sys_days(year(2020) / 1 / 1));
    audiobook.purchaseDate = QStringLiteral("2026-01-01T00:00:00Z");
    EXPECT_EQ(recencyDate(audiobook), sys_days(year(2020) / 1 / 1));
}

TEST(CustomAccentColor, ClampsEachComponentIntoRange)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(CustomAccentColor::clamped(nan, 1.5, 0.25), (CustomAccentColor{0, 1, 0.25}));
    EXPECT_EQ(CustomAccentColor::clamped(infinity, -infinity, -0.1), (CustomAccentColor{0, 0, 0}));
    EXPECT_EQ(CustomAccentColor::clamped(0, 1, 1 + 1e-9), (CustomAccentColor{0, 1, 1}));
}

TEST(CustomAccentColor, EqualityAndHashAreTakenOverTheThreeComponents)
{
    expectEveryFieldCounts<CustomAccentColor>({[](CustomAccentColor &c) { c.red = 1; },
        [](CustomAccentColor &c) { c.green = 1; }, [](CustomAccentColor &c) { c.blue = 1; }});
}

TEST(AppNotice, TheSameWordsAndCaseAreTheSameNotice)
{
    const auto notice = AppNotice::information(QStringLiteral("Title"), QStringLiteral("Message"));
    EXPECT_EQ(notice.id(), QStringLiteral("info-Title-Message"));
    EXPECT_EQ(notice, AppNotice::information(QStringLiteral("Title"), QStringLiteral("Message")));
}

TEST(AppNotice, AnotherCaseWithTheSameWordsIsAnotherNotice)
{
    const auto information = AppNotice::information(QStringLiteral("Title"), QStringLiteral("Message"));
    const auto error = AppNotice::error(QStringLiteral("Title"), QStringLiteral("Message"));
    EXPECT_EQ(error.id(), QStringLiteral("error-Title-Message"));
    EXPECT_NE(information.id(), error.id());
    EXPECT_NE(information, error);
}

TEST(AudibleAppAvailability, EachStateHasItsDetail)
{
    AudibleAppAvailability availability;
    EXPECT_EQ(availability.detail(),
        QStringLiteral("Audible is not installed. Install the Audible app from the Mac App Store to sync audio "
                       "titles."));
    availability.state = AudibleAppAvailability::State::Installed;
    EXPECT_EQ(availability.detail(),
        QStringLiteral("Audible is installed. Open it and sign in, then grant Quire access to the local library."));
    availability.libraryURL = url(QStringLiteral("file:///library"));
    EXPECT_EQ(availability.detail(), QStringLiteral("Audible is installed and its local library is available."));
}

TEST(GoodreadsStatistics, TheEmptyFormIsZeroInEveryNumberAndNamesThisYear)
{
    const QDate before = QDate::currentDate();
    const GoodreadsStatistics empty;
    const QDate after = QDate::currentDate();
    EXPECT_TRUE(empty.year == before.year() || empty.year == after.year());
    EXPECT_FALSE(empty.topAuthor);
    EXPECT_EQ(empty.reading + empty.read + empty.toRead + empty.didNotFinish + empty.totalPages + empty.booksThisYear
            + empty.pagesThisYear + empty.fiveStarCount + empty.topAuthorCount,
        0);
    EXPECT_EQ(empty.averageRating, 0);
    EXPECT_EQ(empty.averageRatingThisYear, 0);
}

TEST(Url, KeepsTheTextItArrivedInAndRefusesWhatIsNotAbsolute)
{
    EXPECT_EQ(url(QStringLiteral("HTTP://Example.org/%41"))->text(), QStringLiteral("HTTP://Example.org/%41"));
    EXPECT_FALSE(url(QString()));
    EXPECT_FALSE(url(QStringLiteral("/path")));
    EXPECT_FALSE(url(QStringLiteral("no url at all")));
    EXPECT_FALSE(url(QStringLiteral("https://example.org/a b")));
    EXPECT_FALSE(url(QStringLiteral("https://example.org/%zz")));
    EXPECT_FALSE(url(QStringLiteral("https://example.org:99999/a")));
    EXPECT_FALSE(url(QStringLiteral("https://example.org:port/a")));
}

} // namespace

} // namespace quire
