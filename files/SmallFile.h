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
// read, it is no ordinary file, or it is longer than maximumBytes.
std::optional<QByteArray> read(const QString &path);

} // namespace quire::SmallFile
