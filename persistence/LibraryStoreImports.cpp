#include "persistence/LibraryStore.h"

#include "persistence/AudibleMerge.h"
#include "persistence/GoodreadsMerge.h"
#include "persistence/LibraryStoreState.h"
#include "persistence/QuireImportValidator.h"

namespace quire {

// A batch is refused before anybody asks whether the library is open, so these
// take the long form of the hop.

QFuture<void> LibraryStore::upsertGoodreadsBooks(const QList<GoodreadsFeedBook> &batch)
{
    return m_executor.submit([state = m_state.get(), batch] {
        QuireImportValidator::validateGoodreads(batch);
        state->requireOpen();
        inTransaction(*state->database, [&] { GoodreadsMerge::upsert(*state->database, batch); });
    });
}

QFuture<AudibleSyncResult> LibraryStore::mergeAudibleLibraryItems(const QList<AudibleLibraryItem> &batch)
{
    return m_executor.submit([state = m_state.get(), batch] {
        QuireImportValidator::validateAudible(batch);
        state->requireOpen();
        return inTransaction(
            *state->database, [&] { return AudibleMerge::merge(*state->database, batch, state->clock.now()); });
    });
}

} // namespace quire
