#include "persistence/BackupRotation.h"

#include "files/FileError.h"
#include "testing/ThrownFailure.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quire;
using namespace quire::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

class BackupRotationTest : public ::testing::Test
{
protected:
    QByteArray native(const QByteArray &name) const { return QFile::encodeName(folder()) + '/' + name; }
    QString folder() const { return m_folder.path(); }

    // age: in seconds before a fixed moment; the greater, the older.
    void put(const QByteArray &name, qint64 age = 0)
    {
        const int file = ::open(native(name).constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
        ASSERT_GE(file, 0);
        setAge(name, age);
        ::close(file);
    }

    void setAge(const QByteArray &name, qint64 age)
    {
        const timespec times[] = {{0, UTIME_OMIT}, {1'700'000'000 - age, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, native(name).constData(), times, AT_SYMLINK_NOFOLLOW), 0);
    }

    QStringList names() const
    {
        return QDir(folder()).entryList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

    QTemporaryDir m_folder;
};

QString name(int number, const char *suffix = "")
{
    return QStringLiteral("Quire Database %1.db%2").arg(number, 2, 10, QLatin1Char('0')).arg(QLatin1String(suffix));
}

} // namespace

TEST_F(BackupRotationTest, DeletesTheOldestOfTwentyOneWithItsManifest)
{
    for (int i = 1; i <= 21; ++i) {
        put(name(i).toUtf8(), i); // 21 is the oldest
        put(name(i, ".manifest.json").toUtf8());
    }

    BackupRotation::rotate(folder(), 20);

    EXPECT_EQ(names().size(), 40);
    EXPECT_FALSE(names().contains(name(21)));
    EXPECT_FALSE(names().contains(name(21, ".manifest.json")));
}

TEST_F(BackupRotationTest, DeletesAFileWithoutAManifestWithoutComplaint)
{
    put("a.db", 1);
    put("b.db", 2);

    BackupRotation::rotate(folder(), 1);

    EXPECT_THAT(names(), ElementsAre(QStringLiteral("a.db")));
}

TEST_F(BackupRotationTest, LeavesAFolderWithinItsLimitAlone)
{
    for (int i = 1; i <= 20; ++i) {
        put(name(i).toUtf8(), i);
    }
    BackupRotation::rotate(folder(), 20);
    EXPECT_EQ(names().size(), 20);
}

TEST_F(BackupRotationTest, GoesByTheDateAndNotByTheName)
{
    put("z old.db", 300);
    put("a new.db", 100);
    put("m middle.db", 200);

    BackupRotation::rotate(folder(), 2);

    EXPECT_THAT(names(), ElementsAre(QStringLiteral("a new.db"), QStringLiteral("m middle.db")));
}

TEST_F(BackupRotationTest, TakesInEveryDatabaseFileWhateverItsNameAndCase)
{
    put("newest.db");
    put("the reader's own.db", 1);
    put("LOUD.DB", 2);
    put("Mixed.dB", 3);
    put(".hidden.db", 4);
    put("two.dots.db", 5);
    put("caf\xe9.db", 6); // no UTF-8

    BackupRotation::rotate(folder(), 1);

    EXPECT_THAT(names(), ElementsAre(QStringLiteral("newest.db")));
}

TEST_F(BackupRotationTest, TouchesNothingElse)
{
    const QList<QByteArray> others{"a.db-wal", "a.db.manifest.json", "a.db.incomplete", "a.sqlite", "adb", "b.db.zip",
        "notes.txt", "x.db2", ".db"};
    for (const QByteArray &other : others) {
        put(other, 9);
    }
    put("newest.db");
    put("older.db", 1);

    BackupRotation::rotate(folder(), 1);

    EXPECT_EQ(names().size(), others.size() + 1);
    EXPECT_FALSE(names().contains(QStringLiteral("older.db")));
}

TEST_F(BackupRotationTest, DeletesNoFolder)
{
    ASSERT_TRUE(QDir(folder()).mkpath(QStringLiteral("oldest.db.manifest.json"))); // an empty one
    put("oldest.db", 900);
    ASSERT_TRUE(QDir(folder()).mkpath(QStringLiteral("old.db/with things")));
    ASSERT_TRUE(QDir(folder()).mkpath(QStringLiteral("older.db")));
    setAge("old.db", 500);
    setAge("older.db", 600);
    put("new.db");
    put("newer.db", -5);

    BackupRotation::rotate(folder(), 1);

    EXPECT_THAT(names(),
        ElementsAre(QStringLiteral("newer.db"), QStringLiteral("old.db"), QStringLiteral("older.db"),
            QStringLiteral("oldest.db.manifest.json")));
    EXPECT_TRUE(QFileInfo::exists(folder() + QStringLiteral("/old.db/with things")));
}

TEST_F(BackupRotationTest, DeletesALinkAndNotWhatItLeadsTo)
{
    const QTemporaryDir elsewhere;
    const QString target = elsewhere.filePath(QStringLiteral("library.db"));
    QFile file(target);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(QFile::link(target, folder() + QStringLiteral("/link.db")));
    setAge("link.db", 100);
    put("new.db");

    BackupRotation::rotate(folder(), 1);

    EXPECT_THAT(names(), ElementsAre(QStringLiteral("new.db")));
    EXPECT_TRUE(QFileInfo::exists(target));
}

TEST_F(BackupRotationTest, KeepsTheLaterNameOfOneDate)
{
    for (const int number : {3, 1, 4, 2}) {
        put(name(number).toUtf8());
    }

    BackupRotation::rotate(folder(), 2);

    EXPECT_THAT(names(), ElementsAre(name(3), name(4)));
}

TEST_F(BackupRotationTest, DropsTheFailureOfAManifest)
{
    put("new.db");
    put("old.db", 1);
    put("older.db", 2);
    ASSERT_TRUE(QDir(folder()).mkpath(QStringLiteral("old.db.manifest.json/full")));

    BackupRotation::rotate(folder(), 1);

    EXPECT_THAT(names(), ElementsAre(QStringLiteral("new.db"), QStringLiteral("old.db.manifest.json")));
}

TEST_F(BackupRotationTest, StopsAtTheFirstFileThatCannotBeDeleted)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can leave files that another user may not remove";
    }
    // Anyone may put files here, and may take away none but his own.
    ASSERT_EQ(::chmod(QFile::encodeName(folder()).constData(), 01777), 0);
    constexpr uid_t nobody = 65534;
    put("a newest.db", 0);
    put("b mine.db", 1);
    put("c root's.db", 2);
    put("d mine.db", 3);
    for (const QByteArray &mine : {QByteArray("b mine.db"), QByteArray("d mine.db")}) {
        ASSERT_EQ(::chown(native(mine).constData(), nobody, nobody), 0);
    }

    ASSERT_EQ(::seteuid(nobody), 0);
    const auto failure = thrownBy<FileError>([&] { BackupRotation::rotate(folder(), 1); });
    ASSERT_EQ(::seteuid(0), 0);

    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), EPERM);
    EXPECT_EQ(failure->path(), folder() + QStringLiteral("/c root's.db"));
    EXPECT_THAT(names(),
        ElementsAre(QStringLiteral("a newest.db"), QStringLiteral("c root's.db"), QStringLiteral("d mine.db")));
}

TEST_F(BackupRotationTest, FailsWithTypeWithoutAFolder)
{
    const auto failure = thrownBy<FileError>([&] { BackupRotation::rotate(folder() + QStringLiteral("/none"), 1); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->code(), ENOENT);
}

TEST_F(BackupRotationTest, HasNothingToDoInAnEmptyFolder)
{
    BackupRotation::rotate(folder(), 1);
    EXPECT_THAT(names(), IsEmpty());
}
