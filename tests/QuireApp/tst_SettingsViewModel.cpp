#include "ModelTest.h"
#include "QuireApp/ViewModels/SettingsViewModel.h"

#include <QSignalSpy>

namespace quire {

namespace {

using testing::eventually;

const QUrl helpHost(QStringLiteral("https://help.test"));

class SettingsViewModelTest : public ModelTest
{
};

TEST_F(SettingsViewModelTest, AStoredKeyIsNotShownAndSavingKeepsIt)
{
    configureGoodreads();
    setStored(QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0"));
    startModel();
    SettingsViewModel settings(*model, helpHost);
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
    SettingsViewModel settings(*model, helpHost);
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

TEST_F(SettingsViewModelTest, AFailedSaveLeavesTheWindowOpen)
{
    startModel();
    SettingsViewModel settings(*model, helpHost);
    settings.load();
    testing::await(model->shutdown()); // the library is closed: nothing can be written
    const QSignalSpy saved(&settings, &SettingsViewModel::saved);
    settings.save();
    EXPECT_TRUE(eventually([&] { return model->notice().has_value() && !settings.isSaving(); }));
    EXPECT_EQ(saved.size(), 0);
    EXPECT_EQ(model->notice()->title, QStringLiteral("Settings Could Not Be Saved"));
}

TEST_F(SettingsViewModelTest, TheLinksLeadToTheHelpHost)
{
    makeModel();
    const SettingsViewModel settings(*model, helpHost);
    EXPECT_EQ(
        settings.goodreadsUserIDHelp().toString(), QStringLiteral("https://help.test/quire/help.html#goodreads-setup"));
    EXPECT_EQ(settings.goodreadsKeyHelp().toString(), QStringLiteral("https://help.test/quire/help.html#rss-setup"));
}

} // namespace

} // namespace quire
