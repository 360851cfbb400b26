#include "persistence/AudiobookRows.h"
#include "persistence/BookRows.h"
#include "persistence/LibraryStoreState.h"
#include "persistence/SettingsRows.h"
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

QFuture<SettingsMap> LibraryStore::settings()
{
    return read([](State &state) { return SettingsRows::all(*state.database, state.credentialStore); });
}

} // namespace quire
