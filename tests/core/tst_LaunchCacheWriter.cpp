#include "core/LaunchCacheWriter.h"

#include "testing/Await.h"
#include "testing/TestFiles.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

using namespace quire;
using namespace quire::testing;

namespace {

const QString path = QStringLiteral("/library/quire.db");

QuireLibrarySnapshot libraryOf(qint64 titles)
{
    QuireLibrarySnapshot snapshot{.databasePath = path};
    for (qint64 id = 1; id <= titles; ++id) {
        Book book;
        book.id = id;
        snapshot.books.append(book);
    }
    return snapshot;
}

QuireLaunchPreferences lookOf(LibraryTab tab)
{
    return {.selectedTab = tab};
}

class LaunchCacheWriterTest : public ::testing::Test
{
protected:
    LaunchCacheWriterTest()
    {
        qputenv("QUIRE_LOG_PATH", QFile::encodeName(m_folder.filePath(QStringLiteral("test.log"))));
    }

    QTemporaryDir m_folder;
    QuireLaunchCache cache{m_folder.filePath(QStringLiteral("cache"))};
};

} // namespace

TEST_F(LaunchCacheWriterTest, FinishesWhatWasAskedForBeforeItEnds)
{
    {
        LaunchCacheWriter writer(cache);
        writer.save(lookOf(LibraryTab::Books), libraryOf(2'000));
    }

    EXPECT_EQ(cache.preferences(), lookOf(LibraryTab::Books));
    EXPECT_EQ(cache.library(path), libraryOf(2'000));
}

TEST_F(LaunchCacheWriterTest, EndsWithTheNewestStateOfManyThatCameQuickly)
{
    {
        LaunchCacheWriter writer(cache);
        for (qint64 titles = 1; titles <= 200; ++titles) {
            writer.save(lookOf(LibraryTab::Insights), libraryOf(titles));
        }
    }

    EXPECT_EQ(cache.library(path), libraryOf(200));
}

TEST_F(LaunchCacheWriterTest, DoesNotLoseALibraryToAChangeOfLookBehindIt)
{
    {
        LaunchCacheWriter writer(cache);
        writer.save(lookOf(LibraryTab::Insights), libraryOf(20'000)); // keeps it busy
        writer.save(lookOf(LibraryTab::Books), libraryOf(3));
        writer.save(lookOf(LibraryTab::Audio), std::nullopt);
    }

    EXPECT_EQ(cache.preferences(), lookOf(LibraryTab::Audio));
    EXPECT_EQ(cache.library(path), libraryOf(3));
}

TEST_F(LaunchCacheWriterTest, TellsTheLogAloneOfAFailure)
{
    putFile(m_folder.filePath(QStringLiteral("cache")), "a file where the folder would be");
    {
        LaunchCacheWriter writer(cache);
        writer.save(lookOf(LibraryTab::Books), std::nullopt);
    }

    EXPECT_TRUE(eventually([this] {
        return bytesOf(m_folder.filePath(QStringLiteral("test.log"))).contains("] Could not save launch cache: ");
    }));
}
