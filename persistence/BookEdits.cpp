#include "persistence/BookEdits.h"

#include "persistence/database/SQLiteDatabase.h"
#include "persistence/ManualIdentifier.h"
#include "persistence/Provenance.h"
#include "records/DateParser.h"

namespace quire::BookEdits {

void update(SQLiteDatabase &database, qint64 id, double rating, const QString &shelf, const QString &notes)
{
    FieldValues fields;
    fields.set(QStringLiteral("notes"), notes);
    fields.set(QStringLiteral("shelf"), shelf);
    fields.set(QStringLiteral("user_rating"), rating);

    database.execute(R"sql(
        UPDATE goodreads_books
        SET user_rating = ?, shelf = ?, notes = ?, date_modified = datetime('now')
        WHERE id = ?
    )sql",
        {rating, shelf, notes, id});
    recordEdit(database, EntityKind::Book, id, fields);
}

void setHidden(SQLiteDatabase &database, qint64 id, bool hidden)
{
    FieldValues fields;
    fields.set(QStringLiteral("hidden"), hidden);

    database.execute(R"sql(
        UPDATE goodreads_books
        SET hidden = ?, date_modified = datetime('now')
        WHERE id = ?
    )sql",
        {int(hidden), id});
    recordEdit(database, EntityKind::Book, id, fields);
}

qint64 addManual(
    SQLiteDatabase &database, const ManualBookDraft &draft, const std::optional<CoverBytes> &artwork, Instant now)
{
    const QString time = DateParser::iso8601(now);
    const std::optional<QString> readAt = draft.shelf == u"read" ? std::optional(time) : std::nullopt;
    const std::optional<QString> coverURL = textOf(draft.sourceCoverURL);
    // Written without artwork too: such a row counts as needing a cover.
    const QString coverSource = coverURL.value_or(QStringLiteral("manual"));
    FieldValues fields;
    fields.set(QStringLiteral("author"), draft.author);
    fields.set(QStringLiteral("notes"), draft.notes);
    fields.set(QStringLiteral("shelf"), draft.shelf);
    fields.set(QStringLiteral("title"), draft.title);
    fields.set(QStringLiteral("user_rating"), draft.userRating);

    database.execute(R"sql(
        INSERT INTO goodreads_books (
          goodreads_id, title, author, isbn, shelf, user_rating, num_pages,
          description, published_year, cover_url, cover_data, cover_data_source,
          read_at, date_added, date_synced, date_modified, notes
        )
        VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, datetime('now'), datetime('now'), ?)
    )sql",
        {
            draft.sourceID ? *draft.sourceID : newManualIdentifier(),
            draft.title,
            draft.author,
            draft.isbn,
            draft.shelf,
            draft.userRating,
            draft.numberOfPages,
            draft.summary,
            draft.publishedYear,
            coverURL,
            bytesOf(artwork),
            coverSource,
            readAt,
            time,
            draft.notes,
        });
    const auto row = database.scalar("SELECT last_insert_rowid()");
    const qint64 id = row ? row->intValue().value_or(0) : 0;
    recordEdit(database, EntityKind::Book, id, fields);
    return id;
}

} // namespace quire::BookEdits
