#include "ModelTest.h"
#include "persistence/AppDirectories.h"
#include "QuireApp/ViewModels/AppearanceViewModel.h"
#include "QuireApp/ViewModels/CustomColorPanelPresenter.h"
#include "QuireApp/ViewModels/SettingsViewModel.h"

#include <QDir>
#include <QSignalSpy>

namespace quire {

namespace {

using testing::eventually;

const QUrl helpHost(QStringLiteral("https://help.test"));

class SettingsViewModelTest : public ModelTest
{
protected:
    CustomColorPanelPresenter colorPanel;
};

TEST_F(SettingsViewModelTest, AStoredKeyIsNotShownAndSavingKeepsIt)
{
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    startModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    settings.load();
    EXPECT_EQ(settings.goodreadsUserID(), QStringLiteral("42"));
    EXPECT_EQ(settings.goodreadsKey(), QString());
    EXPECT_EQ(settings.goodreadsKeyPrompt(), QStringLiteral("Saved; enter a new key to replace it"));

    const QSignalSpy saved(&settings, &SettingsViewModel::saved);
    settings.save();
    EXPECT_TRUE(settings.isSaving());
    EXPECT_TRUE(eventually([&] { return saved.size() == 1; }));
    EXPECT_FALSE(settings.isSaving());
    EXPECT_TRUE(model->settings().goodreadsRSSKeySet);
}

TEST_F(SettingsViewModelTest, WhatIsEnteredReachesTheLibraryOnlyThroughSave)
{
    startModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    settings.load();
    EXPECT_EQ(settings.goodreadsKeyPrompt(), QStringLiteral("RSS key from Goodreads"));
    settings.setGoodreadsUserID(QStringLiteral("7"));
    settings.setGoodreadsKey(QStringLiteral("key"));
    EXPECT_EQ(model->settings().goodreadsUserID, QString());
    settings.load(); // as Cancel and opening again
    EXPECT_EQ(settings.goodreadsUserID(), QString());

    settings.setGoodreadsUserID(QStringLiteral("7"));
    settings.setGoodreadsKey(QStringLiteral("key"));
    const QSignalSpy saved(&settings, &SettingsViewModel::saved);
    settings.save();
    EXPECT_TRUE(eventually([&] { return saved.size() == 1; }));
    EXPECT_EQ(model->settings().goodreadsUserID, QStringLiteral("7"));
    EXPECT_TRUE(model->settings().goodreadsRSSKeySet);
}

TEST_F(SettingsViewModelTest, AStoredTokenIsNotShownAndSavingKeepsIt)
{
    startModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    settings.load();
    EXPECT_EQ(settings.netlifyTokenPrompt(), QStringLiteral("Token for the reading website"));
    const QSignalSpy saved(&settings, &SettingsViewModel::saved);
    settings.setNetlifyToken(QStringLiteral("  a-token\n"));
    settings.save();
    EXPECT_TRUE(eventually([&] { return saved.size() == 1; }));

    settings.load(); // as opening again
    EXPECT_EQ(settings.netlifyToken(), QString());
    EXPECT_EQ(settings.netlifyTokenPrompt(), QStringLiteral("Saved; enter a new token to replace it"));
    settings.setNetlifyToken(QStringLiteral("  "));
    settings.save();
    EXPECT_TRUE(eventually([&] { return saved.size() == 2; }));
    EXPECT_TRUE(model->settings().netlifyTokenSet);
}

TEST_F(SettingsViewModelTest, WhatIsPublishedAndHowOftenIsStoredAsItIsTyped)
{
    startModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    settings.load();
    EXPECT_EQ(settings.publishedPage(), QString());
    EXPECT_EQ(settings.publishInterval(), 15);
    EXPECT_FALSE(settings.automaticPublishing());
    desktop.answer = library.file(QStringLiteral("lists"));
    settings.chooseLocalPublishFolder();
    EXPECT_TRUE(eventually([&] { return settings.localPublishPath() == desktop.answer; }));
    EXPECT_EQ(stored(QStringLiteral("localPublishPath")), std::nullopt);

    settings.setLocalPublishPath(QStringLiteral("~/Lists"));
    settings.setPublishInterval(10080);
    settings.setAutomaticPublishing(true);
    const QSignalSpy saved(&settings, &SettingsViewModel::saved);
    settings.save();
    EXPECT_TRUE(eventually([&] { return saved.size() == 1; }));
    EXPECT_EQ(stored(QStringLiteral("localPublishPath")), QStringLiteral("~/Lists"));
    EXPECT_EQ(stored(QStringLiteral("publishIntervalMinutes")), QStringLiteral("10080"));
    EXPECT_EQ(stored(QStringLiteral("automaticPublishing")), QStringLiteral("1"));
}

TEST_F(SettingsViewModelTest, AFailedSaveLeavesTheWindowOpen)
{
    startModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    settings.load();
    library.executeScript("CREATE TRIGGER refused BEFORE INSERT ON settings"
                          " BEGIN SELECT RAISE(ABORT, 'no settings here'); END;");
    const QSignalSpy saved(&settings, &SettingsViewModel::saved);
    settings.save();
    EXPECT_TRUE(eventually([&] { return model->notice().has_value() && !settings.isSaving(); }));
    EXPECT_EQ(saved.size(), 0);
    EXPECT_EQ(model->notice()->title, QStringLiteral("Settings Could Not Be Saved"));
}

TEST_F(SettingsViewModelTest, ARefusedValueIsShownOnItsTab)
{
    startModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    QSignalSpy refused(&settings, &SettingsViewModel::refused);
    const auto refusal = [&](auto spoil) {
        settings.load();
        settings.selectTab(QStringLiteral("appearance"));
        spoil();
        refused.clear();
        settings.save();
        EXPECT_EQ(refused.size(), 1);
        EXPECT_TRUE(eventually([&] { return model->notice() && !settings.isSaving(); }));
        model->setNotice(std::nullopt);
        return refused.isEmpty() ? QString() : settings.selectedTab() + u' ' + refused.first().first().toString();
    };
    const auto is = [](const char *text) { return QString::fromLatin1(text); };

    EXPECT_EQ(refusal([&] { settings.setPublishInterval(0); }), is("publishing publishInterval"));
    EXPECT_EQ(refusal([&] { settings.setLocalPublishPath(is("site")); }), is("publishing localPublishPath"));
    EXPECT_EQ(refusal([&] { settings.setBackupInterval(0); }), is("data backupInterval"));
    EXPECT_EQ(refusal([&] { settings.setMaximumBackupFiles(0); }), is("data maximumBackupFiles"));
    EXPECT_EQ(refusal([&] { settings.setBackupPath(is("backups")); }), is("data backupPath"));
    EXPECT_EQ(refusal([&] { settings.setDatabaseFolderPath(is("library")); }), is("data databaseFolderPath"));

    settings.load();
    settings.selectTab(is("appearance"));
    refused.clear();
    settings.save();
    EXPECT_TRUE(eventually([&] { return !settings.isSaving(); }));
    EXPECT_EQ(refused.size(), 0);
    EXPECT_EQ(settings.selectedTab(), is("appearance"));
}

TEST_F(SettingsViewModelTest, TheFoldersOfTheReaderFillTheirBuffersAndNothingElse)
{
    startModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    settings.load();
    EXPECT_EQ(settings.databaseFolderPath(), library.folder());
    desktop.answer = library.file(QStringLiteral("Büro 100%"));

    settings.chooseDatabaseFolder();
    EXPECT_TRUE(eventually([&] { return settings.databaseFolderPath() == desktop.answer; }));
    EXPECT_EQ(desktop.questions.last().startFolder, library.folder());
    settings.chooseBackupFolder();
    EXPECT_TRUE(eventually([&] { return settings.backupPath() == desktop.answer; }));

    EXPECT_EQ(model->settings().databaseFolderPath, library.folder());
    EXPECT_EQ(stored(QStringLiteral("backupPath")), std::nullopt);
}

TEST_F(SettingsViewModelTest, APickerThatIsCancelledLeavesTheBuffer)
{
    startModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    settings.setBackupPath(QStringLiteral("/typed"));

    settings.chooseBackupFolder();
    EXPECT_TRUE(eventually([&] { return desktop.questions.size() == 1; }));
    settle();

    EXPECT_EQ(settings.backupPath(), QStringLiteral("/typed"));
}

TEST_F(SettingsViewModelTest, TheDefaultFoldersAreThoseOfTheProgram)
{
    makeModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);

    settings.useDefaultDatabaseFolder();
    settings.useDefaultBackupFolder();

    EXPECT_EQ(settings.databaseFolderPath(), AppDirectories::supportDirectory());
    EXPECT_EQ(settings.backupPath(), AppDirectories::supportDirectory() + QStringLiteral("/Database Backups"));
}

TEST_F(SettingsViewModelTest, TheBackupFolderIsShownAsItIsTyped)
{
    startModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    const QString typed = library.file(QStringLiteral("Typed"));
    settings.setBackupPath(typed);

    settings.openBackups();

    EXPECT_TRUE(eventually([&] { return desktop.opened == QList{QUrl::fromLocalFile(typed)}; }));
}

TEST_F(SettingsViewModelTest, ABackupGoesIntoTheFolderAsItIsTyped)
{
    startModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    const QString typed = library.file(QStringLiteral("Typed"));
    settings.setBackupPath(typed);

    settings.backUpDatabase();
    EXPECT_TRUE(settings.isBackingUp());
    settings.backUpDatabase(); // one at a time

    EXPECT_TRUE(eventually([&] { return !settings.isBackingUp(); }));
    ASSERT_TRUE(model->notice());
    EXPECT_EQ(model->notice()->title, QStringLiteral("Quire Database Backed Up"));
    EXPECT_EQ(QDir(typed).entryList({QStringLiteral("Quire Database *.db")}).size(), 1);
}

TEST_F(SettingsViewModelTest, ABackupIntoARelativeFolderIsRefused)
{
    startModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    settings.setBackupPath(QStringLiteral("backups"));

    settings.backUpDatabase();

    EXPECT_TRUE(eventually([&] { return model->notice().has_value() && !settings.isBackingUp(); }));
    EXPECT_EQ(model->notice(),
        AppNotice::error(QStringLiteral("Backup Failed"),
            QStringLiteral("Could not copy the Quire database: Choose an absolute folder for the Quire backup.")));
}

TEST_F(SettingsViewModelTest, TheRhythmOfBackupsIsStored)
{
    startModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    settings.load();
    settings.setBackupInterval(3);
    settings.setMaximumBackupFiles(7);
    const QSignalSpy saved(&settings, &SettingsViewModel::saved);

    settings.save();

    EXPECT_TRUE(eventually([&] { return saved.size() == 1; }));
    EXPECT_EQ(stored(QStringLiteral("backupIntervalDays")), QStringLiteral("3"));
    EXPECT_EQ(stored(QStringLiteral("maximumBackupFiles")), QStringLiteral("7"));
}

TEST_F(SettingsViewModelTest, AWindowThatWasOpenBeforeTheLibraryTakesItsSettingsAndHasStoredNothing)
{
    setStored(QStringLiteral("goodreadsUserId"), QStringLiteral("12345"));
    makeModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    SettingsViewModel settings(*model, appearance, helpHost);
    settings.load();
    settings.save();
    settle();
    EXPECT_FALSE(settings.isReady());
    EXPECT_FALSE(settings.isSaving());

    testing::await(model->start());

    EXPECT_TRUE(settings.isReady());
    EXPECT_EQ(settings.goodreadsUserID(), QStringLiteral("12345"));
    EXPECT_EQ(stored(QStringLiteral("goodreadsUserId")), QStringLiteral("12345"));
}

TEST_F(SettingsViewModelTest, TheLinksLeadToTheHelpHost)
{
    makeModel();
    AppearanceViewModel appearance(*model, clock, colorPanel);
    const SettingsViewModel settings(*model, appearance, helpHost);
    EXPECT_EQ(
        settings.goodreadsUserIDHelp().toString(), QStringLiteral("https://help.test/quire/help.html#goodreads-setup"));
    EXPECT_EQ(settings.goodreadsKeyHelp().toString(), QStringLiteral("https://help.test/quire/help.html#rss-setup"));
    EXPECT_EQ(settings.netlifyHelp().toString(), QStringLiteral("https://help.test/quire/help.html#netlify-setup"));
}

} // namespace

} // namespace quire
