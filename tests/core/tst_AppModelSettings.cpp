#include "ModelTest.h"

#include "persistence/database/DatabaseError.h"

#include <QDir>
#include <QSignalSpy>

namespace quire {

namespace {

using testing::await;

class AppModelSettings : public ModelTest
{
protected:
    SettingsEdit edit() const { return SettingsEdit::of(model->settings()); }

    // A closed library of somebody else's in `folder`, with one title.
    void makeLibrary(const QString &folder)
    {
        LibraryStore other(clock, folder);
        await(other.prepare(false));
        ManualBookDraft draft;
        draft.title = QStringLiteral("Theirs");
        await(other.addManualBook(draft, std::nullopt));
        await(other.shutdown());
    }

    QString newFolder() const { return place.filePath(QStringLiteral("It's 100% 読書")); }

    const QTemporaryDir place; // for libraries elsewhere

    // The stored feed key, as a later run sees it.
    std::optional<QString> feedKey()
    {
        await(model->shutdown());
        library.open();
        auto key = await(library.store().setting(QStringLiteral("goodreadsRssKey")));
        library.close();
        return key;
    }
};

TEST_F(AppModelSettings, SavingStoresTheFeedAndTellsSo)
{
    startModel();
    SettingsEdit given = edit();
    given.goodreadsUserID = QStringLiteral(" 42 ");
    given.goodreadsKey = QStringLiteral(" feed key ");

    EXPECT_TRUE(await(model->saveSettings(given)));

    EXPECT_EQ(model->settings().goodreadsUserID, QStringLiteral("42"));
    EXPECT_TRUE(model->settings().goodreadsRSSKeySet);
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Settings saved"));
    EXPECT_EQ(lastPause(), std::chrono::milliseconds(3200));
    EXPECT_EQ(model->notice(), std::nullopt);
    EXPECT_EQ(stored(QStringLiteral("goodreadsRssKey")), std::nullopt); // a secret is no row
    EXPECT_EQ(feedKey(), QStringLiteral("feed key"));
}

TEST_F(AppModelSettings, ABlankSecretKeepsWhatIsStored)
{
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    startModel();
    SettingsEdit given = edit();
    EXPECT_EQ(given.goodreadsKey, QString());
    given.goodreadsKey = QStringLiteral(" \n");

    EXPECT_TRUE(await(model->saveSettings(given)));

    EXPECT_TRUE(model->settings().goodreadsRSSKeySet);
    EXPECT_EQ(feedKey(), QStringLiteral("feed key"));
}

TEST_F(AppModelSettings, SavingWhatIsThereChangesNothingThatShows)
{
    setStored(QStringLiteral("backupIntervalDays"), QStringLiteral("12"));
    setStored(QStringLiteral("sidebarAppearance"), QStringLiteral("pine"));
    startModel();
    SettingsSnapshot before = model->settings();
    before.customAccentColor = edit().customAccentColor; // written with the rest

    EXPECT_TRUE(await(model->saveSettings(edit())));

    EXPECT_EQ(model->settings(), before);
}

TEST_F(AppModelSettings, AFaultWritesNothingAndShowsItsNotice)
{
    startModel();
    const auto before = library.query("SELECT key, value FROM settings");
    SettingsEdit given = edit();
    given.goodreadsUserID = QStringLiteral("42");
    given.maximumBackupFiles = 201;

    EXPECT_FALSE(await(model->saveSettings(given)));

    EXPECT_EQ(model->notice(),
        AppNotice::error(
            QStringLiteral("Invalid Backup Limit"), QStringLiteral("Choose to keep between 1 and 200 backup files.")));
    EXPECT_EQ(library.query("SELECT key, value FROM settings"), before);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
}

TEST_F(AppModelSettings, TheLimitsAreAccepted)
{
    startModel();
    SettingsEdit given = edit();
    given.publishInterval = 10080;
    given.maximumBackupFiles = 200;

    EXPECT_TRUE(await(model->saveSettings(given)));

    EXPECT_EQ(model->settings().publishIntervalMinutes, 10080);
    EXPECT_EQ(model->settings().maximumBackupFiles, 200);
}

TEST_F(AppModelSettings, AWriteThatFailsShowsANoticeAndKeepsTheWritesBeforeIt)
{
    startModel();
    library.executeScript("CREATE TRIGGER refused BEFORE INSERT ON settings WHEN NEW.key = 'backupPath'"
                          " BEGIN SELECT RAISE(ABORT, 'no backups here'); END;");
    SettingsEdit given = edit();
    given.goodreadsUserID = QStringLiteral("42");
    given.localPublishPath = QStringLiteral("/site");

    EXPECT_FALSE(await(model->saveSettings(given)));

    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Settings Could Not Be Saved"));
    EXPECT_TRUE(model->notice()->message.contains(QStringLiteral("no backups here")));
    EXPECT_EQ(stored(QStringLiteral("goodreadsUserId")), QStringLiteral("42"));
    EXPECT_EQ(stored(QStringLiteral("localPublishPath")), QStringLiteral("/site"));
    EXPECT_EQ(stored(QStringLiteral("publishIntervalMinutes")), std::nullopt);
    EXPECT_EQ(model->toastMessage(), std::nullopt);
}

TEST_F(AppModelSettings, SwitchingOffTheSectionThatShowsFallsBackToInsights)
{
    setStored(QStringLiteral("selectedTab"), QStringLiteral("books"));
    startModel();
    ASSERT_EQ(model->selectedTab(), LibraryTab::Books);
    SettingsEdit given = edit();
    given.showBooksSection = false;

    EXPECT_TRUE(await(model->saveSettings(given)));

    EXPECT_EQ(model->selectedTab(), LibraryTab::Insights);
}

TEST_F(AppModelSettings, AnotherFolderTakesTheLibraryThereWithWhatWasSaved)
{
    addBook(QStringLiteral("Ours"));
    startModel();
    SettingsEdit given = edit();
    given.databaseFolderPath = QStringLiteral(" %1/ ").arg(newFolder());
    given.goodreadsUserID = QStringLiteral("42");
    const QSignalSpy reloaded(model.get(), &AppModel::booksChanged);

    EXPECT_TRUE(await(model->saveSettings(given)));

    EXPECT_EQ(model->toastMessage(), QStringLiteral("Settings saved and Quire library moved"));
    EXPECT_EQ(lastPause(), std::chrono::milliseconds(3200));
    EXPECT_EQ(model->settings().databaseFolderPath, newFolder());
    EXPECT_EQ(model->settings().goodreadsUserID, QStringLiteral("42"));
    EXPECT_EQ(model->books().size(), 1);
    EXPECT_EQ(reloaded.count(), 1);
    EXPECT_TRUE(QFile::exists(newFolder() + QStringLiteral("/quire.db")));
    EXPECT_EQ(model->notice(), std::nullopt);
}

TEST_F(AppModelSettings, AFolderWithALibraryIsSwitchedToWithoutSayingThatOneMoved)
{
    addBook(QStringLiteral("Ours"));
    makeLibrary(newFolder());
    startModel();
    SettingsEdit given = edit();
    given.databaseFolderPath = newFolder();
    given.goodreadsUserID = QStringLiteral("42"); // goes to the library that is left

    EXPECT_TRUE(await(model->saveSettings(given)));

    EXPECT_EQ(model->toastMessage(), QStringLiteral("Settings saved"));
    EXPECT_EQ(model->settings().databaseFolderPath, newFolder());
    EXPECT_EQ(model->books().value(0).title, QStringLiteral("Theirs"));
    EXPECT_EQ(model->settings().goodreadsUserID, QString());
    EXPECT_EQ(stored(QStringLiteral("goodreadsUserId")), QStringLiteral("42"));
}

TEST_F(AppModelSettings, ThePresentFolderUnderAnotherNameIsNoMove)
{
    const QString link = place.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(library.folder(), link));
    startModel();
    for (const QString &name : {QString(library.folder() + QStringLiteral("/.//")), link}) {
        SettingsEdit given = edit();
        given.databaseFolderPath = name;
        EXPECT_TRUE(await(model->saveSettings(given)));
        EXPECT_EQ(model->toastMessage(), QStringLiteral("Settings saved"));
        EXPECT_EQ(model->settings().databaseFolderPath, library.folder());
    }
}

TEST_F(AppModelSettings, AMoveThatFailsShowsANoticeAndKeepsWhatWasStored)
{
    addBook(QStringLiteral("Ours"));
    startModel();
    QFile inTheWay(newFolder());
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    SettingsEdit given = edit();
    given.databaseFolderPath = newFolder();
    given.goodreadsUserID = QStringLiteral("42");

    EXPECT_FALSE(await(model->saveSettings(given)));

    EXPECT_EQ(model->notice(),
        AppNotice::error(QStringLiteral("Settings Could Not Be Saved"),
            QStringLiteral("Could not create the folder “%1”: Not a directory").arg(newFolder())));
    EXPECT_EQ(model->toastMessage(), std::nullopt);
    EXPECT_EQ(stored(QStringLiteral("goodreadsUserId")), QStringLiteral("42"));
    EXPECT_EQ(model->settings().databaseFolderPath, library.folder());

    // The same window, saved again once the way is free.
    inTheWay.remove();
    EXPECT_TRUE(await(model->saveSettings(given)));
    EXPECT_EQ(model->toastMessage(), QStringLiteral("Settings saved and Quire library moved"));
}

TEST_F(AppModelSettings, ASaveThatTheEndOfTheProgramOvertakesMovesNothing)
{
    startModel();
    SettingsEdit given = edit();
    given.databaseFolderPath = newFolder();
    auto saving = model->saveSettings(given);
    await(model->shutdown());
    EXPECT_FALSE(await(std::move(saving)));
    EXPECT_FALSE(QFile::exists(newFolder()));
}

TEST_F(AppModelSettings, AModelMayDieInTheMiddleOfSaving)
{
    for (int step = 0; step < 10; ++step) {
        startModel();
        const auto saving = model->saveSettings(edit());
        for (int turn = 0; turn < step; ++turn) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
        }
        model.reset();
        settle();
    }
}

} // namespace

} // namespace quire
