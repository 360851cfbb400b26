// The file that others read: whole at every moment, whatever happens to the folder
// or to the process that writes it.

#include "publishing/LocalReadingList.h"

#include "files/FileError.h"
#include "reliability/QuireFailureInjector.h"
#include "testing/OwnVariable.h"
#include "testing/ResourceLimit.h"
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
