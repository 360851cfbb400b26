// Brings the titles of the Audible application's own library, with their
// listening progress, into Quire's. That application is not to be found on this
// platform: the folder the reader named stands for it, and its path is all the
// access that is needed.

#pragma once

#include "records/AudibleAppAvailability.h"
#include "records/AudibleLibraryItem.h"
#include "sources/ServiceEndpoints.h"

#include <QCoroTask>
#include <QString>

#include <optional>
#include <stop_token>

namespace quire {

class Clock;
class LibraryStore;

namespace AudibleLibraryService {

// configuredLibraryPath: absolute, of the database or a folder that holds it.
//
// Thread: any; looks at the disk.
AudibleAppAvailability availability(const std::optional<QString> &configuredLibraryPath);

// Copies the application's database, reads the copy, lets the library make its
// safety backup if one is due, and merges the titles. Nothing changes in the
// library unless all of it could be read, and nothing ever in Audible's; no copy
// is left behind, however it ends.
//
// Thread: the interface thread; the copying and reading, and the store's work,
// happen elsewhere. store and clock outlive the task.
// Failures: ServiceError message for what the reader can mend, FileError,
// DatabaseError, those of the store, and Cancelled once `stop` is requested.
QCoro::Task<AudibleSyncResult> synchronize(
    LibraryStore &store, ServiceEndpoints endpoints, const Clock &clock, std::stop_token stop);

} // namespace AudibleLibraryService

} // namespace quire
