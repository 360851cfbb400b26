// The keyed form of the two files of the launch cache: CBOR maps, their keys in
// order. Of use to the cache alone.
//
// Thread: pure but for the device; any thread.
//
// Reading throws RecordCodingError for whatever is not exactly as it is written.

#pragma once

#include "core/QuireLaunchCache.h"

class QIODevice;

namespace quire::LaunchCacheCoding {

QByteArray encode(const QuireLaunchPreferences &preferences);
QuireLaunchPreferences decodePreferences(const QByteArray &bytes);

// The device's own failures show at the device.
void write(QIODevice &device, const QuireLibrarySnapshot &snapshot);

// Looks at the version and the path before anything else, and takes no more
// memory than a library of that size does. Ends early, as if it were damaged,
// once `stop` is requested.
QuireLibrarySnapshot read(QIODevice &device, const QString &databasePath, const std::stop_token &stop);

} // namespace quire::LaunchCacheCoding
