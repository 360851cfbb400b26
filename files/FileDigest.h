// The fingerprint of a whole file, by which damage of a single bit shows.
//
// Thread: any; blocks on the disk. Never of a database that is open in this
// process: closing the file would drop the locks of its connection.

#pragma once

#include <QString>

namespace quire::FileDigest {

// SHA-256 of the file at `path`, 64 lower-case hexadecimal digits; the file is
// read in pieces, however long it is. Throws FileError.
QString sha256(const QString &path);

} // namespace quire::FileDigest
