#include "persistence/LibraryStore.h"

#include "persistence/LibraryStoreState.h"
#include "persistence/Relocation.h"

namespace quire {

QFuture<bool> LibraryStore::relocateDatabase(const QString &folder)
{
    return m_executor.submit([state = m_state.get(), folder] {
        auto place = Relocation::open({state->supportDirectory, state->databaseURL(), state->localStateDirectory,
                                          state->locationRecordURL, state->cloudLineageStore, state->database.get()},
            folder, state->clock);
        if (!place) {
            return false;
        }
        state->database.reset();
        state->libraryLease.reset();
        state->covers.clear(); // of another file
        state->supportDirectory = place->supportDirectory;
        state->database = std::move(place->database);
        state->libraryLease = std::move(place->lease);
        state->rememberLineage();
        return place->wasCopied;
    });
}

} // namespace quire
