// What the settings window holds while the reader edits: one buffer a field.
// Nothing reaches the store before AppModel::saveSettings().
//
// Thread: values and pure functions, any thread.

#pragma once

#include "core/SettingsSnapshot.h"
#include "records/AppNotice.h"

#include <QList>

#include <optional>
#include <utility>

namespace quire {

struct SettingsEdit
{
    // Every buffer as it stands when the window opens. The two secrets start
    // empty: a stored one is never shown.
    static SettingsEdit of(const SettingsSnapshot &settings);

    QString goodreadsUserID;
    QString goodreadsKey; // blank: keep what is stored
    QString netlifyToken; // blank: keep what is stored
    QString localPublishPath;
    QString backupPath;
    QString databaseFolderPath;
    qint64 publishInterval = 15; // minutes
    qint64 backupInterval = 1; // days
    qint64 maximumBackupFiles = 20;
    bool showBooksSection = true;
    bool showAudioSection = true;
    bool automaticGoodreadsSync = true;
    bool automaticAudibleSync = true;
    bool automaticPublishing = false;
    SidebarAppearance sidebarAppearance = SidebarAppearance::Snow;
    InterfaceFontChoice interfaceFont = InterfaceFontChoice::AvenirNext;
    AccentColorChoice accentColor = AccentColorChoice::Fjord;
    bool usesCustomAccentColor = false;
    CustomAccentColor customAccentColor; // the stored one, else Fjord

    bool operator==(const SettingsEdit &) const = default;
};

// A value that a reader can get wrong.
enum class FallibleSetting {
    PublishInterval,
    LocalPublishPath,
    BackupInterval,
    MaximumBackupFiles,
    BackupPath,
    DatabaseFolderPath,
};

struct SettingsFault
{
    FallibleSetting setting;
    AppNotice notice; // what to tell the reader
};

// The first thing wrong with the values, numbers before folders; nothing when
// they may be saved.
std::optional<SettingsFault> firstFault(const SettingsEdit &edit);

// The keys and texts to store, in the order in which they are written. Blank
// secrets are left out.
QList<std::pair<QString, QString>> settingsToWrite(const SettingsEdit &edit);

// The plain path of the folder that is to hold the library; absolute when the
// values are valid.
QString libraryFolder(const SettingsEdit &edit);

} // namespace quire
