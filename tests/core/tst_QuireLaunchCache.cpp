// The two files of the launch cache: what is written is read again, and whatever
// else lies there is passed over, in bounded memory.

#include "core/QuireLaunchCache.h"

#include "files/FileError.h"
#include "records/RecordCoding.h"
#include "testing/ResourceLimit.h"
#include "testing/ResourceUse.h"
#include "testing/TestFiles.h"
#include "testing/ThrownFailure.h"

#include <QCborArray>
#include <QCborMap>
#include <QCborStreamWriter>
#include <QCborValue>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <limits>
#include <random>

#include <malloc.h>
#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

namespace {

const QString path = QStringLiteral("/library/quire.db");

Book book(qint64 id, qsizetype coverSize = 0)
{
    Book book;
    book.id = id;
    book.title = QStringLiteral("Title %1").arg(id);
    book.shelf = QStringLiteral("read");
    book.tags = {QStringLiteral("a"), QStringLiteral("b")};
    if (coverSize > 0) {
        book.coverData = CoverBytes(QByteArray(coverSize, char('a' + id % 26)));
    }
    return book;
}

Audiobook audiobook(qint64 id)
{
    Audiobook audiobook;
    audiobook.id = id;
    audiobook.title = QStringLiteral("Audio %1").arg(id);
    audiobook.coverData = CoverBytes(QByteArray(70'000, 'x'));
    return audiobook;
}

QuireLibrarySnapshot snapshot()
{
    return {
        .databasePath = path,
        .books = {book(1, 100'000), book(2), book(3, 10)},
        .audiobooks = {audiobook(1), audiobook(2)},
        .tags = {{QStringLiteral("a"), 3}, {QStringLiteral("b"), 3}},
    };
}

QuireLaunchPreferences preferences()
{
    return {
        .sidebarAppearance = SidebarAppearance::Pine,
        .interfaceFont = InterfaceFontChoice::Georgia,
        .accentColor = AccentColorChoice::Cabin,
        .usesCustomAccentColor = true,
        .customAccentColor = CustomAccentColor(0.25, 0.5, 1),
        .showBooksSection = false,
        .showAudioSection = true,
        .selectedTab = LibraryTab::Audio,
    };
}

class QuireLaunchCacheTest : public ::testing::Test
{
protected:
    QString file(const QString &name) const { return m_folder.filePath(name); }
    QString appearanceFile() const { return file(QStringLiteral("Launch Appearance.plist")); }
    QString libraryFile() const { return file(QStringLiteral("Launch Library.plist")); }

    // What is read of a file of these bytes.
    std::optional<QuireLaunchPreferences> preferencesOf(const QByteArray &bytes)
    {
        putFile(appearanceFile(), bytes);
        return cache.preferences();
    }
    std::optional<QuireLibrarySnapshot> libraryOf(const QByteArray &bytes)
    {
        putFile(libraryFile(), bytes);
        return cache.library(path);
    }

    // What is read of the ordinary files with one member changed.
    std::optional<QuireLaunchPreferences> preferencesWith(const QString &key, const QCborValue &value)
    {
        cache.save(preferences(), std::nullopt);
        QCborMap map = QCborValue::fromCbor(bytesOf(appearanceFile())).toMap();
        map[key] = value;
        return preferencesOf(map.toCborValue().toCbor());
    }
    std::optional<QuireLibrarySnapshot> libraryWith(const QString &key, const QCborValue &value)
    {
        cache.save(preferences(), snapshot());
        QCborMap map = QCborValue::fromCbor(bytesOf(libraryFile())).toMap();
        map[key] = value;
        return libraryOf(map.toCborValue().toCbor());
    }

    QTemporaryDir m_folder;
    QuireLaunchCache cache{m_folder.path()};
};

QStringList keysOf(const QByteArray &bytes)
{
    QStringList keys;
    for (const QCborValue &key : QCborValue::fromCbor(bytes).toMap().keys()) {
        keys.append(key.toString());
    }
    return keys;
}

} // namespace

TEST_F(QuireLaunchCacheTest, ReadsWhatItSaved)
{
    cache.save(preferences(), snapshot());

    EXPECT_EQ(cache.preferences(), preferences());
    EXPECT_EQ(cache.library(path), snapshot());
    EXPECT_THAT(namesIn(m_folder.path()),
        UnorderedElementsAre(QStringLiteral("Launch Appearance.plist"), QStringLiteral("Launch Library.plist")));
}

TEST_F(QuireLaunchCacheTest, WritesTheKeysInTheirOrder)
{
    cache.save(preferences(), snapshot());

    EXPECT_EQ(keysOf(bytesOf(appearanceFile())),
        QStringLiteral("sidebarAppearance interfaceFont accentColor usesCustomAccentColor customAccentColor "
                       "showBooksSection showAudioSection selectedTab")
            .split(u' '));
    EXPECT_EQ(
        keysOf(bytesOf(libraryFile())), QStringLiteral("schemaVersion databasePath books audiobooks tags").split(u' '));

    cache.save({}, std::nullopt);
    EXPECT_FALSE(keysOf(bytesOf(appearanceFile())).contains(QStringLiteral("customAccentColor")));
    EXPECT_EQ(cache.preferences(), QuireLaunchPreferences());
}

TEST_F(QuireLaunchCacheTest, IsSmallWhereItIsReadBeforeTheFirstFrame)
{
    cache.save(preferences(), snapshot());

    EXPECT_LT(bytesOf(appearanceFile()).size(), 512);
}

TEST_F(QuireLaunchCacheTest, RewritesOnlyTheSmallFileForAChangeOfLook)
{
    cache.save(preferences(), snapshot());
    putFile(libraryFile(), "untouched");

    cache.save({}, std::nullopt);

    EXPECT_EQ(cache.preferences(), QuireLaunchPreferences());
    EXPECT_EQ(bytesOf(libraryFile()), "untouched");
}

TEST_F(QuireLaunchCacheTest, MakesItsFolder)
{
    const QuireLaunchCache deep(m_folder.filePath(QStringLiteral("a/b")));

    EXPECT_EQ(deep.preferences(), std::nullopt);
    EXPECT_EQ(deep.library(path), std::nullopt);
    deep.save(preferences(), snapshot());

    EXPECT_EQ(deep.preferences(), preferences());
    EXPECT_EQ(deep.library(path), snapshot());
}

TEST_F(QuireLaunchCacheTest, LeavesTheLibraryAloneWhenTheLookCannotBeWritten)
{
    QDir().mkpath(appearanceFile()); // a folder in the file's place

    EXPECT_THROW(cache.save(preferences(), snapshot()), FileError);

    EXPECT_FALSE(QFile::exists(libraryFile()));
}

TEST_F(QuireLaunchCacheTest, KeepsTheOldLibraryWhenTheNewOneDoesNotFitOnTheDisk)
{
    cache.save(preferences(), snapshot());
    QuireLibrarySnapshot larger = snapshot();
    larger.books.append(book(4, 500'000));

    const auto failure = thrownBy<FileError>([&] {
        const ShortFiles full(300'000);
        cache.save(preferences(), larger);
    });

    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), EFBIG);
    EXPECT_EQ(cache.library(path), snapshot());
    EXPECT_EQ(namesIn(m_folder.path()).size(), 2); // no temporary file
}

TEST_F(QuireLaunchCacheTest, RefusesASnapshotOfAnotherVersion)
{
    QuireLibrarySnapshot later = snapshot();
    later.schemaVersion = 2;
    cache.save(preferences(), later);
    EXPECT_EQ(cache.library(path), std::nullopt);

    EXPECT_EQ(libraryWith(QStringLiteral("schemaVersion"), 1), snapshot());
    for (const QCborValue &version :
        {QCborValue(0), QCborValue(-1), QCborValue(1.0), QCborValue(QStringLiteral("1"))}) {
        EXPECT_EQ(libraryWith(QStringLiteral("schemaVersion"), version), std::nullopt);
    }
}

TEST_F(QuireLaunchCacheTest, RefusesASnapshotOfAnotherLibrary)
{
    cache.save(preferences(), snapshot());

    for (const auto *other : {u"/library/Quire.db", u"/library/quire.db ", u"/library/../library/quire.db", u""}) {
        EXPECT_EQ(cache.library(QString::fromUtf16(other)), std::nullopt);
    }
    EXPECT_EQ(libraryWith(QStringLiteral("databasePath"), QByteArray("/library/quire.db")), std::nullopt);
}

TEST_F(QuireLaunchCacheTest, LooksAtVersionAndPathBeforeTheTitles)
{
    // The titles would be refused only after all covers before them were read.
    QuireLibrarySnapshot other = snapshot();
    other.databasePath = QStringLiteral("/elsewhere/quire.db");
    for (qint64 id = 0; id < 200; ++id) {
        other.books.append(book(id, 500'000));
    }
    cache.save(preferences(), other);
    other = {};
    malloc_trim(0);
    const ResourceUse before;
    const qint64 resident = before.peakMegabytes();

    const ResourceUse use;
    EXPECT_EQ(cache.library(path), std::nullopt);

    if (!isInstrumented) {
        EXPECT_LT(use.peakMegabytes(), resident + 20);
    }
}

TEST_F(QuireLaunchCacheTest, RefusesEveryCutOfALibrary)
{
    QuireLibrarySnapshot small = snapshot();
    small.books = {book(1, 100)};
    small.audiobooks = {};
    cache.save(preferences(), small);
    const QByteArray whole = bytesOf(libraryFile());

    for (qsizetype length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(libraryOf(whole.left(length)), std::nullopt) << length;
    }
    EXPECT_EQ(libraryOf(whole), small);
}

TEST_F(QuireLaunchCacheTest, RefusesALibraryWithSomethingAfterIt)
{
    cache.save(preferences(), snapshot());
    const QByteArray whole = bytesOf(libraryFile());

    EXPECT_EQ(libraryOf(whole), snapshot());
    EXPECT_EQ(libraryOf(whole + ' '), std::nullopt);
    EXPECT_EQ(libraryOf(whole + whole), std::nullopt);
}

TEST_F(QuireLaunchCacheTest, RefusesALibraryThatLacksAList)
{
    for (const auto *key : {u"schemaVersion", u"databasePath", u"books", u"audiobooks", u"tags"}) {
        cache.save(preferences(), snapshot());
        QCborMap map = QCborValue::fromCbor(bytesOf(libraryFile())).toMap();
        map.remove(QString::fromUtf16(key));
        EXPECT_EQ(libraryOf(map.toCborValue().toCbor()), std::nullopt);
    }
    EXPECT_EQ(libraryWith(QStringLiteral("books"), QStringLiteral("none")), std::nullopt);
    EXPECT_EQ(libraryWith(QStringLiteral("tags"), QCborArray{QStringLiteral("a")}), std::nullopt);
    EXPECT_EQ(libraryWith(QStringLiteral("audiobooks"), QCborMap()), std::nullopt);
}

TEST_F(QuireLaunchCacheTest, TakesDamagedBytesForALibraryOrForNone)
{
    QuireLibrarySnapshot small = snapshot();
    small.books = {book(1, 100), book(2)};
    small.audiobooks = {};
    cache.save(preferences(), small);
    const QByteArray library = bytesOf(libraryFile());
    const QByteArray look = bytesOf(appearanceFile());
    const auto seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto damaged = [&random](QByteArray bytes) {
        for (std::size_t changes = 1 + random() % 3; changes > 0; --changes) {
            bytes[qsizetype(random() % std::size_t(bytes.size()))] = char(random());
        }
        return bytes;
    };

    int refused = 0;
    for (int round = 0; round < 1'000; ++round) {
        refused += libraryOf(damaged(library)) ? 0 : 1;
        refused += preferencesOf(damaged(look)) ? 0 : 1;
    }

    EXPECT_GT(refused, 500);
}

TEST_F(QuireLaunchCacheTest, RefusesWhatIsNoFileWithoutWaiting)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(libraryFile()).constData(), 0600), 0);
    ASSERT_EQ(::mkfifo(QFile::encodeName(appearanceFile()).constData(), 0600), 0);

    EXPECT_EQ(cache.library(path), std::nullopt);
    EXPECT_EQ(cache.preferences(), std::nullopt);

    QFile::remove(libraryFile());
    QFile::remove(appearanceFile());
    QDir().mkpath(libraryFile());
    QDir().mkpath(appearanceFile());
    EXPECT_EQ(cache.library(path), std::nullopt);
    EXPECT_EQ(cache.preferences(), std::nullopt);
}

TEST_F(QuireLaunchCacheTest, RefusesALookThatLacksAnythingOrHasAnUnknownWord)
{
    cache.save(preferences(), std::nullopt);
    const QCborMap whole = QCborValue::fromCbor(bytesOf(appearanceFile())).toMap();
    for (const QCborValue &key : whole.keys()) {
        const bool isOptional = key.toString() == QStringLiteral("customAccentColor");
        QCborMap without = whole;
        without.remove(key);
        EXPECT_EQ(preferencesOf(without.toCborValue().toCbor()).has_value(), isOptional)
            << key.toString().toStdString();
        for (const QCborValue &other : {QCborValue(1), QCborValue(QStringLiteral("plum")), QCborValue(QCborArray()),
                 QCborValue(QCborValue::Null), QCborValue(QCborMap())}) {
            EXPECT_EQ(preferencesWith(key.toString(), other), std::nullopt) << key.toString().toStdString();
        }
    }
    EXPECT_EQ(preferencesWith(QStringLiteral("later"), 7), preferences());
}

TEST_F(QuireLaunchCacheTest, RefusesALookThatIsCutLongOrGarbage)
{
    cache.save(preferences(), std::nullopt);
    const QByteArray whole = bytesOf(appearanceFile());
    for (qsizetype length = 0; length < whole.size(); ++length) {
        EXPECT_EQ(preferencesOf(whole.left(length)), std::nullopt) << length;
    }
    EXPECT_EQ(preferencesOf(whole + ' '), std::nullopt);
    EXPECT_EQ(preferencesOf(QByteArray(16 * 1024 + 1, '\xa0')), std::nullopt);
    EXPECT_EQ(preferencesOf(QByteArray(16 * 1024, '\x81')), std::nullopt); // lists in lists
    EXPECT_EQ(preferencesOf("bplist00"), std::nullopt);
}

TEST_F(QuireLaunchCacheTest, EndsEarlyWhenNobodyWaits)
{
    cache.save(preferences(), snapshot());
    std::stop_source source;
    source.request_stop();

    EXPECT_EQ(cache.library(path, source.get_token()), std::nullopt);
}

namespace {

// A file that begins like a library and goes on with these bytes, again and again.
void putHostileLibrary(const QString &name, const QByteArray &opening, const QByteArray &more, int times)
{
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    QCborStreamWriter writer(&file);
    writer.startMap(5);
    writer.append(QLatin1StringView("schemaVersion"));
    writer.append(1);
    writer.append(QLatin1StringView("databasePath"));
    writer.append(QStringView(path));
    writer.append(QLatin1StringView("books"));
    file.write(opening);
    for (int time = 0; time < times; ++time) {
        file.write(more);
    }
}

QByteArray encoded(const Book &book)
{
    QByteArray bytes;
    QCborStreamWriter writer(&bytes);
    encode(writer, book);
    return bytes;
}

} // namespace

TEST_F(QuireLaunchCacheTest, RefusesHostileLibrariesInLittleMemory)
{
    struct Hostile
    {
        const char *name;
        QByteArray opening;
        QByteArray more;
        int times;
    };
    const QByteArray list("\x9f", 1); // of any length
    const QByteArray titleWithTags = QByteArray("\xbf\x64tags\x9f", 7);
    const QByteArray titleWithText = QByteArray("\xbf\x65title\x7b\x00\x00\x00\x00\x08\x00\x00\x00", 16);
    const QByteArray titleWithCover = QByteArray("\xbf\x69"
                                                 "coverData\x5b\x7f\xff\xff\xff\xff\xff\xff\xff",
        20);
    Book tagged;
    tagged.tags = QStringList(10'000, QString());
    // Each would take many times its length in memory, or what it only promises.
    const std::vector<Hostile> libraries{
        {"one title, a tag a byte", list + titleWithTags, QByteArray(1'000'000, '\x60'), 50},
        {"many titles, a tag a byte", list, encoded(tagged), 5'000},
        {"titles of nothing", list, encoded(Book()), 1'500'000},
        {"one long text", list + titleWithText, QByteArray(1'000'000, 'x'), 135},
        {"a promise of titles", QByteArray("\x9b\x7f\xff\xff\xff\xff\xff\xff\xff", 9), QByteArray(), 0},
        {"a promise of a cover", list + titleWithCover, QByteArray(), 0},
    };
    for (const Hostile &library : libraries) {
        putHostileLibrary(libraryFile(), library.opening, library.more, library.times);
        malloc_trim(0);
        const ResourceUse use;
        EXPECT_EQ(cache.library(path), std::nullopt) << library.name;
        if (!isInstrumented) {
            EXPECT_LT(use.peakMegabytes(), 400) << library.name;
        }
    }
}

TEST_F(QuireLaunchCacheTest, RefusesFilesOfHalfAGigabyteUnread)
{
    cache.save(preferences(), snapshot());
    EXPECT_TRUE(cache.library(path));
    QFile file(libraryFile());
    ASSERT_TRUE(file.resize(500'000'000)); // the same library, and nothing after it

    const ResourceUse use;
    EXPECT_EQ(cache.library(path), std::nullopt);

    if (!isInstrumented) {
        EXPECT_LT(use.peakMegabytes(), 100);
    }
}

TEST_F(QuireLaunchCacheTest, KeepsNoLibraryThatAStartWouldNotRead)
{
    cache.save(preferences(), snapshot());
    QuireLibrarySnapshot large = snapshot();
    const CoverBytes cover(QByteArray(1'000'000, 'x')); // one in memory, many on the disk
    for (qint64 id = 10; id < 500; ++id) {
        large.books.append(book(id));
        large.books.last().coverData = cover;
    }

    EXPECT_THROW(cache.save({}, large), LibraryTooLargeError);

    EXPECT_EQ(cache.preferences(), QuireLaunchPreferences());
    EXPECT_THAT(namesIn(m_folder.path()), ElementsAre(QStringLiteral("Launch Appearance.plist")));
}

TEST_F(QuireLaunchCacheTest, SavesWithoutASecondCopyOfTheCovers)
{
    QuireLibrarySnapshot large = snapshot();
    for (qint64 id = 10; id < 210; ++id) {
        large.books.append(book(id, 500'000)); // 100 MB
    }
    malloc_trim(0);
    const ResourceUse before;
    const qint64 resident = before.peakMegabytes();

    const ResourceUse use;
    cache.save(preferences(), large);

    if (!isInstrumented) {
        EXPECT_LT(use.peakMegabytes(), resident + 10);
    }
    EXPECT_EQ(cache.library(path), large);
}
