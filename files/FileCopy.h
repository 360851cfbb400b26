// Copying a file of any size that may be anything, and belongs to somebody else.
//
// Thread: any; blocks on the disk.

#pragma once

#include <QString>

#include <stop_token>

namespace quire::FileCopy {

// Makes a new file at `path`, for the eyes of its owner alone, of the bytes of
// the ordinary file at `source`, up to the length that it has at the beginning.
// The source is read and nothing else: not locked, not changed. Where the disk
// can tell, a file that does not fit fails before a byte is written.
// False when `stop` was requested before the end. Throws FileError, also when
// something lies at `path`. What there is of the copy then stays, for the caller
// to remove.
bool copy(const QString &source, const QString &path, const std::stop_token &stop);

} // namespace quire::FileCopy
