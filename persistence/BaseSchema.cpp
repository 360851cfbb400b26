#include "persistence/BaseSchema.h"

#include "persistence/database/SQLiteDatabase.h"

namespace quire::BaseSchema {

void create(SQLiteDatabase &database)
{
    database.executeScript(R"sql(
        CREATE TABLE IF NOT EXISTS settings (
            key TEXT PRIMARY KEY,
            value TEXT
        );
        CREATE TABLE IF NOT EXISTS goodreads_books (
            id INTEGER PRIMARY KEY AUTOINCREMENT,
            goodreads_id TEXT UNIQUE NOT NULL,
            title TEXT NOT NULL,
            author TEXT,
            isbn TEXT,
            shelf TEXT,
            user_rating REAL DEFAULT 0,
            average_rating REAL,
            num_pages INTEGER,
            description TEXT,
            goodreads_url TEXT,
            published_year INTEGER,
            cover_url TEXT,
            goodreads_image_url TEXT,
            cover_data BLOB,
            cover_data_source TEXT,
            read_at TEXT,
            date_added TEXT,
            date_synced TEXT DEFAULT (datetime('now')),
            date_modified TEXT DEFAULT (datetime('now')),
            notes TEXT,
            hidden INTEGER DEFAULT 0
        );
        CREATE TABLE IF NOT EXISTS book_tags (
            id INTEGER PRIMARY KEY AUTOINCREMENT,
            book_id INTEGER NOT NULL,
            tag TEXT NOT NULL,
            created_at TEXT DEFAULT (datetime('now')),
            FOREIGN KEY (book_id) REFERENCES goodreads_books(id) ON DELETE CASCADE,
            UNIQUE(book_id, tag)
        );
        CREATE TABLE IF NOT EXISTS audible_books (
            id INTEGER PRIMARY KEY AUTOINCREMENT,
            asin TEXT UNIQUE NOT NULL,
            title TEXT,
            author TEXT,
            narrator TEXT,
            series TEXT,
            book_number INTEGER,
            cover_url TEXT,
            cover_data BLOB,
            cover_data_source TEXT,
            audible_url TEXT,
            date_added TEXT,
            date_synced TEXT DEFAULT (datetime('now')),
            notes TEXT,
            user_rating REAL,
            finished_at TEXT,
            description TEXT,
            status TEXT DEFAULT 'read',
            runtime_minutes INTEGER,
            release_date TEXT,
            purchase_date TEXT,
            average_rating REAL,
            performance_rating REAL,
            story_rating REAL,
            review_count INTEGER,
            listening_progress REAL,
            audible_owned INTEGER DEFAULT 0,
            last_audible_sync TEXT
        );
        CREATE INDEX IF NOT EXISTS idx_book_tags_tag ON book_tags(tag);
        CREATE INDEX IF NOT EXISTS idx_book_tags_book ON book_tags(book_id);
        CREATE INDEX IF NOT EXISTS idx_audible_asin ON audible_books(asin);
    )sql");
}

} // namespace quire::BaseSchema
