// The file that others read: whole at every moment, whatever happens to the folder
// or to the process that writes it.

#include "publishing/LocalReadingList.h"

#include "files/FileError.h"
#include "reliability/QuireFailureInjector.h"
#include "testing/OwnVariable.h"
#include "testing/ResourceLimit.h"
#include "testing/ResourceUse.h"
#include "testing/SmallDisk.h"
#include "testing/TestFiles.h"
#include "testing/ThrownFailure.h"
#include "testing/UnprivilegedUser.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cerrno>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>

using namespace quire;
using namespace quire::testing;
using ::testing::ElementsAre;

namespace {

const QByteArray oldList = "# The former list\n";
const QByteArray newList = "# The list\n" + QByteArray(300'000, 'x') + "\n";

class LocalReadingListTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite() { SmallDisk::isAvailable(); } // while there is one thread

    LocalReadingListTest() { LocalReadingList::write(folder(), oldList); }

    QString folder() const { return m_place.filePath(QStringLiteral("lists")); }
    QString file() const { return folder() + QStringLiteral("/quire.md"); }

    int codeOfWriting() const
    {
        return thrownBy<FileError>([this] { LocalReadingList::write(folder(), newList); })->code();
    }

    void expectTheOldListAlone() const
    {
        EXPECT_EQ(bytesOf(file()), oldList);
        EXPECT_THAT(namesIn(folder()), ElementsAre(QStringLiteral("quire.md")));
    }

    mode_t mode() const
    {
        struct stat status
        {
        };
        EXPECT_EQ(::stat(QFile::encodeName(file()).constData(), &status), 0);
        return status.st_mode & 07777;
    }

    QTemporaryDir m_place;
};

// Than a day.
void makeOlder(const QString &path)
{
    const timespec day{.tv_sec = ::time(nullptr) - 25L * 60 * 60, .tv_nsec = 0};
    const timespec times[] = {day, day};
    ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
}

using LocalReadingListDeathTest = LocalReadingListTest;

void dieAfterStaging()
{
    qputenv("QUIRE_ENABLE_FAILURE_TESTS", "1");
    qputenv("QUIRE_FAILURE_POINT", "publishing-after-staging");
    LocalReadingList::write(qEnvironmentVariable("QUIRE_TEST_PLACE"), newList);
}

} // namespace

TEST_F(LocalReadingListTest, TheNewListStandsInTheOldOnesPlaceAlone)
{
    EXPECT_EQ(LocalReadingList::write(folder() + QStringLiteral("/../lists/."), newList), file());
    EXPECT_EQ(bytesOf(file()), newList);
    EXPECT_THAT(namesIn(folder()), ElementsAre(QStringLiteral("quire.md")));
    EXPECT_EQ(mode(), mode_t(0644));
}

TEST_F(LocalReadingListTest, AFolderThatVanishedIsMadeAnew)
{
    QDir(folder()).removeRecursively();
    LocalReadingList::write(folder(), newList);
    EXPECT_EQ(bytesOf(file()), newList);
}

TEST_F(LocalReadingListTest, AFolderWhosePlaceWasTakenIsAFailure)
{
    QDir(folder()).removeRecursively();
    putFile(folder(), "mine");
    EXPECT_EQ(codeOfWriting(), ENOTDIR);
    EXPECT_EQ(bytesOf(folder()), "mine");
}

TEST_F(LocalReadingListTest, TheReadersRightsOnTheFileStay)
{
    for (const mode_t rights : {0600, 0444, 0664}) {
        ::chmod(QFile::encodeName(file()).constData(), rights);
        LocalReadingList::write(folder(), newList);
        EXPECT_EQ(mode(), rights);
    }
}

TEST_F(LocalReadingListTest, AFolderThatMayOnlyBeReadLeavesTheOldList)
{
    const QByteArray path = QFile::encodeName(folder());
    ::chmod(path.constData(), 0555);
    {
        const UnprivilegedUser user(m_place.path());
        EXPECT_EQ(codeOfWriting(), EACCES);
    }
    ::chmod(path.constData(), 0755);
    expectTheOldListAlone();
}

TEST_F(LocalReadingListTest, AFileThatMayNotGrowLeavesTheOldList)
{
    {
        const ShortFiles limit(4'096);
        EXPECT_EQ(codeOfWriting(), EFBIG);
    }
    expectTheOldListAlone();
}

TEST_F(LocalReadingListTest, TooManyOpenFilesLeaveTheOldList)
{
    if constexpr (quire::testing::isInstrumented) {
        GTEST_SKIP() << "the sanitizers open files themselves to look at memory, and take a refusal for a fault";
    }
    {
        const FewFiles limit(0);
        EXPECT_EQ(codeOfWriting(), EMFILE);
    }
    expectTheOldListAlone();
}

TEST_F(LocalReadingListTest, AFullDiskLeavesTheOldList)
{
    if (!SmallDisk::isAvailable()) {
        GTEST_SKIP() << "this system lets no test mount a disk of its own";
    }
    SmallDisk disk(folder());
    LocalReadingList::write(folder(), oldList);
    for (const int blocks : {0, 1, 20, 70}) {
        disk.leaveBlocks(blocks);
        EXPECT_EQ(codeOfWriting(), ENOSPC) << blocks;
        expectTheOldListAlone();
    }
    disk.leaveEverything();
    disk.leaveFiles(0);
    EXPECT_EQ(codeOfWriting(), ENOSPC);
    expectTheOldListAlone();
    disk.leaveEverything();
    LocalReadingList::write(folder(), newList);
    EXPECT_EQ(bytesOf(file()), newList);
}

TEST_F(LocalReadingListTest, AFolderOfTheFilesNameIsAFailureAndNothingOfOursStays)
{
    QFile::remove(file());
    QDir().mkpath(file());
    EXPECT_EQ(codeOfWriting(), EISDIR);
    EXPECT_THAT(namesIn(folder()), ElementsAre(QStringLiteral("quire.md")));
}

TEST_F(LocalReadingListTest, AStagingFileThatACrashLeftBehindIsNotInTheWay)
{
    const QString staging = folder() + QStringLiteral("/.quire.md.%1.tmp").arg(QCoreApplication::applicationPid());
    putFile(staging, "half a li");
    LocalReadingList::write(folder(), newList);
    EXPECT_EQ(bytesOf(file()), newList);
    EXPECT_FALSE(QFile::exists(staging));
}

TEST_F(LocalReadingListTest, WhatKilledProgramsLeftADayAgoGoesAndNothingElse)
{
    const QString hidden = QStringLiteral("/.quire.md.%1.tmp");
    const QString half = QStringLiteral("/..quire.md.8.tmp.0b0f2a5e-7d0e-4b5c-9a53-2f6f0b6a7c11.tmp");
    const QStringList leftovers{hidden.arg(7), half};
    const QStringList others{hidden.arg(QStringLiteral("x")), QStringLiteral("/.quire.md.tmp"),
        QStringLiteral("/mine.quire.md.7.tmp"), QStringLiteral("/.quire.md.7.tmp.txt"), QStringLiteral("/notes.tmp"),
        QStringLiteral("/.quire.md.9.tmp/file")};
    QDir().mkpath(folder() + hidden.arg(9));
    for (const QString &name : leftovers + others) {
        putFile(folder() + name, "left");
        makeOlder(folder() + name);
    }
    makeOlder(folder() + hidden.arg(9));
    putFile(folder() + hidden.arg(10), "another writes");

    LocalReadingList::write(folder(), newList);

    for (const QString &name : leftovers) {
        EXPECT_FALSE(QFile::exists(folder() + name)) << qUtf8Printable(name);
    }
    for (const QString &name : others) {
        EXPECT_EQ(bytesOf(folder() + name), "left") << qUtf8Printable(name);
    }
    EXPECT_EQ(bytesOf(folder() + hidden.arg(10)), "another writes");
    EXPECT_EQ(bytesOf(file()), newList);
}

TEST_F(LocalReadingListTest, ALeftoverThatCannotBeRemovedIsNoFailure)
{
    const QString locked = folder() + QStringLiteral("/.quire.md.7.tmp");
    putFile(locked, "left");
    makeOlder(locked);
    ::chmod(QFile::encodeName(folder()).constData(), 01777); // each removes only what is theirs
    ::chmod(QFile::encodeName(file()).constData(), 0666);
    QFile::remove(file());
    {
        const UnprivilegedUser user(m_place.path());
        LocalReadingList::write(folder(), newList);
    }
    EXPECT_EQ(bytesOf(file()), newList);
}

TEST_F(LocalReadingListDeathTest, AProcessThatDiesAfterStagingLeavesTheOldListAndTheWholeNewOneBesideIt)
{
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    // The child is this program begun anew, with a folder of its own and this variable.
    const OwnVariable place("QUIRE_TEST_PLACE", qEnvironmentVariable("QUIRE_TEST_PLACE", folder()));
    EXPECT_EXIT(dieAfterStaging(), ::testing::ExitedWithCode(QuireFailureInjector::exitStatus), "");
    EXPECT_EQ(bytesOf(file()), oldList);
    const QStringList names = namesIn(folder());
    ASSERT_EQ(names.size(), 2);
    EXPECT_TRUE(names.first().startsWith(u".quire.md.") && names.first().endsWith(u".tmp"));
    EXPECT_EQ(bytesOf(folder() + u'/' + names.first()), newList);
}
