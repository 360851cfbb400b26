// SettingsSnapshot is the immutable view of all settings. The library keeps
// them as text under string keys; a default is filled in when a key is absent
// and is never written back.
//
// Thread: values and pure functions, any thread.

#pragma once

#include "persistence/LibraryStore.h"
#include "records/CustomAccentColor.h"
#include "records/Enumerations.h"

#include <QString>

#include <optional>

namespace quire {

// The defaults here are those of a program whose library is not loaded yet.
// No secret ever enters: the booleans say that one is stored.
struct SettingsSnapshot
{
    QString goodreadsUserID;
    bool goodreadsRSSKeySet = false;
    bool netlifyTokenSet = false;
    bool hasNetlifyToken = false; // the same as netlifyTokenSet
    QString netlifySiteURL;
    QString localPublishPath; // empty: no local copy
    QString backupPath;
    QString databaseFolderPath; // the folder that holds the library file
    qint64 publishIntervalMinutes = 15;
    qint64 backupIntervalDays = 1;
    qint64 maximumBackupFiles = 20;
    bool showBooksSection = true;
    bool showAudioSection = true;
    bool automaticGoodreadsSync = true;
    bool automaticAudibleSync = true;
    QString audibleLibraryPath;
    bool automaticPublishing = false;
    SidebarAppearance sidebarAppearance = SidebarAppearance::Snow;
    InterfaceFontChoice interfaceFont = InterfaceFontChoice::AvenirNext;
    AccentColorChoice accentColor = AccentColorChoice::Fjord;
    bool usesCustomAccentColor = false;
    std::optional<CustomAccentColor> customAccentColor; // when all three components are stored
    std::optional<QString> goodreadsLastSync; // instants as text, absent when blank
    std::optional<QString> audibleLastSync;
    std::optional<QString> publishLastRun;
    std::optional<QString> localLastPublish;
    std::optional<QString> onlineLastPublish;

    bool operator==(const SettingsSnapshot &) const = default;
};

// values: what the store holds. databaseLocation: absolute path of the library
// file. Never fails: what does not parse counts as absent.
SettingsSnapshot makeSettingsSnapshot(const SettingsMap &values, const QString &databaseLocation);

// Days between backups, 1 to 365; an interval that an older version stored in
// minutes is rounded up to days.
qint64 backupIntervalDays(const SettingsMap &values);

} // namespace quire
