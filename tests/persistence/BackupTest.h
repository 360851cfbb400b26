// An open library with a few titles, and what is looked at around its backups.
//
// Thread: the test's.

#pragma once

#include "reliability/QuireBackupManifest.h"
#include "testing/Await.h"
#include "testing/TestFiles.h"
#include "testing/TestLibrary.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <gmock/gmock.h>

namespace quire::testing {

class BackupTest : public ::testing::Test
{
protected:
    BackupTest()
    {
        for (int i = 1; i <= 3; ++i) {
            library.execute(
                "INSERT INTO goodreads_books (goodreads_id, title, author, shelf) VALUES (?, ?, '', 'read')",
                {QString::number(i), QStringLiteral("Title %1").arg(i)});
        }
        library.execute("INSERT INTO audible_books (asin, title) VALUES ('B1', 'Heard')");
    }

    QString backUp(const std::optional<QString> &to = std::nullopt)
    {
        return await(library.store().backUpDatabase(to));
    }
    std::optional<QString> backUpIfDue() { return await(library.store().backUpDatabaseIfDue()); }

    // Where backups go unless it is told otherwise.
    QString folder() const { return library.file(QStringLiteral("Database Backups")); }

    void set(const QString &key, const QString &value)
    {
        library.execute("INSERT OR REPLACE INTO settings (key, value) VALUES (?, ?)", {key, value});
    }
    std::optional<QString> setting(const QString &key) const
    {
        return library.scalar("SELECT value FROM settings WHERE key = ?", {key}).optionalString();
    }

    TestLibrary library;
};

// The reader's home folder, for the length of a scope.
class HomeFolder
{
public:
    explicit HomeFolder(const QString &path)
        : m_before(qgetenv("HOME"))
    {
        qputenv("HOME", QFile::encodeName(path));
    }
    ~HomeFolder() { qputenv("HOME", m_before); }
    HomeFolder(const HomeFolder &) = delete;
    HomeFolder &operator=(const HomeFolder &) = delete;

private:
    QByteArray m_before;
};

} // namespace quire::testing
