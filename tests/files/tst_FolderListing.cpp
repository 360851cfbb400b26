#include "files/FolderListing.h"

#include "files/FileError.h"
#include "records/DateParser.h"
#include "testing/ThrownFailure.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cerrno>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;
using ::testing::ElementsAre;

namespace {

class FolderListingTest : public ::testing::Test
{
protected:
    ~FolderListingTest() override { ::unlink(native("caf\xe9").constData()); } // QTemporaryDir cannot

    QByteArray native(const char *name) const { return QFile::encodeName(m_folder.path()) + '/' + name; }

    void put(const char *name, FileDate date = {})
    {
        const int file = ::open(native(name).constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
        const timespec times[] = {{0, UTIME_OMIT}, {date.seconds, long(date.nanoseconds)}};
        EXPECT_EQ(::futimens(file, times), 0);
        ::close(file);
    }

    std::vector<std::string> names() const
    {
        std::vector<std::string> names;
        for (const FolderEntry &entry : FolderListing::of(m_folder.path())) {
            names.push_back(entry.path.filename().native());
        }
        return names;
    }

    QTemporaryDir m_folder;
};

} // namespace

TEST_F(FolderListingTest, TellsEveryEntryInTheOrderOfNames)
{
    put("b");
    put(".hidden");
    put("caf\xe9"); // no UTF-8
    put("a");

    EXPECT_THAT(names(), ElementsAre(".hidden", "a", "b", "caf\xe9"));
}

TEST_F(FolderListingTest, TellsTheDateToTheNanosecond)
{
    put("a", {1'700'000'000, 123'456'789});

    const auto entries = FolderListing::of(m_folder.path());

    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].modified, (FileDate{1'700'000'000, 123'456'789}));
    EXPECT_EQ(DateParser::iso8601(entries[0].modified->instant()), QStringLiteral("2023-11-14T22:13:20.123Z"));
    EXPECT_FALSE(entries[0].isFolder);
}

TEST_F(FolderListingTest, TellsALinkAsItself)
{
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("folder")));
    ASSERT_EQ(::symlink("folder", native("link").constData()), 0);
    ASSERT_EQ(::symlink("nowhere", native("loose").constData()), 0);

    const auto entries = FolderListing::of(m_folder.path());

    ASSERT_EQ(entries.size(), 3U);
    EXPECT_TRUE(entries[0].isFolder);
    EXPECT_FALSE(entries[1].isFolder);
    EXPECT_FALSE(entries[2].isFolder);
    EXPECT_TRUE(entries[2].modified);
}

TEST_F(FolderListingTest, FailsWithTypeWhereThereIsNoFolder)
{
    put("a");
    const auto missing = thrownBy<FileError>([&] { FolderListing::of(m_folder.filePath(QStringLiteral("none"))); });
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->code(), ENOENT);
    const auto file = thrownBy<FileError>([&] { FolderListing::of(m_folder.filePath(QStringLiteral("a"))); });
    ASSERT_TRUE(file);
    EXPECT_EQ(file->code(), ENOTDIR);
}

TEST(FileDate, ComparesByItsNanoseconds)
{
    EXPECT_LT((FileDate{5, 1}), (FileDate{5, 2}));
    EXPECT_LT((FileDate{5, 999'999'999}), (FileDate{6, 0}));
    EXPECT_LT((FileDate{-6, 0}), (FileDate{-5, 0}));
}

TEST(FileDate, GivesAnInstantOfTheCalendarWhateverTheFileSystemHolds)
{
    EXPECT_EQ(DateParser::iso8601(FileDate{-1, 500'000'000}.instant()), QStringLiteral("1969-12-31T23:59:59.500Z"));
    EXPECT_EQ(DateParser::iso8601(FileDate{std::numeric_limits<qint64>::max(), 0}.instant()),
        QStringLiteral("9999-12-31T00:00:00.000Z"));
    EXPECT_EQ(DateParser::iso8601(FileDate{std::numeric_limits<qint64>::min(), 0}.instant()),
        QStringLiteral("0001-01-01T00:00:00.000Z"));
}

TEST_F(FolderListingTest, TellsTheSizeOfEveryFile)
{
    put("empty");
    QFile longer(m_folder.filePath(QStringLiteral("longer")));
    ASSERT_TRUE(longer.open(QIODevice::WriteOnly));
    longer.write("12345");
    longer.close();
    const auto entries = FolderListing::of(m_folder.path());
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].size, 0);
    EXPECT_EQ(entries[1].size, 5);
}
