#include "publishing/PublishingSnapshot.h"

#include "SampleTitles.h"

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;
using ::testing::IsEmpty;

namespace {

Book book(const char *title, const char *shelf, std::optional<QString> readAt = {}, std::optional<QString> added = {})
{
    Book book = plainBook(QString::fromUtf8(title));
    book.shelf = QString::fromUtf8(shelf);
    book.readAt = std::move(readAt);
    book.dateAdded = std::move(added);
    return book;
}

template<typename Title>
QStringList titles(const QList<Title> &records)
{
    QStringList titles;
    for (const Title &record : records) {
        titles.append(record.title);
    }
    return titles;
}

QStringList words(const char *text)
{
    return QString::fromUtf8(text).split(u' ');
}

constexpr Instant now = std::chrono::sys_days(std::chrono::year(2026) / 11 / 21);

PublishingSnapshot snapshotOf(const QList<Book> &books, const QList<Audiobook> &audiobooks = {})
{
    return makePublishingSnapshot(books, audiobooks, {}, now);
}

} // namespace

TEST(PublishingSnapshot, HoldsWhatIsReadAndBeingReadAndNoOtherShelf)
{
    const PublishingSnapshot snapshot = snapshotOf({book("a", "read"), book("b", "currently-reading"),
        book("c", "to-read"), book("d", "did-not-finish"), book("e", ""), book("f", "Read")});
    EXPECT_EQ(titles(snapshot.booksRead), words("a"));
    EXPECT_EQ(titles(snapshot.currentlyReading), words("b"));
    EXPECT_EQ(snapshot.generatedAt, now);
}

TEST(PublishingSnapshot, HoldsNothingHidden)
{
    Book hidden = book("a", "read");
    hidden.isHidden = true;
    Book hiddenToo = book("b", "currently-reading");
    hiddenToo.isHidden = true;
    const PublishingSnapshot snapshot = snapshotOf({hidden, hiddenToo});
    EXPECT_THAT(snapshot.booksRead, IsEmpty());
    EXPECT_THAT(snapshot.currentlyReading, IsEmpty());
}

TEST(PublishingSnapshot, PassesTheStatisticsOn)
{
    GoodreadsStatistics statistics;
    statistics.read = 7;
    EXPECT_EQ(makePublishingSnapshot({}, {}, statistics, now).statistics, statistics);
}

TEST(PublishingSnapshot, TheLatestComesFirstAndADateThatCannotBeReadYieldsToTheDateAdded)
{
    const QString march = QStringLiteral("2026-03-01");
    const QString may = QStringLiteral("Fri, 01 May 2026 10:00:00 +0000");
    const QString july = QStringLiteral("2026-07-01T00:00:00Z");
    for (const char *shelf : {"read", "currently-reading"}) {
        const PublishingSnapshot snapshot = snapshotOf({
            book("march", shelf, march, july),
            book("never", shelf, QStringLiteral("soon"), QStringLiteral("who knows")),
            book("july", shelf, july),
            book("may", shelf, QStringLiteral("someday"), may),
            book("dateless", shelf),
        });
        const QList<Book> &books = snapshot.booksRead.isEmpty() ? snapshot.currentlyReading : snapshot.booksRead;
        EXPECT_EQ(titles(books), words("july may march never dateless"));
    }
}

TEST(PublishingSnapshot, TitlesOfOneMomentKeepTheirOrder)
{
    const QString day = QStringLiteral("2026-03-01");
    QList<Book> books;
    QStringList expected;
    for (int i = 0; i < 100; ++i) {
        const QByteArray title = QByteArray::number(i);
        books.append(book(title.constData(), "read", day));
        expected.append(QString::fromLatin1(title));
    }
    EXPECT_EQ(titles(snapshotOf(books).booksRead), expected);
}

TEST(PublishingSnapshot, HoldsAudiobooksThatAreRatedWhateverTheirStatus)
{
    QList<Audiobook> audiobooks;
    const auto add = [&](const char *title, std::optional<double> rating, const char *finished, const char *status) {
        Audiobook audiobook = plainAudiobook(QString::fromUtf8(title));
        audiobook.userRating = rating;
        audiobook.finishedAt = QString::fromUtf8(finished);
        audiobook.status = QString::fromUtf8(status);
        audiobooks.append(audiobook);
    };
    add("unrated", std::nullopt, "2026-03-01", "read");
    add("zero", 0, "2026-03-01", "read");
    add("negative", -1, "2026-03-01", "read");
    add("half", 0.5, "2026-03-01", "to-read");
    add("five", 5, "2026-04-01", "did-not-finish");
    Audiobook added = plainAudiobook(QStringLiteral("added"));
    added.finishedAt = QStringLiteral("not a date");
    added.dateAdded = QStringLiteral("2026-05-01");
    audiobooks.append(added);
    EXPECT_EQ(titles(snapshotOf({}, audiobooks).ratedAudiobooks), words("added five half"));
}
