#include "persistence/LibraryStore.h"

#include "persistence/LibraryStoreState.h"
#include "persistence/SettingsRows.h"

namespace quire {

QFuture<std::optional<QString>> LibraryStore::setting(const QString &key)
{
    return read([key](State &state) { return SettingsRows::value(*state.database, state.credentialStore, key); });
}

QFuture<void> LibraryStore::setSetting(const QString &key, const QString &value)
{
    return read([key, value](State &state) { SettingsRows::set(*state.database, state.credentialStore, key, value); });
}

QFuture<void> LibraryStore::setSettings(const SettingsMap &values)
{
    return write([values](State &state) {
        for (auto setting = values.cbegin(); setting != values.cend(); ++setting) {
            SettingsRows::set(*state.database, state.credentialStore, setting.key(), setting.value());
        }
    });
}

} // namespace quire
