// The lists of a library as they were read in one go, with the keys made of them.
//
// Thread: a value; immutable parts, shared by copies.

#pragma once

#include "core/LibraryIndex.h"
#include "records/Audiobook.h"
#include "records/Book.h"
#include "records/TagCount.h"

#include <QList>

#include <memory>

namespace quire {

struct LoadedLibrary
{
    QList<Book> books;
    std::shared_ptr<const LibraryIndex> bookIndex; // row by row
    QList<Audiobook> audiobooks;
    std::shared_ptr<const LibraryIndex> audiobookIndex;
    QList<TagCount> tags;
};

} // namespace quire
