#include "core/SettingsEdit.h"

#include "files/FolderPath.h"
#include "records/AccentPalette.h"
#include "records/Text.h"

#include <QDir>

namespace quire {

namespace {

bool isAbsolute(const QString &path)
{
    return path.startsWith(u'/');
}

QString folderOf(const QString &typed)
{
    return Text::trimmed(FolderPath::expandingTilde(typed));
}

bool isIn(qint64 value, qint64 least, qint64 most)
{
    return value >= least && value <= most;
}

QString flag(bool value)
{
    return value ? QStringLiteral("1") : QStringLiteral("0");
}

} // namespace

SettingsEdit SettingsEdit::of(const SettingsSnapshot &settings)
{
    SettingsEdit edit;
    edit.goodreadsUserID = settings.goodreadsUserID;
    edit.localPublishPath = settings.localPublishPath;
    edit.backupPath = settings.backupPath;
    edit.databaseFolderPath = settings.databaseFolderPath;
    edit.publishInterval = settings.publishIntervalMinutes;
    edit.backupInterval = settings.backupIntervalDays;
    edit.maximumBackupFiles = settings.maximumBackupFiles;
    edit.showBooksSection = settings.showBooksSection;
    edit.showAudioSection = settings.showAudioSection;
    edit.automaticGoodreadsSync = settings.automaticGoodreadsSync;
    edit.automaticAudibleSync = settings.automaticAudibleSync;
    edit.automaticPublishing = settings.automaticPublishing;
    edit.sidebarAppearance = settings.sidebarAppearance;
    edit.interfaceFont = settings.interfaceFont;
    edit.accentColor = settings.accentColor;
    edit.usesCustomAccentColor = settings.usesCustomAccentColor;
    edit.customAccentColor = settings.customAccentColor.value_or(AccentPalette::fjord);
    return edit;
}

std::optional<SettingsFault> firstFault(const SettingsEdit &edit)
{
    const auto fault = [](FallibleSetting setting, const QString &title, const QString &message) {
        return SettingsFault{setting, AppNotice::error(title, message)};
    };
    const QString absolute = QStringLiteral("Choose an absolute folder path.");
    if (!isIn(edit.publishInterval, 1, 10080)) {
        return fault(FallibleSetting::PublishInterval, QStringLiteral("Invalid Publishing Interval"),
            QStringLiteral("Choose a whole number from 1 to 10,080 minutes."));
    }
    if (!isIn(edit.backupInterval, 1, 365)) {
        return fault(FallibleSetting::BackupInterval, QStringLiteral("Invalid Backup Interval"),
            QStringLiteral("Choose a whole number from 1 to 365 days."));
    }
    if (!isIn(edit.maximumBackupFiles, 1, 200)) {
        return fault(FallibleSetting::MaximumBackupFiles, QStringLiteral("Invalid Backup Limit"),
            QStringLiteral("Choose to keep between 1 and 200 backup files."));
    }
    const QString publishPath = FolderPath::normalizedPublishPath(edit.localPublishPath);
    if (!publishPath.isEmpty() && !isAbsolute(publishPath)) {
        return fault(FallibleSetting::LocalPublishPath, QStringLiteral("Invalid Publishing Folder"), absolute);
    }
    if (!isAbsolute(folderOf(edit.backupPath))) {
        return fault(FallibleSetting::BackupPath, QStringLiteral("Invalid Backup Folder"), absolute);
    }
    if (!isAbsolute(folderOf(edit.databaseFolderPath))) {
        return fault(FallibleSetting::DatabaseFolderPath, QStringLiteral("Invalid Library Folder"), absolute);
    }
    return std::nullopt;
}

QList<std::pair<QString, QString>> settingsToWrite(const SettingsEdit &edit)
{
    QList<std::pair<QString, QString>> writes;
    const auto write = [&writes](QStringView key, QString value) { writes.append({key.toString(), std::move(value)}); };
    // A blank secret means: keep what is stored.
    const auto writeSecret = [&write](QStringView key, const QString &typed) {
        if (const auto secret = Text::nonEmptyValue(typed)) {
            write(key, *secret);
        }
    };

    write(u"goodreadsUserId", Text::trimmed(edit.goodreadsUserID));
    writeSecret(u"goodreadsRssKey", edit.goodreadsKey);
    writeSecret(u"netlifyToken", edit.netlifyToken);
    write(u"localPublishPath", edit.localPublishPath);
    write(u"backupPath", edit.backupPath);
    write(u"publishIntervalMinutes", QString::number(edit.publishInterval));
    write(u"backupIntervalDays", QString::number(edit.backupInterval));
    write(u"maximumBackupFiles", QString::number(edit.maximumBackupFiles));
    write(u"showBooksSection", flag(edit.showBooksSection));
    write(u"showAudioSection", flag(edit.showAudioSection));
    write(u"automaticGoodreadsSync", flag(edit.automaticGoodreadsSync));
    write(u"automaticAudibleSync", flag(edit.automaticAudibleSync));
    write(u"automaticPublishing", flag(edit.automaticPublishing));
    write(u"sidebarAppearance", rawValue(edit.sidebarAppearance));
    write(u"interfaceFont", rawValue(edit.interfaceFont));
    write(u"accentColor", rawValue(edit.accentColor));
    write(u"usesCustomAccentColor", flag(edit.usesCustomAccentColor));
    write(u"customAccentRed", Text::shortestDecimal(edit.customAccentColor.red));
    write(u"customAccentGreen", Text::shortestDecimal(edit.customAccentColor.green));
    write(u"customAccentBlue", Text::shortestDecimal(edit.customAccentColor.blue));
    return writes;
}

QString libraryFolder(const SettingsEdit &edit)
{
    return QDir::cleanPath(folderOf(edit.databaseFolderPath));
}

} // namespace quire
