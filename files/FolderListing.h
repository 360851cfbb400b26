// What lies in a folder: every entry with the date and size of its content, hidden ones
// too. A symbolic link is told as itself and not as what it leads to.
//
// Thread: any; blocks on the disk.

#pragma once

#include "records/Instant.h"

#include <QString>

#include <filesystem>
#include <optional>
#include <vector>

namespace quire {

// A date as the file system keeps it: nanoseconds tell two files of the same
// millisecond apart.
struct FileDate
{
    qint64 seconds = 0; // since 1970
    qint64 nanoseconds = 0;

    // To the millisecond below; dates that no calendar has are brought into
    // the years 1 to 9999.
    Instant instant() const;

    auto operator<=>(const FileDate &) const = default;
};

struct FolderEntry
{
    std::filesystem::path path; // in the bytes of the file system, whatever they are
    std::optional<FileDate> modified; // of the content; absent when it cannot be read
    std::optional<qint64> size; // in bytes; absent as the date is
    bool isFolder = false;
};

namespace FolderListing {

// In the order of the names. Throws FileError, also when there is no such folder.
std::vector<FolderEntry> of(const QString &folder);

} // namespace FolderListing
} // namespace quire
