#include "persistence/SettingsRows.h"

#include "persistence/database/SQLiteDatabase.h"
#include "persistence/QuireCredentialStore.h"

namespace quire::SettingsRows {

std::optional<QString> value(
    const SQLiteDatabase &database, const QuireCredentialStore &credentials, const QString &key)
{
    if (QuireCredentialStore::protectedKeys().contains(key)) {
        const auto secrets = credentials.load();
        const auto found = secrets.constFind(key);
        return found == secrets.cend() ? std::nullopt : std::optional(*found);
    }
    const auto stored = database.scalar("SELECT value FROM settings WHERE key = ?", {key});
    return stored ? std::optional(stored->string({})) : std::nullopt;
}

void set(SQLiteDatabase &database, const QuireCredentialStore &credentials, const QString &key, const QString &value)
{
    if (QuireCredentialStore::protectedKeys().contains(key)) {
        credentials.set(value, key);
        database.execute("DELETE FROM settings WHERE key = ?", {key});
        return;
    }
    database.execute("INSERT OR REPLACE INTO settings (key, value) VALUES (?, ?)", {key, value});
}

} // namespace quire::SettingsRows
