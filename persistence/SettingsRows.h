// The settings table together with the credential file, as one set of keys: a
// protected key lives in the file and never in the table.
//
// Thread: the store's executor.

#pragma once

#include <QMap>
#include <QString>

#include <optional>

namespace quire {

class QuireCredentialStore;
class SQLiteDatabase;

namespace SettingsRows {

// Every stored setting by key, and over them the secrets of the credential file;
// one that cannot be read adds nothing. Throws DatabaseError.
QMap<QString, QString> all(const SQLiteDatabase &database, const QuireCredentialStore &credentials);

// Nothing for a key that is not stored. A protected key is looked up in the
// file alone, whatever row of an older version may still be there.
// Throws DatabaseError.
std::optional<QString> value(
    const SQLiteDatabase &database, const QuireCredentialStore &credentials, const QString &key);

// Writes a protected key to the file first, so that a failure there leaves its
// row in place. Throws FileError or DatabaseError.
void set(SQLiteDatabase &database, const QuireCredentialStore &credentials, const QString &key, const QString &value);

} // namespace SettingsRows

} // namespace quire
