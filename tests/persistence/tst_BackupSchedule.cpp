#include "persistence/BackupSchedule.h"

#include "files/FileError.h"
#include "testing/ThrownFailure.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quire;
using namespace quire::testing;
using namespace std::chrono_literals;

namespace {

using std::chrono::days;

class LatestBackupDate : public ::testing::Test
{
protected:
    void put(const QString &name, qint64 seconds)
    {
        const QByteArray path = QFile::encodeName(m_folder.filePath(name));
        ::close(::open(path.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
        const timespec times[] = {{0, UTIME_OMIT}, {seconds, 789'999'999}};
        ASSERT_EQ(::utimensat(AT_FDCWD, path.constData(), times, 0), 0);
    }

    static Instant at(qint64 seconds) { return Instant(std::chrono::seconds(seconds) + 789ms); }

    QTemporaryDir m_folder;
};

} // namespace

TEST(BackupInterval, IsBetweenADayAndAYear)
{
    EXPECT_EQ(BackupSchedule::interval(0, {}), days(1));
    EXPECT_EQ(BackupSchedule::interval(1, {}), days(1));
    EXPECT_EQ(BackupSchedule::interval(-5, {}), days(1));
    EXPECT_EQ(BackupSchedule::interval(2, {}), days(2));
    EXPECT_EQ(BackupSchedule::interval(364, {}), days(364));
    EXPECT_EQ(BackupSchedule::interval(365, {}), days(365));
    EXPECT_EQ(BackupSchedule::interval(400, {}), days(365));
    EXPECT_EQ(BackupSchedule::interval(std::numeric_limits<qint64>::max(), {}), days(365));
    EXPECT_EQ(std::chrono::seconds(BackupSchedule::interval(1, {})), 86'400s);
}

TEST(BackupInterval, TakesWholeDaysOfMinutesWhenThereAreNoDays)
{
    EXPECT_EQ(BackupSchedule::interval({}, 2880), days(2));
    EXPECT_EQ(BackupSchedule::interval({}, 1440), days(1));
    EXPECT_EQ(BackupSchedule::interval({}, 4319), days(2));
    EXPECT_EQ(BackupSchedule::interval({}, 90), days(1));
    EXPECT_EQ(BackupSchedule::interval({}, -2880), days(1));
    EXPECT_EQ(BackupSchedule::interval({}, std::numeric_limits<qint64>::max()), days(365));
    EXPECT_EQ(BackupSchedule::interval(3, 14400), days(3));
}

TEST(BackupInterval, IsADayWhenNothingIsKnown)
{
    EXPECT_EQ(BackupSchedule::interval({}, {}), days(1));
}

TEST(BackupSchedule, IsDueFromExactlyTheInterval)
{
    const Instant last = std::chrono::sys_days(std::chrono::year(2026) / 11 / 16);
    EXPECT_FALSE(BackupSchedule::isDue(last, last + days(2) - 1ms, days(2)));
    EXPECT_TRUE(BackupSchedule::isDue(last, last + days(2), days(2)));
    EXPECT_FALSE(BackupSchedule::isDue(last, last - days(400), days(2)));
}

TEST_F(LatestBackupDate, IsThatOfTheNewestBackup)
{
    put(QStringLiteral("Quire Database a.db"), 1'000);
    put(QStringLiteral("Quire Database b.db"), 3'000);
    put(QStringLiteral("Quire Database c.db"), 2'000);

    EXPECT_EQ(BackupSchedule::latestBackupDate(m_folder.path()), at(3'000));
}

TEST_F(LatestBackupDate, CountsOnlyWhatIsNamedAsABackup)
{
    for (const char *name : {"Quire Database a.DB", "quire database a.db", "Quire Databases.db",
             "My Quire Database .db", "Quire Database a.db.manifest.json", "Quire Database a", "library.db"}) {
        put(QString::fromUtf8(name), 5'000);
    }
    ASSERT_TRUE(QDir(m_folder.path()).mkdir(QStringLiteral("Quire Database folder.db")));
    EXPECT_EQ(BackupSchedule::latestBackupDate(m_folder.path()), std::nullopt);

    put(QStringLiteral("Quire Database .db"), 1'000);
    EXPECT_EQ(BackupSchedule::latestBackupDate(m_folder.path()), at(1'000));
}

TEST_F(LatestBackupDate, IsUnknownWithoutAFolder)
{
    EXPECT_EQ(BackupSchedule::latestBackupDate(m_folder.filePath(QStringLiteral("none"))), std::nullopt);
    EXPECT_EQ(BackupSchedule::latestBackupDate(m_folder.path()), std::nullopt);
}

TEST_F(LatestBackupDate, FailsWithTypeWhereAFileIsInTheWay)
{
    put(QStringLiteral("a file"), 0);
    const QString path = m_folder.filePath(QStringLiteral("a file"));
    EXPECT_EQ(thrownBy<FileError>([&] { BackupSchedule::latestBackupDate(path); })->path(), path);
}
