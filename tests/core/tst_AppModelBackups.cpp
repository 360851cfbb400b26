#include "ModelTest.h"

#include "concurrency/Cancelled.h"
#include "reliability/FinishedBackup.h"
#include "reliability/QuireBackupManifest.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>

namespace quire {

namespace {

using namespace std::chrono_literals;
using testing::await;
using ::testing::ElementsAre;
using testing::eventually;
using ::testing::IsEmpty;

class AppModelBackups : public ModelTest
{
protected:
    QString folder() const { return library.file(QStringLiteral("Database Backups")); }

    QStringList backups() const { return backupsIn(folder()); }
    static QStringList backupsIn(const QString &folder)
    {
        return QDir(folder).entryList({QStringLiteral("Quire Database *.db")}, QDir::Files, QDir::Name);
    }

    void forgetLastBackup() { library.execute("DELETE FROM settings WHERE key = 'lastBackupAt'"); }

    // Lets the schedule come to its rest after this many tests in all.
    void expectTests(int count)
    {
        EXPECT_TRUE(eventually([&] { return backupHistory().size() >= 2 * count && scheduledSleeps() == 1; }));
        EXPECT_EQ(backupHistory().size(), 2 * count);
    }

    std::size_t scheduledSleeps() const { return clock.sleepers() - sleepers(); }

    std::optional<AppNotice> noticeAfter(const std::optional<QString> &path)
    {
        await(model->backUpDatabase(path));
        return model->notice();
    }

    static AppNotice failed(const QString &message)
    {
        return AppNotice::error(QStringLiteral("Backup Failed"), message);
    }

    const QString relative
        = QStringLiteral("Could not copy the Quire database: Choose an absolute folder for the Quire backup.");
};

// By hand ---------------------------------------------------------------------------

TEST_F(AppModelBackups, ABackupByHandTellsWhereItIs)
{
    startModel();
    clock.advance(1h);

    const auto notice = noticeAfter(library.file(QStringLiteral("here")));

    const QString backup = library.file(QStringLiteral("here/Quire Database 2026-11-21T13-00-00.000Z.db"));
    EXPECT_EQ(notice,
        AppNotice::information(QStringLiteral("Quire Database Backed Up"),
            QStringLiteral("The verified backup was saved to %1.").arg(backup)));
    EXPECT_EQ(FinishedBackup::condition(backup), FinishedBackup::Condition::Good);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
    EXPECT_THAT(
        backupHistory().mid(2), ElementsAre(QStringLiteral("backup running 1"), QStringLiteral("backup succeeded 1")));
}

TEST_F(AppModelBackups, ABackupByHandRunsBehindTheInterface)
{
    startModel();
    const QSignalSpy working(model.get(), &AppModel::isWorkingChanged);
    const QSignalSpy label(model.get(), &AppModel::activityLabelChanged);

    noticeAfter(std::nullopt);

    EXPECT_THAT(working, IsEmpty());
    EXPECT_THAT(label, IsEmpty());
}

TEST_F(AppModelBackups, ABackupByHandGoesToTheConfiguredFolderWithoutAnother)
{
    setStored(QStringLiteral("backupPath"), library.file(QStringLiteral("configured")));
    startModel();

    noticeAfter(std::nullopt);

    EXPECT_EQ(backupsIn(library.file(QStringLiteral("configured"))).size(), 1);
}

TEST_F(AppModelBackups, ABackupByHandNeedsAnAbsoluteFolder)
{
    startModel();
    for (const QString &path : {QStringLiteral("backups"), QString(), QStringLiteral("  "), QStringLiteral("~other/x"),
             QStringLiteral(" ~/x")}) {
        model->setNotice(std::nullopt);
        EXPECT_EQ(noticeAfter(path), failed(relative)) << qPrintable(path);
    }
    EXPECT_EQ(backupHistory().size(), 2); // it is no job at all
}

TEST_F(AppModelBackups, AFolderMayBeginWithATildeAndHaveBlanksAround)
{
    startModel();
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(library.file(QStringLiteral("home"))));
    await(model->backUpDatabase(QStringLiteral("~/mine \n")));
    qputenv("HOME", home);
    await(model->backUpDatabase(QStringLiteral(" %1 \n").arg(library.file(QStringLiteral("other")))));

    EXPECT_EQ(backupsIn(library.file(QStringLiteral("home/mine"))).size(), 1);
    EXPECT_EQ(backupsIn(library.file(QStringLiteral("other"))).size(), 1);
}

TEST_F(AppModelBackups, AFailedBackupByHandTellsWhy)
{
    startModel();
    library.executeScript("PRAGMA user_version = 3");

    EXPECT_EQ(noticeAfter(std::nullopt),
        failed(QStringLiteral("Could not copy the Quire database: The backup schema version is unexpected.")));
    EXPECT_THAT(
        backupHistory().mid(2), ElementsAre(QStringLiteral("backup running 1"), QStringLiteral("backup failed 1")));
    EXPECT_THAT(backups(), IsEmpty());
    library.executeScript("PRAGMA user_version = 2");
}

TEST_F(AppModelBackups, ASecondBackupByHandAtTheSameTimeIsTurnedAway)
{
    startModel();
    auto first = model->backUpDatabase();
    const QSignalSpy notices(model.get(), &AppModel::noticeChanged);

    await(model->backUpDatabase());

    EXPECT_THAT(notices, IsEmpty());
    await(std::move(first));
    EXPECT_EQ(backups().size(), 1);
}

TEST_F(AppModelBackups, TheModelMayDieInTheMiddleOfABackup)
{
    for (int turns = 0; turns < 6; ++turns) {
        startModel();
        const auto backingUp = model->backUpDatabase();
        for (int turn = 0; turn < turns; ++turn) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        }
        model.reset();
        settle();
    }
    for (const QString &name : backups()) {
        EXPECT_EQ(FinishedBackup::condition(folder() + u'/' + name), FinishedBackup::Condition::Good);
    }
}

// By themselves ---------------------------------------------------------------------

TEST_F(AppModelBackups, AStartTestsAtOnceAndBacksUpWhatIsDue)
{
    forgetLastBackup();

    startModel();

    expectTests(1);
    ASSERT_EQ(backups().size(), 1);
    EXPECT_THAT(logLines(),
        ElementsAre(QStringLiteral("Created scheduled database backup at %1.").arg(folder() + u'/' + backups()[0])));
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
}

TEST_F(AppModelBackups, ABackupThatIsNotDueIsNoNews)
{
    startModel();

    expectTests(1);
    EXPECT_THAT(backups(), IsEmpty());
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(AppModelBackups, TheNextTestComesWhenTheIntervalHasPassed)
{
    setStored(QStringLiteral("backupIntervalDays"), QStringLiteral("3"));
    startModel();
    expectTests(1);

    clock.advance(72h - 1ms);
    settle();
    expectTests(1);
    clock.advance(1ms);
    expectTests(2);
    EXPECT_EQ(backups().size(), 1);
    clock.advance(72h);
    expectTests(3);
    EXPECT_EQ(backups().size(), 2);
}

TEST_F(AppModelBackups, TheIntervalIsBetweenADayAndAYear)
{
    const QList<std::pair<QString, std::chrono::days>> cases{{QStringLiteral("0"), std::chrono::days(1)},
        {QStringLiteral("1000"), std::chrono::days(365)}, {QStringLiteral("7"), std::chrono::days(7)}};
    for (const auto &[stored, interval] : cases) {
        setStored(QStringLiteral("backupIntervalDays"), stored);
        startModel();
        EXPECT_EQ(clock.requestedSleeps().back(), interval) << qPrintable(stored);
        await(model->shutdown());
    }
}

TEST_F(AppModelBackups, AFailedTestGoesToTheLogAloneAndTheScheduleGoesOn)
{
    forgetLastBackup();
    setStored(QStringLiteral("backupPath"), QStringLiteral("relative"));
    startModel();
    expectTests(1);

    EXPECT_THAT(logLines(),
        ElementsAre(QStringLiteral("Scheduled database backup failed: Could not copy the Quire database: "
                                   "The configured backup folder is not an absolute path.")));
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_EQ(model->toastMessage(), std::nullopt);

    setStored(QStringLiteral("backupPath"), QString());
    clock.advance(24h);
    expectTests(2);
    EXPECT_EQ(backups().size(), 1);
}

TEST_F(AppModelBackups, SavingTheSettingsBeginsTheIntervalAnew)
{
    startModel();
    clock.advance(23h);
    SettingsEdit edit = SettingsEdit::of(model->settings());
    edit.backupInterval = 2;

    EXPECT_TRUE(await(model->saveSettings(edit)));

    expectTests(2); // the first of the new schedule
    EXPECT_EQ(clock.requestedSleeps().back(), std::chrono::hours(48));
    clock.advance(47h);
    settle();
    expectTests(2);
    clock.advance(1h);
    expectTests(3);
}

TEST_F(AppModelBackups, ASettingsFaultLeavesTheScheduleAlone)
{
    startModel();
    SettingsEdit edit = SettingsEdit::of(model->settings());
    edit.backupInterval = 0;

    EXPECT_FALSE(await(model->saveSettings(edit)));

    settle();
    expectTests(1);
}

TEST_F(AppModelBackups, TheSyncOfAStartComesFirst)
{
    forgetLastBackup();
    configureGoodreads();
    serveFeed({QStringLiteral("Emma")});

    startModel();
    expectTests(1);

    const QStringList kinds = allHistory();
    EXPECT_EQ(kinds.first(), QStringLiteral("goodreadsSync running 1"));
    // It made the backup that was due, from before the import; none was due any more.
    ASSERT_EQ(backups().size(), 1);
    EXPECT_EQ(
        QuireBackupManifest::read(folder() + u'/' + backups()[0] + QStringLiteral(".manifest.json"))->bookCount, 0);
    EXPECT_THAT(logLines(), ElementsAre(QStringLiteral("Stored 0 downloaded covers and 1 offline placeholders.")));
}

TEST_F(AppModelBackups, NoScheduleRunsWhenTheLibraryDidNotOpen)
{
    makeModel();
    library.executeScript("PRAGMA user_version = 99");

    await(model->start());

    EXPECT_FALSE(model->isReady());
    EXPECT_EQ(clock.sleepers(), 0U);
    library.executeScript("PRAGMA user_version = 2");
    EXPECT_THAT(backupHistory(), IsEmpty());
}

TEST_F(AppModelBackups, ShutdownEndsTheSchedule)
{
    startModel();

    await(model->shutdown());

    EXPECT_EQ(clock.sleepers(), 0U);
    clock.advance(1000h);
    settle();
    EXPECT_EQ(backupHistory().size(), 2);
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(AppModelBackups, ATestThatIsCancelledSaysNothingOfItsFailure)
{
    startModel();
    await(model->shutdown());
    std::stop_source stop;
    stop.request_stop();

    await(model->performScheduledBackupIfDue(stop.get_token()));
    EXPECT_THAT(logLines(), IsEmpty());

    await(model->performScheduledBackupIfDue());
    EXPECT_THAT(logLines(),
        ElementsAre(QStringLiteral("Scheduled database backup failed: The Quire database was not created.")));
}

} // namespace

} // namespace quire
