// Taking a library to another folder: the file is copied there, checked, given
// its name in one rename, opened and recorded, all while the old one stays as it
// is, so that at every moment a whole library exists and the record names one.
// A library that is there already is adopted as it is.
//
// Thread: the store's executor; takes as long as copying the file.

#pragma once

#include "concurrency/Clock.h"
#include "reliability/QuireCloudLineage.h"

#include <QString>

#include <memory>
#include <optional>

namespace quire {

class QuireLibraryLease;
class SQLiteDatabase;

namespace Relocation {

// Where the library is now; absolute paths.
struct PresentPlace
{
    QString supportDirectory; // the library's folder
    QString databaseURL;
    QString localStateDirectory; // takes the copies that migrations make
    std::optional<QString> locationRecordURL; // absent for a library without a record
    QuireCloudLineageStore cloudLineageStore; // which libraries this machine remembers
    const SQLiteDatabase *database = nullptr; // the connection to it, when it is open
};

// The library open in its new folder, under a lease there.
struct NewPlace
{
    QString supportDirectory;
    bool wasCopied = false; // false: the folder held a library, which was adopted
    std::unique_ptr<QuireLibraryLease> lease;
    std::unique_ptr<SQLiteDatabase> database; // last: closed before the lease is released
};

// Brings the library at `present` to `folder`, which is created, and records
// that. Nothing when `folder` is the present one, also through links. Neither
// the old file nor the lease on it is touched: both are the caller's to close.
// clock: outlives the lease.
// Throws DatabaseError (InvalidLibraryLocation for a folder that is not absolute
// or a file that fails its check, LibraryBusy while somebody uses the folder),
// QuireReliabilityError (a file that is none where a library is remembered, which
// a sync service has yet to fetch) or FileError; of a copy nothing is then left,
// and the record is as it was.
std::optional<NewPlace> open(const PresentPlace &present, const QString &folder, const Clock &clock);

} // namespace Relocation
} // namespace quire
