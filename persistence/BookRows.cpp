#include "persistence/BookRows.h"

#include "persistence/CoverCache.h"
#include "persistence/CoverReader.h"
#include "persistence/database/SQLiteStatement.h"
#include "persistence/database/Transaction.h"
#include "persistence/TagRows.h"
#include "persistence/UrlColumn.h"

namespace quire::BookRows {

namespace {

// The cover's size in place of its bytes: SQLite tells it without reading them.
constexpr const char *selectBooks = R"sql(
    SELECT id, goodreads_id, title, author, isbn, shelf, user_rating, average_rating, num_pages, description,
           goodreads_url, published_year, cover_url, goodreads_image_url,
           CASE typeof(cover_data) WHEN 'blob' THEN length(cover_data) ELSE 0 END,
           read_at, date_added, date_synced, date_modified, notes, hidden
      FROM goodreads_books
     ORDER BY
       CASE shelf
         WHEN 'currently-reading' THEN 1
         WHEN 'read' THEN 2
         WHEN 'to-read' THEN 3
         WHEN 'did-not-finish' THEN 4
         ELSE 5
       END,
       COALESCE(read_at, date_added) DESC
)sql";

enum Column {
    Id,
    GoodreadsID,
    Title,
    Author,
    Isbn,
    Shelf,
    UserRating,
    AverageRating,
    NumPages,
    Description,
    GoodreadsURL,
    PublishedYear,
    CoverURL,
    GoodreadsImageURL,
    CoverSize,
    ReadAt,
    DateAdded,
    DateSynced,
    DateModified,
    Notes,
    Hidden,
};

} // namespace

QList<Book> all(SQLiteDatabase &database, CoverCache &covers)
{
    const ReadSnapshot snapshot(database);
    covers.follow(database);
    CoverReader coverReader(database, covers, ArtworkKind::Book);
    auto tags = TagRows::byBook(database);

    QList<Book> books;
    books.reserve(
        qsizetype(SQLiteStatement(database, "SELECT COUNT(*) FROM goodreads_books").firstInteger().value_or(0)));
    SQLiteStatement row(database, selectBooks);
    QString lastShelf;
    while (row.step()) {
        const qint64 id = row.intValue(Id).value_or(0);
        books.append({
            .id = id,
            .goodreadsID = row.string(GoodreadsID, {}),
            .title = row.string(Title, {}),
            .author = row.string(Author, {}),
            .isbn = row.optionalString(Isbn),
            .shelf = row.repeatingString(Shelf, QStringLiteral("read"), lastShelf),
            .userRating = row.doubleValue(UserRating, 0),
            .averageRating = row.optionalDouble(AverageRating),
            .numberOfPages = row.intValue(NumPages),
            .summary = row.optionalString(Description),
            .goodreadsURL = urlColumn(row, GoodreadsURL),
            .publishedYear = row.intValue(PublishedYear),
            .coverURL = urlColumn(row, CoverURL),
            .goodreadsImageURL = urlColumn(row, GoodreadsImageURL),
            .coverData = coverReader.cover(id, row.intValue(CoverSize).value_or(0)),
            .readAt = row.optionalString(ReadAt),
            .dateAdded = row.optionalString(DateAdded),
            .dateSynced = row.optionalString(DateSynced),
            .dateModified = row.optionalString(DateModified),
            .notes = row.string(Notes, {}),
            .tags = tags.value(id),
            .isHidden = row.intValue(Hidden) == 1,
        });
    }
    return books;
}

} // namespace quire::BookRows
