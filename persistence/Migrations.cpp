#include "persistence/Migrations.h"

#include "files/DurableFile.h"
#include "persistence/AppLog.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/Transaction.h"
#include "persistence/MigrationSteps.h"
#include "records/UUIDText.h"
#include "reliability/QuireFailureInjector.h"

#include <QFile>

namespace quire::Migrations {

namespace {

qint64 schemaVersion(const SQLiteDatabase &database)
{
    const auto version = database.scalar("PRAGMA user_version");
    return version ? version->intValue().value_or(0) : 0;
}

void requireKnown(qint64 version)
{
    if (version > currentVersion) {
        throw DatabaseError(DatabaseError::Kind::Open,
            QStringLiteral("This library was created by a newer version of Quire (schema %1).").arg(version));
    }
}

// A copy of the library as it is now, opened again and checked; its path.
QString createRecoveryCopy(const SQLiteDatabase &database, qint64 targetVersion, const QString &localStateDirectory)
{
    const QString folder = localStateDirectory + QStringLiteral("/Recovery/Schema Migrations");
    DurableFile::createFolder(folder);
    QString copy = QStringLiteral("%1/Quire Before Schema %2 %3.db")
                       .arg(folder, QString::number(targetVersion), UUIDText::fresh());
    try {
        SQLiteDatabase::backUp(database.url(), copy);
        if (!SQLiteDatabase(copy).integrityCheck()) {
            throw DatabaseError(
                DatabaseError::Kind::Backup, QStringLiteral("The pre-migration recovery copy failed verification."));
        }
    } catch (const DatabaseError &) {
        QFile::remove(copy); // nobody may recover from it, and every further start would leave another
        throw;
    }
    return copy;
}

void runStep(SQLiteDatabase &database, qint64 target)
{
    switch (target) {
    case 1:
        MigrationSteps::toVersion1(database);
        break;
    case 2:
        MigrationSteps::toVersion2(database);
        break;
    default:
        throw DatabaseError(
            DatabaseError::Kind::Open, QStringLiteral("No migration exists for schema version %1.").arg(target));
    }
    database.execute(
        "INSERT OR REPLACE INTO schema_migrations (version, applied_at) VALUES (?, datetime('now'))", {target});
    database.executeScript("PRAGMA user_version = " + QByteArray::number(target));
    QuireFailureInjector::checkpoint(u"migration-before-commit");
    if (!database.integrityCheck()) {
        throw DatabaseError(
            DatabaseError::Kind::Open, QStringLiteral("Schema migration %1 failed its integrity check.").arg(target));
    }
}

} // namespace

void refuseNewerSchema(SQLiteDatabase &database)
{
    qint64 version = 0;
    try {
        version = schemaVersion(database);
    } catch (const DatabaseError &) {
        return;
    }
    requireKnown(version);
}

void migrate(SQLiteDatabase &database, const QString &localStateDirectory)
{
    const qint64 version = schemaVersion(database);
    requireKnown(version);
    for (qint64 target = version + 1; target <= currentVersion; ++target) {
        const QString copy = createRecoveryCopy(database, target, localStateDirectory);
        try {
            inTransaction(database, [&] { runStep(database, target); });
        } catch (const std::exception &error) {
            AppLog::write(QStringLiteral("Schema migration %1 rolled back. Recovery copy: %2. Error: %3")
                              .arg(QString::number(target), copy, describe(error)));
            throw;
        }
    }
}

} // namespace quire::Migrations
