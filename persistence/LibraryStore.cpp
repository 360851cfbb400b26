#include "persistence/LibraryStore.h"

#include "persistence/AppDirectories.h"
#include "persistence/LibraryStoreState.h"

#include <QDir>

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

LibraryStore::LibraryStore(const Clock &clock, const std::optional<QString> &folder)
    : m_state(std::make_unique<State>(
        clock, folder ? QDir::cleanPath(QDir(*folder).absolutePath()) : AppDirectories::supportDirectory()))
    , m_executor(QStringLiteral("library-store"))
{
}

LibraryStore::~LibraryStore() = default;

QFuture<QString> LibraryStore::databaseURL()
{
    return m_executor.submit([state = m_state.get()] { return state->databaseURL(); });
}

} // namespace quire
