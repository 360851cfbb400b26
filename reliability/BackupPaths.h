// The names of a backup and of the two files beside it, by which its state shows
// on disk: marker alone, it is in the making; marker and manifest, it is being
// finished; manifest alone, it is good. A file with a marker is never good.
//
// Thread: pure functions, any thread.

#pragma once

#include "records/Instant.h"

#include <QString>

namespace quire::BackupPaths {

inline constexpr QStringView namePrefix = u"Quire Database ";
inline constexpr QStringView nameSuffix = u".db";
inline constexpr QStringView manifestSuffix = u".manifest.json";
inline constexpr QStringView markerSuffix = u".incomplete";

// "Quire Database 2026-11-16T03-41-09.123Z.db"
QString name(Instant moment);

// Beside the backup at the given path.
QString manifest(const QString &backup);
QString marker(const QString &backup);

} // namespace quire::BackupPaths
