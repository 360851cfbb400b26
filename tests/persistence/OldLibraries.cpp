#include "OldLibraries.h"

#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/SQLiteStatement.h"
#include "persistence/database/Transaction.h"

namespace quire::testing::OldLibraries {

void createVersion0(const QString &path, int extraBooks)
{
    SQLiteDatabase database(path);
    database.executeScript(R"sql(
        CREATE TABLE settings (key TEXT PRIMARY KEY, value TEXT);
        CREATE TABLE goodreads_books (
            id INTEGER PRIMARY KEY AUTOINCREMENT, goodreads_id TEXT UNIQUE NOT NULL, title TEXT NOT NULL,
            author TEXT, isbn TEXT, shelf TEXT, user_rating REAL DEFAULT 0, average_rating REAL, num_pages INTEGER,
            description TEXT, goodreads_url TEXT, published_year INTEGER, cover_url TEXT, goodreads_image_url TEXT,
            read_at TEXT, date_added TEXT, date_synced TEXT DEFAULT (datetime('now')),
            date_modified TEXT DEFAULT (datetime('now')), notes TEXT
        );
        CREATE TABLE book_tags (
            id INTEGER PRIMARY KEY AUTOINCREMENT, book_id INTEGER NOT NULL, tag TEXT NOT NULL,
            created_at TEXT DEFAULT (datetime('now')),
            FOREIGN KEY (book_id) REFERENCES goodreads_books(id) ON DELETE CASCADE, UNIQUE(book_id, tag)
        );
        CREATE TABLE audible_books (
            id INTEGER PRIMARY KEY AUTOINCREMENT, asin TEXT UNIQUE NOT NULL, title TEXT, author TEXT, narrator TEXT,
            series TEXT, book_number INTEGER, cover_url TEXT, audible_url TEXT, date_added TEXT,
            date_synced TEXT DEFAULT (datetime('now')), notes TEXT, user_rating REAL, finished_at TEXT,
            description TEXT, status TEXT DEFAULT 'read'
        );
        INSERT INTO settings VALUES ('goodreadsUserID', '42');
        INSERT INTO goodreads_books (goodreads_id, title, author, shelf, user_rating, notes)
            VALUES ('1001', 'The Lighthouse', 'A. Writer', 'read', 4.5, 'Kept by the sea');
        INSERT INTO book_tags (book_id, tag) VALUES (1, 'sea');
        INSERT INTO audible_books (asin, title, user_rating, notes) VALUES ('B000000001', 'The Tide', 3, 'Heard twice');
    )sql");
    inTransaction(database, [&] {
        SQLiteStatement book(database, "INSERT INTO goodreads_books (goodreads_id, title) VALUES (?, ?)");
        for (int i = 0; i < extraBooks; ++i) {
            book.run({QStringLiteral("extra-%1").arg(i), QStringLiteral("Volume %1").arg(i)});
        }
    });
}

void createVersion1(const QString &path)
{
    createVersion0(path);
    SQLiteDatabase(path).executeScript(R"sql(
        CREATE TABLE schema_migrations (version INTEGER PRIMARY KEY, applied_at TEXT NOT NULL);
        INSERT INTO schema_migrations VALUES (1, '2026-01-02 03:04:05');
        ALTER TABLE goodreads_books ADD COLUMN cover_data BLOB;
        ALTER TABLE goodreads_books ADD COLUMN cover_data_source TEXT;
        ALTER TABLE goodreads_books ADD COLUMN hidden INTEGER DEFAULT 0;
        ALTER TABLE audible_books ADD COLUMN cover_data BLOB;
        ALTER TABLE audible_books ADD COLUMN cover_data_source TEXT;
        ALTER TABLE audible_books ADD COLUMN runtime_minutes INTEGER;
        ALTER TABLE audible_books ADD COLUMN release_date TEXT;
        ALTER TABLE audible_books ADD COLUMN purchase_date TEXT;
        ALTER TABLE audible_books ADD COLUMN average_rating REAL;
        ALTER TABLE audible_books ADD COLUMN performance_rating REAL;
        ALTER TABLE audible_books ADD COLUMN story_rating REAL;
        ALTER TABLE audible_books ADD COLUMN review_count INTEGER;
        ALTER TABLE audible_books ADD COLUMN listening_progress REAL;
        ALTER TABLE audible_books ADD COLUMN audible_owned INTEGER DEFAULT 0;
        ALTER TABLE audible_books ADD COLUMN last_audible_sync TEXT;
        PRAGMA user_version = 1;
    )sql");
}

} // namespace quire::testing::OldLibraries
