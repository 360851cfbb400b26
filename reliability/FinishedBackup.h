// Whether a backup that once was verified still is what its manifest says: the
// question to ask before one is trusted, long after it was made and perhaps on
// another machine.
//
// Thread: any; reads the whole file. Never of the library that is open.

#pragma once

#include <QString>

namespace quire::FinishedBackup {

enum class Condition {
    Good,
    Unfinished, // its making or verification never ended
    WithoutManifest, // or with one that cannot be read: it may be whole, but nothing says so
    Damaged, // missing, unreadable, or not what the manifest says
};

// backup: absolute path of the backup file. Changes nothing, never fails.
Condition condition(const QString &backup);

} // namespace quire::FinishedBackup
