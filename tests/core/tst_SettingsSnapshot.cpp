#include "core/SettingsSnapshot.h"

#include "persistence/AppDirectories.h"

#include <gtest/gtest.h>

namespace quire {

namespace {

const QString location = QStringLiteral("/home/reader/Library Folder/quire.db");

SettingsSnapshot snapshotOf(const SettingsMap &values)
{
    return makeSettingsSnapshot(values, location);
}

SettingsSnapshot snapshotOf(const QString &key, const QString &value)
{
    return snapshotOf(SettingsMap{{key, value}});
}

qint64 daysOf(const QString &key, const QString &value)
{
    return backupIntervalDays(SettingsMap{{key, value}});
}

TEST(SettingsSnapshot, AnEmptyMapGivesEveryDefault)
{
    const SettingsSnapshot snapshot = snapshotOf({});

    EXPECT_EQ(snapshot.goodreadsUserID, QString());
    EXPECT_FALSE(snapshot.goodreadsRSSKeySet);
    EXPECT_FALSE(snapshot.netlifyTokenSet);
    EXPECT_FALSE(snapshot.hasNetlifyToken);
    EXPECT_EQ(snapshot.netlifySiteURL, QString());
    EXPECT_EQ(snapshot.localPublishPath, QString());
    EXPECT_EQ(snapshot.backupPath, AppDirectories::supportDirectory() + QStringLiteral("/Database Backups"));
    EXPECT_EQ(snapshot.publishIntervalMinutes, 15);
    EXPECT_EQ(snapshot.backupIntervalDays, 1);
    EXPECT_EQ(snapshot.maximumBackupFiles, 20);
    EXPECT_TRUE(snapshot.showBooksSection);
    EXPECT_TRUE(snapshot.showAudioSection);
    EXPECT_TRUE(snapshot.automaticGoodreadsSync);
    EXPECT_TRUE(snapshot.automaticAudibleSync);
    EXPECT_EQ(snapshot.audibleLibraryPath, QString());
    EXPECT_FALSE(snapshot.automaticPublishing);
    EXPECT_EQ(snapshot.sidebarAppearance, SidebarAppearance::Snow);
    EXPECT_EQ(snapshot.interfaceFont, InterfaceFontChoice::AvenirNext);
    EXPECT_EQ(snapshot.accentColor, AccentColorChoice::Fjord);
    EXPECT_FALSE(snapshot.usesCustomAccentColor);
    EXPECT_EQ(snapshot.customAccentColor, std::nullopt);
    EXPECT_EQ(snapshot.goodreadsLastSync, std::nullopt);
    EXPECT_EQ(snapshot.onlineLastPublish, std::nullopt);
}

TEST(SettingsSnapshot, BeforeTheLibraryIsLoadedItHoldsTheSameDefaultsWithEmptyTexts)
{
    SettingsSnapshot loaded = snapshotOf({});
    loaded.backupPath.clear();
    loaded.databaseFolderPath.clear();

    EXPECT_EQ(SettingsSnapshot(), loaded);
}

TEST(SettingsSnapshot, EveryKeyReachesItsField)
{
    const SettingsMap values{
        {QStringLiteral("goodreadsUserId"), QStringLiteral("42")},
        {QStringLiteral("netlifySiteURL"), QStringLiteral("https://reader.example")},
        {QStringLiteral("localPublishPath"), QStringLiteral("/site")},
        {QStringLiteral("backupPath"), QStringLiteral(" /backups ")},
        {QStringLiteral("publishIntervalMinutes"), QStringLiteral("30")},
        {QStringLiteral("backupIntervalDays"), QStringLiteral("7")},
        {QStringLiteral("maximumBackupFiles"), QStringLiteral("5")},
        {QStringLiteral("showBooksSection"), QStringLiteral("0")},
        {QStringLiteral("showAudioSection"), QStringLiteral("0")},
        {QStringLiteral("automaticGoodreadsSync"), QStringLiteral("0")},
        {QStringLiteral("automaticAudibleSync"), QStringLiteral("0")},
        {QStringLiteral("audibleLibraryPath"), QStringLiteral("/audible")},
        {QStringLiteral("automaticPublishing"), QStringLiteral("1")},
        {QStringLiteral("sidebarAppearance"), QStringLiteral("glass")},
        {QStringLiteral("interfaceFont"), QStringLiteral("georgia")},
        {QStringLiteral("accentColor"), QStringLiteral("ORANGE")},
        {QStringLiteral("usesCustomAccentColor"), QStringLiteral("1")},
        {QStringLiteral("customAccentRed"), QStringLiteral("0.25")},
        {QStringLiteral("customAccentGreen"), QStringLiteral("0.5")},
        {QStringLiteral("customAccentBlue"), QStringLiteral("1")},
        {QStringLiteral("goodreadsLastSync"), QStringLiteral("a ")},
        {QStringLiteral("audibleLastSync"), QStringLiteral("b")},
        {QStringLiteral("publishLastRun"), QStringLiteral("c")},
        {QStringLiteral("localLastPublish"), QStringLiteral("d")},
        {QStringLiteral("onlineLastPublish"), QStringLiteral("e")},
    };

    const SettingsSnapshot snapshot = snapshotOf(values);

    EXPECT_EQ(snapshot.goodreadsUserID, QStringLiteral("42"));
    EXPECT_EQ(snapshot.netlifySiteURL, QStringLiteral("https://reader.example"));
    EXPECT_EQ(snapshot.localPublishPath, QStringLiteral("/site"));
    EXPECT_EQ(snapshot.backupPath, QStringLiteral("/backups"));
    EXPECT_EQ(snapshot.databaseFolderPath, QStringLiteral("/home/reader/Library Folder"));
    EXPECT_EQ(snapshot.publishIntervalMinutes, 30);
    EXPECT_EQ(snapshot.backupIntervalDays, 7);
    EXPECT_EQ(snapshot.maximumBackupFiles, 5);
    EXPECT_FALSE(snapshot.showBooksSection);
    EXPECT_FALSE(snapshot.showAudioSection);
    EXPECT_FALSE(snapshot.automaticGoodreadsSync);
    EXPECT_FALSE(snapshot.automaticAudibleSync);
    EXPECT_EQ(snapshot.audibleLibraryPath, QStringLiteral("/audible"));
    EXPECT_TRUE(snapshot.automaticPublishing);
    EXPECT_EQ(snapshot.sidebarAppearance, SidebarAppearance::Glass);
    EXPECT_EQ(snapshot.interfaceFont, InterfaceFontChoice::Georgia);
    EXPECT_EQ(snapshot.accentColor, AccentColorChoice::Cabin);
    EXPECT_TRUE(snapshot.usesCustomAccentColor);
    EXPECT_EQ(snapshot.customAccentColor, (CustomAccentColor{0.25, 0.5, 1}));
    EXPECT_EQ(snapshot.goodreadsLastSync, QStringLiteral("a"));
    EXPECT_EQ(snapshot.audibleLastSync, QStringLiteral("b"));
    EXPECT_EQ(snapshot.publishLastRun, QStringLiteral("c"));
    EXPECT_EQ(snapshot.localLastPublish, QStringLiteral("d"));
    EXPECT_EQ(snapshot.onlineLastPublish, QStringLiteral("e"));
}

TEST(SettingsSnapshot, SecretsShowOnlyThatTheyAreStored)
{
    EXPECT_TRUE(snapshotOf(QStringLiteral("goodreadsRssKey"), QStringLiteral("k")).goodreadsRSSKeySet);
    EXPECT_FALSE(snapshotOf(QStringLiteral("goodreadsRssKey"), QStringLiteral(" \n ")).goodreadsRSSKeySet);
    const SettingsSnapshot token = snapshotOf(QStringLiteral("netlifyToken"), QStringLiteral("t"));
    EXPECT_TRUE(token.netlifyTokenSet);
    EXPECT_TRUE(token.hasNetlifyToken);
}

TEST(SettingsSnapshot, ASwitchThatIsOnByDefaultIsOffOnlyForZero)
{
    EXPECT_TRUE(snapshotOf(QStringLiteral("showBooksSection"), QStringLiteral("false")).showBooksSection);
    EXPECT_TRUE(snapshotOf(QStringLiteral("showBooksSection"), QString()).showBooksSection);
    EXPECT_FALSE(snapshotOf(QStringLiteral("showBooksSection"), QStringLiteral("0")).showBooksSection);
}

TEST(SettingsSnapshot, ASwitchThatIsOffByDefaultIsOnOnlyForOne)
{
    EXPECT_FALSE(snapshotOf(QStringLiteral("automaticPublishing"), QStringLiteral("true")).automaticPublishing);
    EXPECT_FALSE(snapshotOf(QStringLiteral("automaticPublishing"), QStringLiteral(" 1")).automaticPublishing);
}

TEST(SettingsSnapshot, UnknownWordsGiveTheDefaultLook)
{
    EXPECT_EQ(snapshotOf(QStringLiteral("sidebarAppearance"), QStringLiteral("Glass")).sidebarAppearance,
        SidebarAppearance::Snow);
    EXPECT_EQ(snapshotOf(QStringLiteral("interfaceFont"), QStringLiteral("comic")).interfaceFont,
        InterfaceFontChoice::AvenirNext);
}

TEST(SettingsSnapshot, TwoOfThreeComponentsGiveNoCustomColour)
{
    const SettingsMap two{{QStringLiteral("usesCustomAccentColor"), QStringLiteral("1")},
        {QStringLiteral("customAccentRed"), QStringLiteral("0.1")},
        {QStringLiteral("customAccentGreen"), QStringLiteral("0.2")}};
    SettingsMap three = two;
    three.insert(QStringLiteral("customAccentBlue"), QStringLiteral("deep"));

    EXPECT_EQ(snapshotOf(two).customAccentColor, std::nullopt);
    EXPECT_TRUE(snapshotOf(two).usesCustomAccentColor);
    EXPECT_EQ(snapshotOf(three).customAccentColor, std::nullopt);
}

TEST(SettingsSnapshot, ANumberOutOfRangeStandsAndOneThatDoesNotParseFallsBack)
{
    EXPECT_EQ(
        snapshotOf(QStringLiteral("publishIntervalMinutes"), QStringLiteral("99999")).publishIntervalMinutes, 99999);
    EXPECT_EQ(snapshotOf(QStringLiteral("maximumBackupFiles"), QStringLiteral("-3")).maximumBackupFiles, -3);
    EXPECT_EQ(snapshotOf(QStringLiteral("publishIntervalMinutes"), QStringLiteral("30 ")).publishIntervalMinutes, 15);
    EXPECT_EQ(snapshotOf(QStringLiteral("maximumBackupFiles"), QStringLiteral("many")).maximumBackupFiles, 20);
}

TEST(SettingsSnapshot, ABackupPathOfBlanksFallsToTheDefaultFolder)
{
    EXPECT_EQ(snapshotOf(QStringLiteral("backupPath"), QStringLiteral("  \n")).backupPath, snapshotOf({}).backupPath);
}

TEST(SettingsSnapshot, ABlankLastRunIsAbsent)
{
    EXPECT_EQ(snapshotOf(QStringLiteral("publishLastRun"), QStringLiteral(" ")).publishLastRun, std::nullopt);
}

TEST(BackupIntervalDays, AreClampedToAYear)
{
    EXPECT_EQ(daysOf(QStringLiteral("backupIntervalDays"), QStringLiteral("0")), 1);
    EXPECT_EQ(daysOf(QStringLiteral("backupIntervalDays"), QStringLiteral("-4")), 1);
    EXPECT_EQ(daysOf(QStringLiteral("backupIntervalDays"), QStringLiteral("1000")), 365);
    EXPECT_EQ(daysOf(QStringLiteral("backupIntervalDays"), QStringLiteral("+12")), 12);
}

TEST(BackupIntervalDays, FallToTheMinutesOfAnOlderVersion)
{
    const SettingsMap values{{QStringLiteral("backupIntervalDays"), QStringLiteral("abc")},
        {QStringLiteral("backupIntervalMinutes"), QStringLiteral("2881")}};

    EXPECT_EQ(backupIntervalDays(values), 3);
}

TEST(BackupIntervalDays, RoundMinutesUpToDays)
{
    EXPECT_EQ(daysOf(QStringLiteral("backupIntervalMinutes"), QStringLiteral("90")), 1);
    EXPECT_EQ(daysOf(QStringLiteral("backupIntervalMinutes"), QStringLiteral("1440")), 1);
    EXPECT_EQ(daysOf(QStringLiteral("backupIntervalMinutes"), QStringLiteral("1441")), 2);
    EXPECT_EQ(daysOf(QStringLiteral("backupIntervalMinutes"), QStringLiteral("9000000000000000000")), 365);
    EXPECT_EQ(daysOf(QStringLiteral("backupIntervalMinutes"), QStringLiteral("-1")), 1);
}

TEST(BackupIntervalDays, AreOneWhenNothingParses)
{
    EXPECT_EQ(daysOf(QStringLiteral("backupIntervalMinutes"), QStringLiteral("soon")), 1);
    EXPECT_EQ(backupIntervalDays({}), 1);
}

} // namespace

} // namespace quire
