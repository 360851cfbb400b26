// The open library as those see it who copy, compare and note things in it:
// its connection and settings, its folder, and the time. Held for the length of
// one operation.
//
// Thread: the store's executor.

#pragma once

#include <QString>

#include <optional>

namespace quire {

class Clock;
class QuireCredentialStore;
class SQLiteDatabase;

struct LiveLibrary
{
    SQLiteDatabase &database; // open
    const QuireCredentialStore &credentials;
    QString folder; // absolute path of the library's folder
    const Clock &clock;

    // Nothing for a key that is not stored. Throws DatabaseError.
    std::optional<QString> setting(const QString &key) const;

    // Nothing when the setting is no whole number. Throws DatabaseError.
    std::optional<qint64> integerSetting(const QString &key) const;

    // Throws FileError or DatabaseError.
    void setSetting(const QString &key, const QString &value) const;
};

} // namespace quire
