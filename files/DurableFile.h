// Writing files that must not be lost: a reader sees the old content or the
// new, never part of either, and what was reported as written survives a power
// cut. Everything below the application core that keeps a file of its own goes
// through here; it is a room of its own since reliability/ and persistence/
// both need it and neither may lean on the other's.
//
// Thread: any; blocks on the disk.

#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

#include <sys/types.h>

class QIODevice;

namespace quire::DurableFile {

// Replaces the file at `path` with `bytes`: a temporary file beside it, created
// with `mode` from its first byte, written, synced, renamed over it, and the
// folder synced. The folder must exist. mode: permission bits; the process's
// mask takes nothing away from them. Throws FileError, the old file as it was
// and no temporary left; or, as one, UnsyncedFileError.
void write(const QString &path, const QByteArray &bytes, mode_t mode = 0644);

// As write(), with what `fill` writes to the device that it is given, which goes
// to the disk as it comes: long runs of bytes are copied nowhere. Whoever fills
// need not look at the device's failures; what `fill` throws passes through, and
// the old file stays.
void writeStreamed(const QString &path, const std::function<void(QIODevice &)> &fill, mode_t mode = 0644);

// As write(), with the bytes of the file at `source`, at the length that it has
// when it is read. Throws FileError, naming the file that failed.
void copy(const QString &source, const QString &path);

// Creates the folder at `path` with its parents, so that it is still there after
// a power cut; fine when it exists. Throws FileError.
void createFolder(const QString &path);

// Makes the names in the folder at `path` as durable as the files behind them:
// what was created, renamed and removed there stays so after a power cut. Throws
// FileError.
void syncFolder(const QString &path);

// Gives the file at `from`, which nobody has open, the name `to` in the same
// folder: synced, then in one rename that replaces nothing, then the folder
// synced. Throws FileError, with EEXIST when the name is taken; the file is then
// still at `from`.
void move(const QString &from, const QString &to);

// Gives the file at `from`, whose bytes are synced, the name `to` in the same
// folder, in the place of what has it, and syncs the folder. Throws FileError, both
// files as they were; or, as one, UnsyncedFileError.
void moveOver(const QString &from, const QString &to);

// Removes the file at `path`, so that it stays gone after a power cut. Throws
// FileError, also when there is none.
void remove(const QString &path);

} // namespace quire::DurableFile
