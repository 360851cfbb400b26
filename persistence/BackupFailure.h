// Whatever stops a backup between its copy and its last note is told as the
// failure of a backup, in the words of the cause.
//
// Thread: any.

#pragma once

#include "files/FileError.h"
#include "persistence/database/DatabaseError.h"

#include <utility>

namespace quire {

// Runs `work` and gives its result. Throws DatabaseError Backup in place of any
// DatabaseError or FileError.
template<typename Work>
auto asBackupFailure(Work &&work)
{
    try {
        return std::forward<Work>(work)();
    } catch (const DatabaseError &error) {
        throw DatabaseError(DatabaseError::Kind::Backup, error.text());
    } catch (const FileError &error) {
        throw DatabaseError(DatabaseError::Kind::Backup, error.description());
    }
}

} // namespace quire
