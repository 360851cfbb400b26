#include "persistence/MigrationSteps.h"

#include "persistence/database/SQLiteDatabase.h"

namespace quire::MigrationSteps {

namespace {

// The names come from the table below and never from input: nothing to quote.
void addColumnIfMissing(const char *column, const char *definition, const char *table, SQLiteDatabase &database)
{
    const QByteArray tableInfo = QByteArray("PRAGMA table_info(") + table + ")";
    for (const SQLiteRow &row : database.query(tableInfo)) {
        if (row.string(QStringLiteral("name"), {}) == QLatin1String(column)) {
            return;
        }
    }
    database.executeScript(QByteArray("ALTER TABLE ") + table + " ADD COLUMN " + column + " " + definition);
}

// SQLite has no hash function: the seed holds the hex of the value itself.
void seedProvenance(SQLiteDatabase &database)
{
    struct Seed
    {
        const char *kind;
        const char *field;
        const char *source;
        const char *value;
        const char *table;
    };
    static constexpr Seed seeds[] = {
        {"book", "title",
            "CASE WHEN goodreads_id LIKE 'manual:%' OR goodreads_id LIKE 'openlibrary:%' "
            "THEN 'quire' ELSE 'goodreads' END",
            "title", "goodreads_books"},
        {"book", "user_rating", "'quire'", "COALESCE(user_rating, 0)", "goodreads_books"},
        {"book", "notes", "'quire'", "COALESCE(notes, '')", "goodreads_books"},
        {"audiobook", "title", "CASE WHEN asin LIKE 'manual:%' THEN 'quire' ELSE 'audible' END", "COALESCE(title, '')",
            "audible_books"},
        {"audiobook", "user_rating", "'quire'", "COALESCE(user_rating, 0)", "audible_books"},
        {"audiobook", "notes", "'quire'", "COALESCE(notes, '')", "audible_books"},
    };
    for (const Seed &seed : seeds) {
        const QByteArray sql = QByteArray("INSERT OR IGNORE INTO field_provenance (entity_kind, entity_id, field_name, "
                                          "source, first_seen_at, last_seen_at, last_value_hash, applied) SELECT '")
            + seed.kind + "', id, '" + seed.field + "', " + seed.source
            + ", datetime('now'), datetime('now'), lower(hex(CAST(" + seed.value + " AS BLOB))), 1 FROM " + seed.table;
        database.executeScript(sql);
    }
}

// Every change of a book, an audiobook or a tag moves the library's generation
// on, in the same transaction.
void createLineageTriggers(SQLiteDatabase &database)
{
    struct Trigger
    {
        const char *name;
        const char *event;
        const char *table;
    };
    static constexpr Trigger triggers[] = {
        {"books_insert", "INSERT", "goodreads_books"},
        {"books_update", "UPDATE", "goodreads_books"},
        {"books_delete", "DELETE", "goodreads_books"},
        {"audio_insert", "INSERT", "audible_books"},
        {"audio_update", "UPDATE", "audible_books"},
        {"audio_delete", "DELETE", "audible_books"},
        {"tags_insert", "INSERT", "book_tags"},
        {"tags_delete", "DELETE", "book_tags"},
    };
    for (const Trigger &trigger : triggers) {
        const QByteArray sql = QByteArray("CREATE TRIGGER IF NOT EXISTS quire_generation_") + trigger.name + " AFTER "
            + trigger.event + " ON " + trigger.table + R"sql(
            BEGIN
                UPDATE library_metadata
                   SET parent_token = lineage_token,
                       lineage_token = lower(hex(randomblob(16))),
                       generation = generation + 1,
                       updated_at = datetime('now')
                 WHERE singleton = 1;
            END
        )sql";
        database.executeScript(sql);
    }
}

} // namespace

void toVersion1(SQLiteDatabase &database)
{
    database.executeScript(R"sql(
        CREATE TABLE IF NOT EXISTS schema_migrations (
            version INTEGER PRIMARY KEY,
            applied_at TEXT NOT NULL
        );
    )sql");

    struct Addition
    {
        const char *table;
        const char *column;
        const char *definition;
    };
    static constexpr Addition additions[] = {
        {"goodreads_books", "cover_data", "BLOB"},
        {"goodreads_books", "cover_data_source", "TEXT"},
        {"goodreads_books", "hidden", "INTEGER DEFAULT 0"},
        {"audible_books", "cover_data", "BLOB"},
        {"audible_books", "cover_data_source", "TEXT"},
        {"audible_books", "runtime_minutes", "INTEGER"},
        {"audible_books", "release_date", "TEXT"},
        {"audible_books", "purchase_date", "TEXT"},
        {"audible_books", "average_rating", "REAL"},
        {"audible_books", "performance_rating", "REAL"},
        {"audible_books", "story_rating", "REAL"},
        {"audible_books", "review_count", "INTEGER"},
        {"audible_books", "listening_progress", "REAL"},
        {"audible_books", "audible_owned", "INTEGER DEFAULT 0"},
        {"audible_books", "last_audible_sync", "TEXT"},
    };
    for (const Addition &addition : additions) {
        addColumnIfMissing(addition.column, addition.definition, addition.table, database);
    }
}

void toVersion2(SQLiteDatabase &database)
{
    database.executeScript(R"sql(
        CREATE TABLE IF NOT EXISTS schema_migrations (
            version INTEGER PRIMARY KEY,
            applied_at TEXT NOT NULL
        );

        CREATE TABLE IF NOT EXISTS library_metadata (
            singleton INTEGER PRIMARY KEY CHECK (singleton = 1),
            library_uuid TEXT NOT NULL,
            generation INTEGER NOT NULL DEFAULT 0,
            lineage_token TEXT NOT NULL,
            parent_token TEXT,
            updated_at TEXT NOT NULL
        );
        INSERT OR IGNORE INTO library_metadata
            (singleton, library_uuid, generation, lineage_token, parent_token, updated_at)
        VALUES (1, lower(hex(randomblob(16))), 0, lower(hex(randomblob(16))), NULL, datetime('now'));

        CREATE TABLE IF NOT EXISTS field_provenance (
            entity_kind TEXT NOT NULL,
            entity_id INTEGER NOT NULL,
            field_name TEXT NOT NULL,
            source TEXT NOT NULL,
            first_seen_at TEXT NOT NULL,
            last_seen_at TEXT NOT NULL,
            last_value_hash TEXT NOT NULL,
            applied INTEGER NOT NULL DEFAULT 0,
            PRIMARY KEY (entity_kind, entity_id, field_name, source)
        );

        CREATE TABLE IF NOT EXISTS background_job_history (
            id INTEGER PRIMARY KEY AUTOINCREMENT,
            job_kind TEXT NOT NULL,
            state TEXT NOT NULL,
            attempt INTEGER NOT NULL,
            message TEXT,
            recorded_at TEXT NOT NULL DEFAULT (datetime('now'))
        );
        CREATE INDEX IF NOT EXISTS idx_background_job_history_kind
            ON background_job_history(job_kind, recorded_at DESC);

        CREATE TABLE IF NOT EXISTS backup_verifications (
            backup_path TEXT PRIMARY KEY,
            manifest_path TEXT NOT NULL,
            database_sha256 TEXT NOT NULL,
            verified_at TEXT NOT NULL,
            schema_version INTEGER NOT NULL,
            book_count INTEGER NOT NULL,
            audiobook_count INTEGER NOT NULL
        );
    )sql");
    seedProvenance(database);
    createLineageTriggers(database);
}

} // namespace quire::MigrationSteps
