#include "persistence/LibraryStore.h"

#include "files/DurableFile.h"
#include "persistence/AppDirectories.h"
#include "persistence/JobHistory.h"
#include "persistence/LegacyImport.h"
#include "persistence/LibraryOpening.h"
#include "persistence/LibraryStoreState.h"
#include "persistence/QuireLibraryLocation.h"

#include <QDir>
#include <QFileInfo>

namespace quire {

LibraryStore::State::State(const Clock &storeClock, const QString &folder)
    : clock(storeClock)
    , supportDirectory(folder)
    , localStateDirectory(folder)
    , credentialStore(folder + QStringLiteral("/Credentials.plist"))
{
}

void LibraryStore::State::requireOpen() const
{
    if (!database) {
        throw DatabaseError(DatabaseError::Kind::MissingDatabase);
    }
}

LibraryStore::LibraryStore(
    const Clock &clock, const std::optional<QString> &folder, bool importLegacyBooksOnFirstLaunch)
    : m_state(std::make_unique<State>(
        clock, folder ? QDir::cleanPath(QDir(*folder).absolutePath()) : AppDirectories::supportDirectory()))
    , m_executor(QStringLiteral("library-store"))
{
    m_state->importLegacyBooksOnFirstLaunch = importLegacyBooksOnFirstLaunch;
    if (!folder) {
        m_state->locationRecordURL = QuireLibraryLocation::recordURL();
        // Ahead of everything else, but not on the thread that builds the store.
        m_executor.submit(
            [state = m_state.get()] { state->supportDirectory = QuireLibraryLocation::configuredDirectory(); });
    }
}

LibraryStore::~LibraryStore() = default;

QFuture<void> LibraryStore::prepare(bool recoveringFromCrash)
{
    return m_executor.submit([state = m_state.get(), recoveringFromCrash] {
        if (state->database) {
            return;
        }
        DurableFile::createFolder(state->supportDirectory);
        if (state->importLegacyBooksOnFirstLaunch && !QFileInfo::exists(state->databaseURL())) {
            LegacyImport::runIfAvailable(AppDirectories::legacyBooksSupportDirectory(), state->supportDirectory,
                state->databaseURL(), state->clock.now());
        }
        // Held here until the last step has passed: a failure closes it.
        auto database
            = LibraryOpening::openPrepared(state->databaseURL(), state->supportDirectory, state->localStateDirectory);
        LibraryOpening::migrateCredentials(*database, state->credentialStore);
        if (recoveringFromCrash) {
            LibraryOpening::recoverFromCrash(*database);
        }
        state->database = std::move(database);
    });
}

QFuture<void> LibraryStore::shutdown()
{
    return m_executor.submit([state = m_state.get()] {
        state->database.reset();
        state->libraryLease.reset();
        state->covers.clear();
    });
}

QFuture<void> LibraryStore::recordBackgroundJob(const QuireJobEvent &event)
{
    return read([event](State &state) { JobHistory::record(*state.database, event); });
}

QFuture<QString> LibraryStore::databaseURL()
{
    return m_executor.submit([state = m_state.get()] { return state->databaseURL(); });
}

} // namespace quire
