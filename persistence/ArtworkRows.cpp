#include "persistence/ArtworkRows.h"

#include "persistence/database/SQLiteDatabase.h"

namespace quire::ArtworkRows {

namespace {

constexpr auto booksNeedingCacheSql = R"sql(
    SELECT
      id,
      title,
      COALESCE(cover_url, goodreads_image_url) AS source_url
    FROM goodreads_books
    WHERE cover_data IS NULL
       OR length(cover_data) = 0
       OR (
         cover_data_source = 'generated:placeholder'
         AND COALESCE(cover_url, goodreads_image_url) IS NOT NULL
       )
)sql";

constexpr auto audiobooksNeedingCacheSql = R"sql(
    SELECT id, title, cover_url AS source_url
    FROM audible_books
    WHERE cover_data IS NULL
       OR length(cover_data) = 0
       OR (
         cover_data_source = 'generated:placeholder'
         AND cover_url IS NOT NULL
       )
)sql";

qint64 count(const SQLiteDatabase &database, const char *sql)
{
    const auto value = database.scalar(sql);
    return value ? value->intValue().value_or(0) : 0;
}

void appendRequests(QList<ArtworkRequest> &requests, const SQLiteDatabase &database, ArtworkKind kind, const char *sql)
{
    for (const SQLiteRow &row : database.query(sql)) {
        const std::optional<QString> url = row.optionalString(QStringLiteral("source_url"));
        requests.append({
            .kind = kind,
            .id = row.intValue(QStringLiteral("id")).value_or(0),
            .title = row.string(QStringLiteral("title"), {}),
            .sourceURL = url ? Url::parse(*url) : std::nullopt,
        });
    }
}

const char *storeSql(ArtworkKind kind)
{
    switch (kind) {
    case ArtworkKind::Book:
        return "UPDATE goodreads_books SET cover_data = ?, cover_data_source = ? WHERE id = ?";
    case ArtworkKind::Audiobook:
        return "UPDATE audible_books SET cover_data = ?, cover_data_source = ? WHERE id = ?";
    }
    Q_UNREACHABLE();
}

} // namespace

ArtworkCoverage coverage(const SQLiteDatabase &database)
{
    return {
        .books = count(database, "SELECT COUNT(*) FROM goodreads_books WHERE length(cover_data) > 0"),
        .audiobooks = count(database, "SELECT COUNT(*) FROM audible_books WHERE length(cover_data) > 0"),
    };
}

QList<ArtworkRequest> requestsNeedingCache(const SQLiteDatabase &database)
{
    QList<ArtworkRequest> requests;
    appendRequests(requests, database, ArtworkKind::Book, booksNeedingCacheSql);
    appendRequests(requests, database, ArtworkKind::Audiobook, audiobooksNeedingCacheSql);
    return requests;
}

void replaceAudiobookCover(SQLiteDatabase &database, qint64 id, const Url &url, const CoverBytes &artwork)
{
    database.execute(R"sql(
        UPDATE audible_books
        SET cover_url = ?, cover_data = ?, cover_data_source = ?, date_synced = datetime('now')
        WHERE id = ?
    )sql",
        {url.text(), artwork.bytes(), url.text(), id});
}

void store(SQLiteDatabase &database, const std::optional<CoverBytes> &artwork, const ArtworkRequest &request,
    const QString &source)
{
    database.execute(storeSql(request.kind), {bytesOf(artwork), source, request.id});
}

} // namespace quire::ArtworkRows
