#include "sources/AudibleLibraryLocation.h"

#include "testing/OwnVariable.h"
#include "testing/TestFiles.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;

namespace {

FolderEntry entry(const char *name, std::optional<qint64> seconds, std::optional<qint64> size, bool isFolder = false)
{
    FolderEntry result{std::filesystem::path("/a") / name, std::nullopt, size, isFolder};
    if (seconds) {
        result.modified = FileDate{*seconds, 0};
    }
    return result;
}

// The name of the best of the entries.
QString best(const std::vector<FolderEntry> &entries)
{
    return AudibleLibraryLocation::bestLibraryDatabase(entries).value_or(QStringLiteral("none")).section(u'/', -1);
}

class AudibleLibraryLocationTest : public ::testing::Test
{
protected:
    QString path(const char *name) const { return m_home.filePath(QString::fromLatin1(name)); }

    // A file of that age in a folder that is made for it.
    QString put(const QString &folder, const char *name, const QByteArray &bytes = "x", int secondsOld = 0) const
    {
        QDir().mkpath(folder);
        QString file = folder + u'/' + QString::fromLatin1(name);
        putFile(file, bytes);
        const time_t date = 1'700'000'000 - secondsOld;
        const timespec times[] = {{0, UTIME_OMIT}, {date, 0}};
        EXPECT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(file).constData(), times, 0), 0);
        return file;
    }

    QTemporaryDir m_home;
    OwnVariable m_variable{"HOME", m_home.path()};
};

} // namespace

// The best of several. --------------------------------------------------------------

TEST(BestLibraryDatabase, TheNewerWinsThoughTheOlderIsLarger)
{
    EXPECT_EQ(best({entry("old-library.sqlite", 1, 1'000'000), entry("new-library.sqlite", 2, 10)}),
        QStringLiteral("new-library.sqlite"));
}

TEST(BestLibraryDatabase, OfTheSameDateTheLargerWins)
{
    EXPECT_EQ(
        best({entry("a-library.sqlite", 1, 10), entry("b-library.sqlite", 1, 11)}), QStringLiteral("b-library.sqlite"));
    EXPECT_EQ(best({entry("a-library.sqlite", std::nullopt, 0), entry("b-library.sqlite", std::nullopt, 1)}),
        QStringLiteral("b-library.sqlite"));
    EXPECT_EQ(best({entry("a-library.sqlite", 1, std::nullopt), entry("b-library.sqlite", 1, 1)}),
        QStringLiteral("b-library.sqlite"));
}

TEST(BestLibraryDatabase, AFileWithoutADateLosesToAnyWithOne)
{
    EXPECT_EQ(best({entry("a-library.sqlite", std::nullopt, 1'000), entry("b-library.sqlite", -1'000'000'000, 1)}),
        QStringLiteral("b-library.sqlite"));
}

TEST(BestLibraryDatabase, EqualsKeepTheOrderOfTheListing)
{
    EXPECT_EQ(
        best({entry("b-library.sqlite", 1, 1), entry("a-library.sqlite", 1, 1)}), QStringLiteral("b-library.sqlite"));
    EXPECT_EQ(best({entry("b-library.sqlite", 1, std::nullopt), entry("a-library.sqlite", 1, 0)}),
        QStringLiteral("b-library.sqlite"));
}

TEST(BestLibraryDatabase, OnlyLibrariesCount)
{
    EXPECT_EQ(best({}), QStringLiteral("none"));
    EXPECT_EQ(best({entry("library.sqlite", 1, 1), entry("x-library.sqlite-wal", 1, 1), entry("x-Library.sqlite", 1, 1),
                  entry(".x-library.sqlite", 1, 1), entry("x-library.sqlite", 1, 1, true)}),
        QStringLiteral("none"));
    EXPECT_EQ(best({entry("-library.sqlite", 1, 1)}), QStringLiteral("-library.sqlite"));
}

// Where to look. --------------------------------------------------------------------

TEST_F(AudibleLibraryLocationTest, TheConfiguredPathIsTakenWhenItExists)
{
    const QString folder = path("granted");
    const QString file = put(folder, "x-library.sqlite");
    EXPECT_EQ(AudibleLibraryLocation::resolvedAccessURL(folder), folder);
    EXPECT_EQ(AudibleLibraryLocation::resolvedAccessURL(folder + u'/'), folder);
    EXPECT_EQ(AudibleLibraryLocation::resolvedAccessURL(file), file);
}

TEST_F(AudibleLibraryLocationTest, WhatIsNotConfiguredIsLookedForInTheContainer)
{
    for (const auto &configured : {std::optional<QString>(), std::optional(QString()), std::optional(path("gone")),
             std::optional(QStringLiteral("relative"))}) {
        EXPECT_EQ(AudibleLibraryLocation::resolvedAccessURL(configured), std::nullopt);
    }
    put(AudibleLibraryLocation::containerFolder(), "old-library.sqlite", "xxx", 100);
    const QString file = put(AudibleLibraryLocation::containerFolder(), "new-library.sqlite");
    EXPECT_EQ(AudibleLibraryLocation::resolvedAccessURL(std::nullopt), file);
    EXPECT_EQ(AudibleLibraryLocation::resolvedAccessURL(path("gone")), file);
}

TEST_F(AudibleLibraryLocationTest, ADatabaseIsTakenWithoutListingItsFolder)
{
    const QString named = put(path("granted"), "old-library.sqlite", "x", 100);
    put(path("granted"), "new-library.sqlite");
    EXPECT_EQ(AudibleLibraryLocation::libraryDatabase(named), named);
}

TEST_F(AudibleLibraryLocationTest, AFolderGivesItsBestDatabase)
{
    put(path("granted"), "old-library.sqlite", "xxx", 100);
    const QString newer = put(path("granted"), "new-library.sqlite");
    EXPECT_EQ(AudibleLibraryLocation::libraryDatabase(path("granted")), newer);
}

TEST_F(AudibleLibraryLocationTest, WhatCannotBeListedHoldsNoDatabase)
{
    EXPECT_EQ(AudibleLibraryLocation::libraryDatabase(path("gone")), std::nullopt);
    EXPECT_EQ(AudibleLibraryLocation::libraryDatabase(put(path("granted"), "file")), std::nullopt);
    QDir().mkpath(path("empty/sub-library.sqlite"));
    EXPECT_EQ(AudibleLibraryLocation::libraryDatabase(path("empty")), std::nullopt);
}
