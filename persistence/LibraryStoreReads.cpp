#include "persistence/AudiobookRows.h"
#include "persistence/BookRows.h"
#include "persistence/LibraryStoreState.h"
#include "persistence/TagRows.h"

namespace quire {

QFuture<QList<Book>> LibraryStore::books()
{
    return read([](State &state) { return BookRows::all(*state.database, state.covers); });
}

QFuture<QList<Audiobook>> LibraryStore::audiobooks()
{
    return read([](State &state) { return AudiobookRows::all(*state.database, state.covers); });
}

QFuture<QList<TagCount>> LibraryStore::tags()
{
    return read([](State &state) { return TagRows::counts(*state.database); });
}

} // namespace quire
