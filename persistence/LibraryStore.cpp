#include "persistence/LibraryStore.h"

#include "files/DurableFile.h"
#include "persistence/AppDirectories.h"
#include "persistence/CloudLineage.h"
#include "persistence/ConflictCopies.h"
#include "persistence/JobHistory.h"
#include "persistence/LegacyImport.h"
#include "persistence/LibraryOpening.h"
#include "persistence/LibraryStoreState.h"
#include "persistence/QuireLibraryLocation.h"
#include "persistence/StaleFiles.h"
#include "records/Failure.h"

#include <QDir>
#include <QFileInfo>

namespace quire {

LibraryStore::State::State(const Clock &storeClock, const QString &folder)
    : clock(storeClock)
    , supportDirectory(folder)
    , localStateDirectory(folder)
    , credentialStore(folder + QStringLiteral("/Credentials.plist"))
    , cloudLineageStore(folder + QStringLiteral("/Cloud Library State"))
{
}

void LibraryStore::State::requireOpen() const
{
    if (!database) {
        throw DatabaseError(DatabaseError::Kind::MissingDatabase);
    }
}

void LibraryStore::State::open(bool recoveringFromCrash)
{
    if (database) {
        return;
    }
    DurableFile::createFolder(supportDirectory);
    // Before the lease: where machines are in conflict nothing is written.
    ConflictCopies::rejectCloudConflictCopies(databaseURL(), localStateDirectory, clock.now());
    // Held here until the last step has passed: a failure closes the connection
    // and then gives up the lease.
    auto lease = std::make_unique<QuireLibraryLease>(supportDirectory, clock);
    lease->acquire();
    const LineageSurroundings surroundings{databaseURL(), cloudLineageStore, localStateDirectory, clock.now()};
    CloudLineage::requireRememberedFile(surroundings);
    if (importLegacyBooksOnFirstLaunch && !QFileInfo::exists(databaseURL())) {
        LegacyImport::runIfAvailable(
            AppDirectories::legacyBooksSupportDirectory(), supportDirectory, databaseURL(), clock.now());
    }
    auto opened = LibraryOpening::openPrepared(databaseURL(), supportDirectory, localStateDirectory);
    CloudLineage::validateCloudLineage(*opened, surroundings);
    LibraryOpening::migrateCredentials(*opened, credentialStore);
    if (recoveringFromCrash) {
        LibraryOpening::recoverFromCrash(*opened);
    }
    StaleFiles::cleanStaleTemporaryFiles(*opened, supportDirectory);
    CloudLineage::remember(*opened, surroundings);
    database = std::move(opened);
    libraryLease = std::move(lease);
}

void LibraryStore::State::rememberLineage()
{
    try {
        CloudLineage::remember(*database, {databaseURL(), cloudLineageStore, localStateDirectory, clock.now()});
    } catch (const Failure &) {
        // The next opening compares with the older one.
    }
}

void LibraryStore::State::close()
{
    if (database) {
        rememberLineage();
    }
    database.reset();
    covers.clear();
    libraryLease.reset();
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
    return m_executor.submit([state = m_state.get(), recoveringFromCrash] { state->open(recoveringFromCrash); });
}

QFuture<void> LibraryStore::shutdown()
{
    return m_executor.submit([state = m_state.get()] { state->close(); });
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
