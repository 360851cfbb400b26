#include "persistence/LibraryStore.h"

#include "persistence/Backups.h"
#include "persistence/LibraryStoreState.h"

namespace quire {

QFuture<QString> LibraryStore::backUpDatabase(const std::optional<QString> &folder)
{
    return read([folder](State &state) { return Backups::backUp(state.live(), folder); });
}

QFuture<std::optional<QString>> LibraryStore::backUpDatabaseIfDue()
{
    return read([](State &state) { return Backups::backUpIfDue(state.live()); });
}

} // namespace quire
