#include "core/SettingsEdit.h"

#include "records/AccentPalette.h"

#include <gmock/gmock.h>

#include <QDir>

namespace quire {

namespace {

using ::testing::ElementsAre;

SettingsEdit acceptable()
{
    SettingsEdit edit;
    edit.backupPath = QStringLiteral("/backups");
    edit.databaseFolderPath = QStringLiteral("/library");
    return edit;
}

std::optional<AppNotice> noticeOf(const SettingsEdit &edit)
{
    const auto fault = firstFault(edit);
    return fault ? std::optional(fault->notice) : std::nullopt;
}

QString titleOf(const SettingsEdit &edit)
{
    const auto notice = noticeOf(edit);
    return notice ? notice->title : QString();
}

std::optional<FallibleSetting> faultyOf(const SettingsEdit &edit)
{
    const auto fault = firstFault(edit);
    return fault ? std::optional(fault->setting) : std::nullopt;
}

TEST(SettingsEdit, OpensWithWhatIsStoredAndEmptySecrets)
{
    SettingsSnapshot settings;
    settings.goodreadsUserID = QStringLiteral("42");
    settings.goodreadsRSSKeySet = true;
    settings.backupIntervalDays = 3;
    settings.showAudioSection = false;
    settings.customAccentColor = CustomAccentColor{0.1, 0.2, 0.3};

    const SettingsEdit edit = SettingsEdit::of(settings);

    EXPECT_EQ(edit.goodreadsUserID, QStringLiteral("42"));
    EXPECT_EQ(edit.goodreadsKey, QString());
    EXPECT_EQ(edit.backupInterval, 3);
    EXPECT_FALSE(edit.showAudioSection);
    EXPECT_EQ(edit.customAccentColor, (CustomAccentColor{0.1, 0.2, 0.3}));
}

TEST(SettingsEdit, OpensWithFjordWhenNoCustomColourIsStored)
{
    EXPECT_EQ(SettingsEdit::of({}).customAccentColor, AccentPalette::fjord);
}

TEST(SettingsValidation, AcceptsTheLimits)
{
    SettingsEdit edit = acceptable();
    edit.publishInterval = 10080;
    edit.backupInterval = 365;
    edit.maximumBackupFiles = 200;
    EXPECT_EQ(noticeOf(edit), std::nullopt);

    edit.publishInterval = edit.backupInterval = edit.maximumBackupFiles = 1;
    EXPECT_EQ(noticeOf(edit), std::nullopt);
}

TEST(SettingsValidation, RefusesOneBeyondEachLimit)
{
    for (const qint64 minutes : {0, 10081}) {
        SettingsEdit edit = acceptable();
        edit.publishInterval = minutes;
        EXPECT_EQ(noticeOf(edit),
            AppNotice::error(QStringLiteral("Invalid Publishing Interval"),
                QStringLiteral("Choose a whole number from 1 to 10,080 minutes.")));
    }
    for (const qint64 days : {0, 366}) {
        SettingsEdit edit = acceptable();
        edit.backupInterval = days;
        EXPECT_EQ(noticeOf(edit),
            AppNotice::error(QStringLiteral("Invalid Backup Interval"),
                QStringLiteral("Choose a whole number from 1 to 365 days.")));
    }
    for (const qint64 files : {0, 201}) {
        SettingsEdit edit = acceptable();
        edit.maximumBackupFiles = files;
        EXPECT_EQ(noticeOf(edit),
            AppNotice::error(QStringLiteral("Invalid Backup Limit"),
                QStringLiteral("Choose to keep between 1 and 200 backup files.")));
    }
}

TEST(SettingsValidation, RefusesRelativeFolders)
{
    const QString message = QStringLiteral("Choose an absolute folder path.");
    SettingsEdit edit = acceptable();
    edit.localPublishPath = QStringLiteral("site");
    EXPECT_EQ(noticeOf(edit), AppNotice::error(QStringLiteral("Invalid Publishing Folder"), message));

    edit = acceptable();
    edit.backupPath = QStringLiteral("backups");
    EXPECT_EQ(noticeOf(edit), AppNotice::error(QStringLiteral("Invalid Backup Folder"), message));
    edit.backupPath = QStringLiteral("  ");
    EXPECT_EQ(titleOf(edit), QStringLiteral("Invalid Backup Folder"));

    edit = acceptable();
    edit.databaseFolderPath = QStringLiteral("~reader/library");
    EXPECT_EQ(noticeOf(edit), AppNotice::error(QStringLiteral("Invalid Library Folder"), message));
}

TEST(SettingsValidation, TellsWhichValueIsTheFirstAtFault)
{
    SettingsEdit edit = acceptable();
    EXPECT_EQ(faultyOf(edit), std::nullopt);
    edit.databaseFolderPath = QStringLiteral("library");
    EXPECT_EQ(faultyOf(edit), FallibleSetting::DatabaseFolderPath);
    edit.backupPath = QStringLiteral("backups");
    EXPECT_EQ(faultyOf(edit), FallibleSetting::BackupPath);
    edit.localPublishPath = QStringLiteral("site");
    EXPECT_EQ(faultyOf(edit), FallibleSetting::LocalPublishPath);
    edit.maximumBackupFiles = 0;
    EXPECT_EQ(faultyOf(edit), FallibleSetting::MaximumBackupFiles);
    edit.backupInterval = 0;
    EXPECT_EQ(faultyOf(edit), FallibleSetting::BackupInterval);
    edit.publishInterval = 0;
    EXPECT_EQ(faultyOf(edit), FallibleSetting::PublishInterval);
}

TEST(SettingsValidation, AcceptsATildeAndNoPublishingFolder)
{
    SettingsEdit edit = acceptable();
    edit.localPublishPath = QStringLiteral(" \n");
    edit.backupPath = QStringLiteral("~/backups");
    edit.databaseFolderPath = QStringLiteral("~");
    EXPECT_EQ(titleOf(edit), QString());

    edit.localPublishPath = QStringLiteral("~/site");
    EXPECT_EQ(titleOf(edit), QString());
}

TEST(SettingsValidation, ReportsTheFirstFaultOfSeveral)
{
    SettingsEdit edit;
    edit.publishInterval = edit.backupInterval = edit.maximumBackupFiles = 0;
    edit.localPublishPath = QStringLiteral("site");
    EXPECT_EQ(titleOf(edit), QStringLiteral("Invalid Publishing Interval"));
    edit.publishInterval = 1;
    EXPECT_EQ(titleOf(edit), QStringLiteral("Invalid Backup Interval"));
    edit.backupInterval = 1;
    EXPECT_EQ(titleOf(edit), QStringLiteral("Invalid Backup Limit"));
    edit.maximumBackupFiles = 1;
    EXPECT_EQ(titleOf(edit), QStringLiteral("Invalid Publishing Folder"));
    edit.localPublishPath.clear();
    EXPECT_EQ(titleOf(edit), QStringLiteral("Invalid Backup Folder"));
    edit.backupPath = QStringLiteral("/backups");
    EXPECT_EQ(titleOf(edit), QStringLiteral("Invalid Library Folder"));
}

TEST(SettingsToWrite, KeepTheirOrderAndTheirForm)
{
    SettingsEdit edit = acceptable();
    edit.goodreadsUserID = QStringLiteral(" 42\n");
    edit.goodreadsKey = QStringLiteral(" key ");
    edit.netlifyToken = QStringLiteral("token");
    edit.localPublishPath = QStringLiteral("~/site");
    edit.automaticPublishing = true;
    edit.showAudioSection = false;
    edit.customAccentColor = {0.5, 0, 1};

    const auto pair = [](const char *key, const char *value) {
        return std::pair(QString::fromUtf8(key), QString::fromUtf8(value));
    };
    EXPECT_THAT(settingsToWrite(edit),
        ElementsAre(pair("goodreadsUserId", "42"), pair("goodreadsRssKey", "key"), pair("netlifyToken", "token"),
            pair("localPublishPath", "~/site"), pair("backupPath", "/backups"), pair("publishIntervalMinutes", "15"),
            pair("backupIntervalDays", "1"), pair("maximumBackupFiles", "20"), pair("showBooksSection", "1"),
            pair("showAudioSection", "0"), pair("automaticGoodreadsSync", "1"), pair("automaticAudibleSync", "1"),
            pair("automaticPublishing", "1"), pair("sidebarAppearance", "snow"), pair("interfaceFont", "avenirNext"),
            pair("accentColor", "fjord"), pair("usesCustomAccentColor", "0"), pair("customAccentRed", "0.5"),
            pair("customAccentGreen", "0.0"), pair("customAccentBlue", "1.0")));
}

TEST(SettingsToWrite, LeaveOutBlankSecrets)
{
    SettingsEdit edit = acceptable();
    edit.goodreadsKey = QStringLiteral(" \n");

    for (const auto &[key, value] : settingsToWrite(edit)) {
        EXPECT_NE(key, QStringLiteral("goodreadsRssKey"));
        EXPECT_NE(key, QStringLiteral("netlifyToken"));
    }
}

TEST(SettingsEdit, TheLibraryFolderIsThePlainOneOfWhatWasTyped)
{
    const auto folderOf = [](const QString &typed) {
        SettingsEdit edit = acceptable();
        edit.databaseFolderPath = typed;
        return libraryFolder(edit);
    };
    EXPECT_EQ(folderOf(QStringLiteral("/library")), QStringLiteral("/library"));
    EXPECT_EQ(folderOf(QStringLiteral(" /a/./b//../library/ \n")), QStringLiteral("/a/library"));
    EXPECT_EQ(folderOf(QStringLiteral("~/library")), QDir::homePath() + QStringLiteral("/library"));
    EXPECT_EQ(folderOf(QStringLiteral("/100% \"q\"/読書")), QStringLiteral("/100% \"q\"/読書"));
}

TEST(SettingsToWrite, GiveBackTheSameSettingsWhenRead)
{
    SettingsEdit edit = acceptable();
    edit.goodreadsUserID = QStringLiteral("7");
    edit.publishInterval = 60;
    edit.backupInterval = 9;
    edit.sidebarAppearance = SidebarAppearance::Pine;
    edit.interfaceFont = InterfaceFontChoice::Charter;
    edit.accentColor = AccentColorChoice::Cabin;
    edit.usesCustomAccentColor = true;
    edit.customAccentColor = {0.1, 0.2, 0.30000000000000004};
    SettingsMap stored;
    for (const auto &[key, value] : settingsToWrite(edit)) {
        stored.insert(key, value);
    }

    EXPECT_EQ(SettingsEdit::of(makeSettingsSnapshot(stored, QStringLiteral("/library/quire.db"))), edit);
}

} // namespace

} // namespace quire
