// Reading the small records that Quire keeps beside the library. Whatever lies
// in their place is read in bounded time and memory, and without waiting.
//
// Thread: any; blocks on the disk.

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quire::SmallFile {

// No record comes near this.
inline constexpr qint64 maximumBytes = 1 << 20;

// The content of the file at `path`; nothing when there is none, it cannot be
// read, it is no ordinary file, or it is longer than `maximum` bytes.
std::optional<QByteArray> read(const QString &path, qint64 maximum = maximumBytes);

// As read(), but throws FileError where the file may well be there and the system
// could not open it at this moment: too many files are open, or the disk failed.
// For records whose absence means something.
std::optional<QByteArray> readIfThere(const QString &path);

// As read() from an open file that nobody has read from; it stays open.
std::optional<QByteArray> read(int descriptor, qint64 maximum = maximumBytes);

} // namespace quire::SmallFile
