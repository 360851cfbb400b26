#include "persistence/GoodreadsMerge.h"

#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/SQLiteStatement.h"
#include "reliability/QuireFailureInjector.h"
#include "reliability/QuireReliabilityError.h"

namespace quire::GoodreadsMerge {

namespace {

// Proves that the batch fits the database's own rules before a row of the
// library is touched; nothing reads the table afterwards.
void stageGoodreadsBooks(SQLiteDatabase &database, const QList<GoodreadsFeedBook> &batch)
{
    database.executeScript(R"sql(
        DROP TABLE IF EXISTS temp.quire_goodreads_stage;
        CREATE TEMP TABLE quire_goodreads_stage (
          goodreads_id TEXT PRIMARY KEY,
          title TEXT NOT NULL,
          shelf TEXT NOT NULL
        );
    )sql");
    SQLiteStatement insert(database, "INSERT INTO quire_goodreads_stage (goodreads_id, title, shelf) VALUES (?, ?, ?)");
    for (const GoodreadsFeedBook &book : batch) {
        insert.run({book.goodreadsID, book.title, book.shelf});
    }
    const auto count = database.scalar("SELECT COUNT(*) FROM quire_goodreads_stage");
    if (!count || count->intValue() != batch.size()) {
        throw QuireReliabilityError::invalidImport(QStringLiteral("the staged Goodreads record count did not match"));
    }
}

constexpr auto upsertSql = R"sql(
    INSERT INTO goodreads_books (
      goodreads_id, title, author, isbn, shelf, user_rating, average_rating,
      num_pages, description, goodreads_url, published_year, cover_url,
      goodreads_image_url, read_at, date_added, date_synced
    )
    VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, datetime('now'))
    ON CONFLICT(goodreads_id) DO UPDATE SET
      title = CASE
        WHEN trim(COALESCE(goodreads_books.title, '')) = '' THEN excluded.title
        ELSE goodreads_books.title
      END,
      author = CASE
        WHEN trim(COALESCE(goodreads_books.author, '')) = '' THEN excluded.author
        ELSE goodreads_books.author
      END,
      isbn = COALESCE(NULLIF(goodreads_books.isbn, ''), excluded.isbn),
      shelf = CASE
        WHEN goodreads_books.shelf IN ('read', 'did-not-finish') THEN goodreads_books.shelf
        WHEN excluded.shelf IN ('read', 'did-not-finish') THEN excluded.shelf
        WHEN goodreads_books.shelf = 'currently-reading' AND excluded.shelf = 'to-read' THEN goodreads_books.shelf
        ELSE excluded.shelf
      END,
      user_rating = CASE
        WHEN COALESCE(goodreads_books.user_rating, 0) > 0 THEN goodreads_books.user_rating
        ELSE excluded.user_rating
      END,
      average_rating = COALESCE(goodreads_books.average_rating, excluded.average_rating),
      num_pages = COALESCE(goodreads_books.num_pages, excluded.num_pages),
      description = COALESCE(NULLIF(goodreads_books.description, ''), excluded.description),
      goodreads_url = COALESCE(NULLIF(goodreads_books.goodreads_url, ''), excluded.goodreads_url),
      published_year = COALESCE(goodreads_books.published_year, excluded.published_year),
      cover_url = COALESCE(NULLIF(goodreads_books.cover_url, ''), excluded.cover_url),
      goodreads_image_url = COALESCE(NULLIF(goodreads_books.goodreads_image_url, ''), excluded.goodreads_image_url),
      read_at = COALESCE(NULLIF(goodreads_books.read_at, ''), excluded.read_at),
      date_added = COALESCE(NULLIF(goodreads_books.date_added, ''), excluded.date_added),
      date_synced = datetime('now'),
      date_modified = datetime('now')
)sql";

} // namespace

FieldValues fieldValues(const GoodreadsFeedBook &book)
{
    FieldValues fields;
    fields.set(QStringLiteral("author"), book.author);
    fields.set(QStringLiteral("average_rating"), book.averageRating);
    fields.set(QStringLiteral("cover_url"), book.coverURL);
    fields.set(QStringLiteral("description"), book.summary);
    fields.set(QStringLiteral("goodreads_id"), book.goodreadsID);
    fields.set(QStringLiteral("goodreads_url"), book.goodreadsURL);
    fields.set(QStringLiteral("isbn"), book.isbn);
    fields.set(QStringLiteral("num_pages"), book.numberOfPages);
    fields.set(QStringLiteral("published_year"), book.publishedYear);
    fields.set(QStringLiteral("read_at"), book.readAt);
    fields.set(QStringLiteral("shelf"), book.shelf);
    fields.set(QStringLiteral("title"), book.title);
    fields.set(QStringLiteral("user_rating"), book.userRating);
    return fields;
}

void upsert(SQLiteDatabase &database, const QList<GoodreadsFeedBook> &batch)
{
    stageGoodreadsBooks(database, batch);
    QuireFailureInjector::checkpoint(u"goodreads-after-staging");

    SQLiteStatement select(database, "SELECT id FROM goodreads_books WHERE goodreads_id = ?");
    SQLiteStatement insertOrFill(database, upsertSql);
    SQLiteStatement newId(database, "SELECT last_insert_rowid()");
    ProvenanceWriter provenance(database, EntityKind::Book, Source::Goodreads);
    for (const GoodreadsFeedBook &book : batch) {
        const std::optional<qint64> existing = select.firstInteger({book.goodreadsID});
        insertOrFill.run({
            book.goodreadsID,
            book.title,
            book.author,
            book.isbn,
            book.shelf,
            book.userRating,
            book.averageRating,
            book.numberOfPages,
            book.summary,
            textOf(book.goodreadsURL),
            book.publishedYear,
            textOf(book.coverURL),
            textOf(book.goodreadsImageURL),
            book.readAt,
            book.dateAdded,
        });
        const qint64 id = existing ? *existing : newId.firstInteger().value_or(0);
        // The flag says that the row was born from this source, so a gap that
        // was just filled does not raise it.
        provenance.record(id, fieldValues(book), !existing);
    }
    database.executeScript("DROP TABLE IF EXISTS temp.quire_goodreads_stage");
}

} // namespace quire::GoodreadsMerge
