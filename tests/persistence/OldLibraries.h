// Library files as earlier versions left them.

#pragma once

#include <QString>

namespace quire::testing::OldLibraries {

// Before versions were counted: base tables without the later columns, one book
// with a note and a tag, one audiobook, and `extraBooks` more books.
void createVersion0(const QString &path, int extraBooks = 0);

// The same with every column, at version 1, and without what version 2 added.
void createVersion1(const QString &path);

} // namespace quire::testing::OldLibraries
