#include "persistence/LibraryOpening.h"

#include "files/FolderPath.h"
#include "persistence/AppDirectories.h"
#include "persistence/BaseSchema.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/Transaction.h"
#include "persistence/JobHistory.h"
#include "persistence/Migrations.h"
#include "persistence/QuireCredentialStore.h"

namespace quire::LibraryOpening {

namespace {

bool isDefaultFolder(const QString &folder)
{
    return FolderPath::resolvingLinks(folder) == FolderPath::resolvingLinks(AppDirectories::supportDirectory());
}

void setJournalMode(SQLiteDatabase &database, const QString &folder)
{
    if (isDefaultFolder(folder)) {
        database.executeScript("PRAGMA journal_mode = WAL;\n"
                               "PRAGMA foreign_keys = ON;\n"
                               "PRAGMA synchronous = NORMAL;\n"
                               "PRAGMA busy_timeout = 5000;");
    } else {
        database.executeScript("PRAGMA journal_mode = DELETE;\n"
                               "PRAGMA foreign_keys = ON;\n"
                               "PRAGMA synchronous = FULL;\n"
                               "PRAGMA busy_timeout = 5000;");
        database.syncFolderAfterCommits();
        database.confirmCommit(); // of the migrations
    }
}

} // namespace

std::unique_ptr<SQLiteDatabase> openPrepared(
    const QString &url, const QString &folder, const QString &localStateDirectory)
{
    auto database = std::make_unique<SQLiteDatabase>(url);
    database->setFoldsLogOnClose(false);
    // Before the base schema, which would write into a file that a newer
    // version has rearranged.
    Migrations::refuseNewerSchema(*database);
    BaseSchema::create(*database);
    Migrations::migrate(*database, localStateDirectory);
    setJournalMode(*database, folder);
    database->setFoldsLogOnClose(true);
    return database;
}

void migrateCredentials(SQLiteDatabase &database, const QuireCredentialStore &credentials)
{
    QMap<QString, QString> rows;
    for (const QString &key : QuireCredentialStore::protectedKeys()) {
        if (const auto value = database.scalar("SELECT value FROM settings WHERE key = ?", {key})) {
            rows.insert(key, value->string({}));
        }
    }
    const QStringList takenOver = credentials.migrate(rows);
    if (takenOver.isEmpty()) {
        return;
    }
    inTransaction(database, [&] {
        for (const QString &key : takenOver) {
            database.execute("DELETE FROM settings WHERE key = ?", {key});
        }
    });
}

void recoverFromCrash(SQLiteDatabase &database)
{
    if (!database.integrityCheck()) {
        throw DatabaseError(
            DatabaseError::Kind::Open, QStringLiteral("The library failed its post-crash integrity check."));
    }
    JobHistory::markInterruptedJobs(database);
    JobHistory::record(database,
        {.job = QuireBackgroundJob::Maintenance,
            .state = QStringLiteral("succeeded"),
            .attempt = 1,
            .message = QStringLiteral("Post-crash recovery checks completed")});
}

} // namespace quire::LibraryOpening
