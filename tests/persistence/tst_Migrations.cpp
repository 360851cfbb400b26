#include "persistence/database/DatabaseError.h"
#include "persistence/Migrations.h"

#include "OldLibraries.h"
#include "reliability/QuireFailureInjector.h"
#include "testing/Await.h"
#include "testing/ChildProcess.h"
#include "testing/TestFiles.h"
#include "testing/TestLibrary.h"
#include "testing/ThrownFailure.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <gmock/gmock.h>

#include <chrono>
#include <random>

#include <sqlite3.h>

using namespace quire;
using namespace quire::testing;
using Kind = DatabaseError::Kind;

namespace {

QStringList recoveryCopies(const TestLibrary &library)
{
    return QDir(library.file(QStringLiteral("Recovery/Schema Migrations"))).entryList(QDir::Files, QDir::Name);
}

// What must be the same in every library that came from the oldest fixture.
void expectReadersDataUntouched(const TestLibrary &library)
{
    EXPECT_EQ(library.scalar("SELECT user_rating FROM goodreads_books WHERE goodreads_id = '1001'"), SQLiteValue(4.5));
    EXPECT_EQ(library.scalar("SELECT notes FROM goodreads_books WHERE goodreads_id = '1001'"),
        SQLiteValue(QStringLiteral("Kept by the sea")));
    EXPECT_EQ(library.scalar("SELECT tag FROM book_tags"), SQLiteValue(QStringLiteral("sea")));
    EXPECT_EQ(library.scalar("SELECT notes FROM audible_books"), SQLiteValue(QStringLiteral("Heard twice")));
    EXPECT_EQ(library.scalar("SELECT value FROM settings"), SQLiteValue(QStringLiteral("42")));
}

} // namespace

TEST(Migrations, AFreshLibraryTakesBothStepsBehindTwoRecoveryCopies)
{
    const TestLibrary library;
    EXPECT_EQ(library.scalar("PRAGMA user_version"), SQLiteValue(2));
    EXPECT_EQ(
        library.scalar("SELECT group_concat(version) FROM schema_migrations"), SQLiteValue(QStringLiteral("1,2")));
    const QStringList copies = recoveryCopies(library);
    ASSERT_EQ(copies.size(), 2);
    const QString uuid = QStringLiteral("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}");
    for (int target = 1; target <= 2; ++target) {
        const QRegularExpression name(QStringLiteral("^Quire Before Schema %1 %2\\.db$").arg(target).arg(uuid));
        EXPECT_TRUE(name.match(copies[target - 1]).hasMatch()) << qPrintable(copies[target - 1]);
        const SQLiteDatabase copy(
            library.file(QStringLiteral("Recovery/Schema Migrations/") + copies[target - 1]), true);
        EXPECT_EQ(copy.scalar("PRAGMA user_version"), SQLiteValue(target - 1));
    }
}

TEST(Migrations, OpeningAgainMakesNoRecoveryCopy)
{
    TestLibrary library;
    library.close();
    library.open();
    EXPECT_EQ(recoveryCopies(library).size(), 2);
}

TEST(Migrations, TheOldestFileGainsItsColumnsAndKeepsItsRows)
{
    TestLibrary library(TestLibrary::Start::Closed);
    OldLibraries::createVersion0(library.databasePath());
    library.open();
    EXPECT_EQ(library.scalar("PRAGMA user_version"), SQLiteValue(2));
    expectReadersDataUntouched(library);

    TestLibrary fresh;
    for (const char *table : {"goodreads_books", "audible_books", "book_tags", "settings"}) {
        const QByteArray sql = QByteArray("SELECT name || ' ' || type || ' ' || ifnull(dflt_value, '') AS form "
                                          "FROM pragma_table_info('")
            + table + "') ORDER BY 1";
        EXPECT_EQ(library.query(sql), fresh.query(sql)) << table;
    }
    EXPECT_EQ(await(library.store().books()).first().title, QStringLiteral("The Lighthouse"));
    EXPECT_EQ(await(library.store().audiobooks()).first().title, QStringLiteral("The Tide"));
}

TEST(Migrations, AFileOfVersion1TakesTheSecondStepAlone)
{
    TestLibrary library(TestLibrary::Start::Closed);
    OldLibraries::createVersion1(library.databasePath());
    library.execute("INSERT INTO schema_migrations VALUES (2, 'never')"); // a line without its step is no obstacle
    library.open();
    EXPECT_EQ(library.scalar("PRAGMA user_version"), SQLiteValue(2));
    EXPECT_NE(library.scalar("SELECT applied_at FROM schema_migrations WHERE version = 2"),
        SQLiteValue(QStringLiteral("never")));
    EXPECT_EQ(library.scalar("SELECT applied_at FROM schema_migrations WHERE version = 1"),
        SQLiteValue(QStringLiteral("2026-01-02 03:04:05")));
    EXPECT_EQ(recoveryCopies(library).size(), 1);
    expectReadersDataUntouched(library);
}

TEST(Migrations, ProvenanceIsSeededWithTheHexOfEachValueAndItsSource)
{
    TestLibrary library(TestLibrary::Start::Closed);
    OldLibraries::createVersion0(library.databasePath());
    library.executeScript("INSERT INTO goodreads_books (goodreads_id, title) VALUES ('manual:1', 'M'),"
                          " ('openlibrary:1', 'O'); INSERT INTO audible_books (asin) VALUES ('manual:2');");
    library.open();
    const auto seeded = [&library](const char *kind, const char *field, int id) {
        const auto rows
            = library.query("SELECT source || ' ' || last_value_hash || ' ' || applied AS seed "
                            "FROM field_provenance WHERE entity_kind = ? AND field_name = ? AND entity_id = ?",
                {QString::fromLatin1(kind), QString::fromLatin1(field), id});
        return rows.size() == 1 ? rows[0].string(QStringLiteral("seed"), {}) : QStringLiteral("(no single row)");
    };
    EXPECT_EQ(seeded("book", "title", 1), QStringLiteral("goodreads 546865204c69676874686f757365 1"));
    EXPECT_EQ(seeded("book", "user_rating", 1), QStringLiteral("quire 342e35 1"));
    EXPECT_EQ(seeded("book", "notes", 1), QStringLiteral("quire 4b6570742062792074686520736561 1"));
    EXPECT_EQ(seeded("book", "title", 2), QStringLiteral("quire 4d 1"));
    EXPECT_EQ(seeded("book", "title", 3), QStringLiteral("quire 4f 1"));
    EXPECT_EQ(seeded("book", "notes", 3), QStringLiteral("quire  1"));
    EXPECT_EQ(seeded("audiobook", "title", 1), QStringLiteral("audible 5468652054696465 1"));
    EXPECT_EQ(seeded("audiobook", "title", 2), QStringLiteral("quire  1"));
    EXPECT_EQ(seeded("audiobook", "user_rating", 2), QStringLiteral("quire 30 1"));
    EXPECT_EQ(seeded("audiobook", "notes", 1), QStringLiteral("quire 4865617264207477696365 1"));
    EXPECT_EQ(library.scalar("SELECT count(*) FROM field_provenance"), SQLiteValue(15));
}

TEST(Migrations, TheSeedNeverOverridesALaterWrite)
{
    TestLibrary library(TestLibrary::Start::Closed);
    OldLibraries::createVersion1(library.databasePath());
    library.executeScript(
        "CREATE TABLE field_provenance (entity_kind TEXT NOT NULL, entity_id INTEGER NOT NULL,"
        " field_name TEXT NOT NULL, source TEXT NOT NULL, first_seen_at TEXT NOT NULL,"
        " last_seen_at TEXT NOT NULL, last_value_hash TEXT NOT NULL, applied INTEGER NOT NULL DEFAULT 0,"
        " PRIMARY KEY (entity_kind, entity_id, field_name, source));"
        "INSERT INTO field_provenance VALUES ('book', 1, 'notes', 'quire', 'a', 'b', 'later', 1);");
    library.open();
    EXPECT_EQ(library.scalar(
                  "SELECT last_value_hash FROM field_provenance WHERE field_name = 'notes' AND entity_kind = 'book'"),
        SQLiteValue(QStringLiteral("later")));
}

TEST(Migrations, EveryChangeOfATitleOrATagMovesTheGeneration)
{
    TestLibrary library;
    library.close();
    const auto lineage = [&library] {
        return library.query("SELECT library_uuid, generation, lineage_token, parent_token FROM library_metadata")
            .first();
    };
    const SQLiteRow fresh = lineage();
    const QRegularExpression token(QStringLiteral("^[0-9a-f]{32}$"));
    EXPECT_TRUE(token.match(fresh.string(QStringLiteral("library_uuid"), {})).hasMatch());
    EXPECT_TRUE(token.match(fresh.string(QStringLiteral("lineage_token"), {})).hasMatch());
    EXPECT_TRUE(fresh.value(QStringLiteral("parent_token")).isNull());

    qint64 generation = 0;
    QString parent = fresh.string(QStringLiteral("lineage_token"), {});
    for (const char *change : {"INSERT INTO goodreads_books (goodreads_id, title) VALUES ('1', 'One')",
             "INSERT INTO book_tags (book_id, tag) VALUES (1, 'a')", "UPDATE goodreads_books SET title = title",
             "DELETE FROM book_tags", "DELETE FROM goodreads_books", "INSERT INTO audible_books (asin) VALUES ('1')",
             "UPDATE audible_books SET title = 'One'", "DELETE FROM audible_books"}) {
        library.execute(change);
        const SQLiteRow now = lineage();
        EXPECT_EQ(now.intValue(QStringLiteral("generation")), ++generation) << change;
        EXPECT_EQ(now.string(QStringLiteral("parent_token"), {}), parent) << change;
        EXPECT_NE(now.string(QStringLiteral("lineage_token"), {}), parent) << change;
        parent = now.string(QStringLiteral("lineage_token"), {});
    }
    library.execute("INSERT INTO settings VALUES ('a', 'b')");
    EXPECT_EQ(lineage().intValue(QStringLiteral("generation")), generation);
    EXPECT_EQ(lineage().value(QStringLiteral("library_uuid")), fresh.value(QStringLiteral("library_uuid")));
}

TEST(Migrations, ANewerLibraryIsRefusedAndUnchangedByteForByte)
{
    TestLibrary library;
    library.close();
    library.executeScript("PRAGMA user_version = 3");
    const QByteArray before = bytesOf(library.databasePath());
    const auto failure = thrownBy<DatabaseError>([&] { library.open(); });
    EXPECT_EQ(failure,
        DatabaseError(Kind::Open, QStringLiteral("This library was created by a newer version of Quire (schema 3).")));
    EXPECT_EQ(bytesOf(library.databasePath()), before);
    EXPECT_EQ(recoveryCopies(library).size(), 2);
}

TEST(Migrations, NoStepIsTakenFromANewerVersion)
{
    const QTemporaryDir folder;
    SQLiteDatabase database(folder.filePath(QStringLiteral("quire.db")));
    database.executeScript("PRAGMA user_version = 3");
    EXPECT_EQ(thrownBy<DatabaseError>([&] { Migrations::migrate(database, folder.path()); }),
        DatabaseError(Kind::Open, QStringLiteral("This library was created by a newer version of Quire (schema 3).")));
}

TEST(Migrations, ANewerLibraryWithOtherTablesIsUnchangedToo)
{
    TestLibrary library(TestLibrary::Start::Closed);
    library.executeScript("CREATE TABLE works (id INTEGER PRIMARY KEY); PRAGMA user_version = 7;");
    const QByteArray before = bytesOf(library.databasePath());
    EXPECT_EQ(thrownBy<DatabaseError>([&] { library.open(); })->text(),
        QStringLiteral("This library was created by a newer version of Quire (schema 7)."));
    EXPECT_EQ(bytesOf(library.databasePath()), before);
}

TEST(Migrations, AFailedStepLeavesTheVersionBeforeAndALineInTheLog)
{
    TestLibrary library(TestLibrary::Start::Closed);
    const QString log = library.file(QStringLiteral("quire.log"));
    const QByteArray formerLog = qgetenv("QUIRE_LOG_PATH");
    qputenv("QUIRE_LOG_PATH", QFile::encodeName(log));
    OldLibraries::createVersion0(library.databasePath());
    // The second step finds this in the place of a table and cannot index it.
    library.executeScript("CREATE VIEW background_job_history AS SELECT 1 AS job_kind, 2 AS recorded_at");

    const auto failure = thrownBy<DatabaseError>([&] { library.open(); });
    EXPECT_EQ(failure->kind(), Kind::Execute);
    EXPECT_TRUE(eventually([&log] { return QFile::exists(log); }));
    qputenv("QUIRE_LOG_PATH", formerLog);

    EXPECT_EQ(library.scalar("PRAGMA user_version"), SQLiteValue(1));
    EXPECT_EQ(library.scalar("SELECT count(*) FROM sqlite_master WHERE name = 'library_metadata'"), SQLiteValue(0));
    expectReadersDataUntouched(library);
    const QStringList copies = recoveryCopies(library);
    ASSERT_EQ(copies.size(), 2);
    EXPECT_TRUE(QString::fromUtf8(bytesOf(log))
                    .endsWith(QStringLiteral("] Schema migration 2 rolled back. Recovery copy: %1. Error: %2\n")
                                  .arg(library.file(QStringLiteral("Recovery/Schema Migrations/") + copies[1]),
                                      failure->description())))
        << bytesOf(log).constData();
    EXPECT_EQ(thrownBy<DatabaseError>([&] { await(library.store().books()); })->kind(), Kind::MissingDatabase);
}

TEST(Migrations, ARecoveryCopyThatCannotBeMadeStopsBeforeAnythingChanges)
{
    TestLibrary library(TestLibrary::Start::Closed);
    OldLibraries::createVersion1(library.databasePath());
    QFile inTheWay(library.file(QStringLiteral("Recovery")));
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    EXPECT_ANY_THROW(library.open());
    EXPECT_EQ(library.scalar("PRAGMA user_version"), SQLiteValue(1));
}

TEST(Migrations, ADamagedFileIsNotMigrated)
{
    TestLibrary library(TestLibrary::Start::Closed);
    OldLibraries::createVersion1(library.databasePath());
    const qint64 page = library.scalar("SELECT rootpage FROM sqlite_master WHERE name = 'sqlite_autoindex_book_tags_1'")
                            .intValue()
                            .value();
    QFile damaged(library.databasePath());
    ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
    damaged.seek((page - 1) * 4096 + 3); // the number of cells: none, though the table has a row
    damaged.write(QByteArray("\x00\x00", 2));
    damaged.close();
    EXPECT_EQ(thrownBy<DatabaseError>([&] { library.open(); }),
        DatabaseError(Kind::Backup, QStringLiteral("The pre-migration recovery copy failed verification.")));
    EXPECT_EQ(library.scalar("PRAGMA user_version"), SQLiteValue(1));
    EXPECT_TRUE(recoveryCopies(library).isEmpty()) << "a copy that nobody may trust";
}

TEST(Migrations, AStepWhoseOutcomeFailsTheIntegrityCheckIsTakenBack)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("quire.db"));
    OldLibraries::createVersion1(path);
    SQLiteDatabase database(path);
    // The check of this connection gives no row; that of the recovery copy is its own.
    const auto withoutCheck = [](void *, int action, const char *pragma, const char *, const char *, const char *) {
        return action == SQLITE_PRAGMA && qstrcmp(pragma, "integrity_check") == 0 ? SQLITE_IGNORE : SQLITE_OK;
    };
    sqlite3_set_authorizer(database.handle(), withoutCheck, nullptr);
    EXPECT_EQ(thrownBy<DatabaseError>([&] { Migrations::migrate(database, folder.path()); }),
        DatabaseError(Kind::Open, QStringLiteral("Schema migration 2 failed its integrity check.")));
    EXPECT_EQ(database.scalar("PRAGMA user_version"), SQLiteValue(1));
    EXPECT_EQ(database.scalar("SELECT count(*) FROM sqlite_master WHERE name = 'library_metadata'"), SQLiteValue(0));
}

TEST(Migrations, AVersionBeforeAllVersionsHasNoStep)
{
    TestLibrary library(TestLibrary::Start::Closed);
    OldLibraries::createVersion1(library.databasePath());
    library.executeScript("PRAGMA user_version = -1");
    EXPECT_EQ(thrownBy<DatabaseError>([&] { library.open(); }),
        DatabaseError(Kind::Open, QStringLiteral("No migration exists for schema version 0.")));
    EXPECT_EQ(library.scalar("PRAGMA user_version"), SQLiteValue(-1));
    expectReadersDataUntouched(library);
}

TEST(Migrations, AProcessThatDiesBeforeTheCommitLeavesTheVersionBefore)
{
    for (const int version : {0, 1}) {
        TestLibrary library(TestLibrary::Start::Closed);
        if (version == 0) {
            OldLibraries::createVersion0(library.databasePath());
        } else {
            OldLibraries::createVersion1(library.databasePath());
        }
        ChildProcess process(QStringLiteral(QUIRE_OPEN_LIBRARY), {library.folder()},
            {{QStringLiteral("QUIRE_ENABLE_FAILURE_TESTS"), QStringLiteral("1")},
                {QStringLiteral("QUIRE_FAILURE_POINT"), QStringLiteral("migration-before-commit")}});
        ASSERT_TRUE(process.waitUntilEnded());
        EXPECT_EQ(process.exitStatus(), QuireFailureInjector::exitStatus);
        EXPECT_EQ(library.scalar("PRAGMA user_version"), SQLiteValue(version));
        expectReadersDataUntouched(library);

        library.open();
        EXPECT_EQ(library.scalar("PRAGMA user_version"), SQLiteValue(2));
        expectReadersDataUntouched(library);
    }
}

namespace {

// Opens what a killed process had open. Its lock may have no record yet; such a
// one is taken for abandoned when it is two seconds old.
void openAfterKill(TestLibrary &library)
{
    try {
        library.open();
    } catch (const DatabaseError &error) {
        if (error.kind() != DatabaseError::Kind::LibraryBusy) {
            throw;
        }
        // The lock is dated by the disk, which goes by another clock than the test.
        library.clock().advance(std::chrono::system_clock::now() - library.clock().now() + std::chrono::minutes(1));
        library.open();
    }
}

} // namespace

TEST(Migrations, AProcessKilledAtAnyMomentLeavesAVersionAndNothingBetween)
{
    std::mt19937 random(20'261'121);
    int interrupted = 0;
    for (int round = 0; round < 10; ++round) {
        TestLibrary library(TestLibrary::Start::Closed);
        OldLibraries::createVersion0(library.databasePath(), 5'000);
        ChildProcess process(QStringLiteral(QUIRE_OPEN_LIBRARY), {library.folder()});
        interrupted += process.waitUntilEnded(std::chrono::milliseconds(random() % 250)) ? 0 : 1;
        process.kill();
        ASSERT_TRUE(process.waitUntilEnded());

        const qint64 version = library.scalar("PRAGMA user_version").intValue().value();
        EXPECT_THAT(version, ::testing::AllOf(::testing::Ge(0), ::testing::Le(2)));
        const bool hasIdentity
            = library.scalar("SELECT count(*) FROM sqlite_master WHERE name = 'library_metadata'") == SQLiteValue(1);
        EXPECT_EQ(hasIdentity, version == 2);
        EXPECT_EQ(library.scalar("PRAGMA integrity_check"), SQLiteValue(QStringLiteral("ok")));
        openAfterKill(library);
        EXPECT_EQ(library.scalar("PRAGMA user_version"), SQLiteValue(2));
        EXPECT_EQ(library.scalar("SELECT count(*) FROM goodreads_books"), SQLiteValue(5'001));
        expectReadersDataUntouched(library);
    }
    EXPECT_GT(interrupted, 0) << "every process was through before it was killed";
}
