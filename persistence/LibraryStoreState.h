// What LibraryStore holds while it lives, and the two hops that every operation
// is made of. For the files that implement LibraryStore, and for nobody else.
//
// Thread: State is touched only on the store's executor.

#pragma once

#include "persistence/CoverCache.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/Transaction.h"
#include "persistence/LibraryStore.h"
#include "persistence/LiveLibrary.h"
#include "persistence/QuireCredentialStore.h"
#include "reliability/QuireCloudLineage.h"
#include "reliability/QuireLibraryLease.h"

#include <memory>
#include <optional>

namespace quire {

struct LibraryStore::State
{
    // folder: of the local state, and of the library until it is known to lie
    // elsewhere.
    State(const Clock &storeClock, const QString &folder);

    QString databaseURL() const { return supportDirectory + QStringLiteral("/quire.db"); }
    void requireOpen() const;
    LiveLibrary live() { return {*database, credentialStore, supportDirectory, clock}; } // while it is open

    // What prepare() and shutdown() do, on the executor.
    void open(bool recoveringFromCrash);
    void close();

    // What is in the open library, as what this machine saw last at its place. A
    // memory that cannot be written stays behind, which the next opening allows.
    void rememberLineage();

    const Clock &clock;
    QString supportDirectory; // the library's folder
    QString localStateDirectory; // never in a folder that a sync service copies
    std::optional<QString> locationRecordURL; // absent when the folder was given
    bool importLegacyBooksOnFirstLaunch = false;
    QuireCredentialStore credentialStore;
    QuireCloudLineageStore cloudLineageStore;
    std::unique_ptr<QuireLibraryLease> libraryLease; // null while the library is closed
    std::unique_ptr<SQLiteDatabase> database; // null while the library is closed; closed before the lease
    CoverCache covers;
};

// One hop: `job` gets the State, with a database that is open; otherwise the
// future fails with MissingDatabase. For reads, for writes of one statement, and
// for work with transactions of its own.
template<typename Job>
auto LibraryStore::read(Job job)
{
    return m_executor.submit([state = m_state.get(), job = std::move(job)]() mutable {
        state->requireOpen();
        return job(*state);
    });
}

// As read(), with the whole of `job` in one transaction.
template<typename Job>
auto LibraryStore::write(Job job)
{
    return read([job = std::move(job)](
                    State &state) mutable { return inTransaction(*state.database, [&] { return job(state); }); });
}

} // namespace quire
