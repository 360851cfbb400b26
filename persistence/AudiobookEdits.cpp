#include "persistence/AudiobookEdits.h"

#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/ManualIdentifier.h"
#include "persistence/Provenance.h"
#include "records/DateParser.h"

namespace quire::AudiobookEdits {

namespace {

constexpr auto insertOrFillSql = R"sql(
    INSERT INTO audible_books (
      asin, title, author, narrator, series, book_number, cover_url, audible_url,
      date_added, date_synced, user_rating, finished_at, description, status, notes,
      cover_data, cover_data_source
    )
    VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, datetime('now'), NULL, ?, ?, ?, '', ?, ?)
    ON CONFLICT(asin) DO UPDATE SET
      title = COALESCE(NULLIF(audible_books.title, ''), excluded.title),
      author = COALESCE(NULLIF(audible_books.author, ''), excluded.author),
      narrator = COALESCE(NULLIF(audible_books.narrator, ''), excluded.narrator),
      series = COALESCE(NULLIF(audible_books.series, ''), excluded.series),
      book_number = COALESCE(audible_books.book_number, excluded.book_number),
      cover_url = COALESCE(NULLIF(audible_books.cover_url, ''), excluded.cover_url),
      audible_url = COALESCE(NULLIF(audible_books.audible_url, ''), excluded.audible_url),
      date_synced = datetime('now'),
      finished_at = COALESCE(audible_books.finished_at, excluded.finished_at),
      description = COALESCE(NULLIF(audible_books.description, ''), excluded.description),
      status = CASE
        WHEN audible_books.status IN ('read', 'did-not-finish') THEN audible_books.status
        ELSE excluded.status
      END,
      cover_data = COALESCE(audible_books.cover_data, excluded.cover_data),
      cover_data_source = COALESCE(audible_books.cover_data_source, excluded.cover_data_source)
)sql";

} // namespace

void update(SQLiteDatabase &database, qint64 id, double rating, const QString &status, const QString &notes)
{
    FieldValues fields;
    fields.set(QStringLiteral("notes"), notes);
    fields.set(QStringLiteral("status"), status);
    fields.set(QStringLiteral("user_rating"), rating);

    database.execute(
        "UPDATE audible_books SET user_rating = ?, status = ?, notes = ? WHERE id = ?", {rating, status, notes, id});
    recordEdit(database, EntityKind::Audiobook, id, fields);
}

qint64 add(SQLiteDatabase &database, const AudibleCatalogBook &book, const QString &status,
    const std::optional<Url> &preferredCover, const std::optional<CoverBytes> &artwork, Instant now)
{
    const QString time = DateParser::iso8601(now);
    const bool isOfCatalog = !book.asin.isEmpty();
    const QString asin = isOfCatalog ? book.asin : newManualIdentifier();
    const std::optional<QString> coverURL = textOf(preferredCover ? preferredCover : book.coverURL);
    const std::optional<QString> finishedAt = status == u"read" ? std::optional(time) : std::nullopt;
    FieldValues fields;
    fields.set(QStringLiteral("asin"), asin);
    fields.set(QStringLiteral("author"), book.author);
    fields.set(QStringLiteral("book_number"), book.bookNumber);
    fields.set(QStringLiteral("cover_url"), coverURL);
    fields.set(QStringLiteral("description"), book.summary);
    fields.set(QStringLiteral("narrator"), book.narrator);
    fields.set(QStringLiteral("series"), book.series);
    fields.set(QStringLiteral("title"), book.title);

    database.execute(insertOrFillSql,
        {
            asin,
            book.title,
            book.author,
            book.narrator,
            book.series,
            book.bookNumber,
            coverURL,
            textOf(book.audibleURL),
            time,
            finishedAt,
            book.summary,
            status,
            bytesOf(artwork),
            artwork ? coverURL : std::nullopt,
        });
    // On a conflict there is no inserted row to ask for.
    const auto row = database.scalar("SELECT id FROM audible_books WHERE asin = ?", {asin});
    const std::optional<qint64> id = row ? row->intValue() : std::nullopt;
    if (!id) {
        throw DatabaseError(
            DatabaseError::Kind::Execute, QStringLiteral("The audiobook was saved without an identifier."));
    }
    ProvenanceWriter(database, EntityKind::Audiobook, isOfCatalog ? Source::Audible : Source::Quire)
        .record(*id, fields, true);
    return *id;
}

} // namespace quire::AudiobookEdits
