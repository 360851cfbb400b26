// What a library's path holds, told by its first bytes and without SQLite: even
// reading an empty file through SQLite deletes the write-ahead log beside it.
//
// Thread: any; blocks on the disk. Not to be used while this process has a
// connection to the file, whose locks it would drop.

#pragma once

#include <QString>

namespace quire::LibraryFile {

enum class Content {
    Missing,
    NoDatabase, // no bytes, too few, or others than a database begins with
    Database, // as far as its beginning tells
    Unknown, // cannot be read, or is no ordinary file
};

Content contentOf(const QString &path);

// Whether it is a database that writes ahead, so that SQLite makes a log and an
// index beside it for whoever reads it.
bool writesAhead(const QString &path);

} // namespace quire::LibraryFile
