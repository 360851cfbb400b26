#include "persistence/SettingsRows.h"

#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/SQLiteStatement.h"
#include "persistence/QuireCredentialStore.h"

namespace quire::SettingsRows {

QMap<QString, QString> all(const SQLiteDatabase &database, const QuireCredentialStore &credentials)
{
    QMap<QString, QString> settings;
    SQLiteStatement row(database, "SELECT key, value FROM settings");
    while (row.step()) {
        settings.insert(row.string(0, {}), row.string(1, {}));
    }
    const auto secrets = credentials.load();
    for (auto secret = secrets.cbegin(); secret != secrets.cend(); ++secret) {
        if (QuireCredentialStore::protectedKeys().contains(secret.key())) {
            settings.insert(secret.key(), secret.value());
        }
    }
    return settings;
}

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
