#include "persistence/AudiobookRows.h"

#include "persistence/CoverCache.h"
#include "persistence/CoverReader.h"
#include "persistence/database/SQLiteStatement.h"
#include "persistence/database/Transaction.h"
#include "persistence/UrlColumn.h"

namespace quire::AudiobookRows {

namespace {

// The cover's size in place of its bytes: SQLite tells it without reading them.
constexpr const char *selectAudiobooks = R"sql(
    SELECT id, asin, title, author, narrator, series, book_number, cover_url,
           CASE typeof(cover_data) WHEN 'blob' THEN length(cover_data) ELSE 0 END,
           audible_url, date_added, date_synced, notes, user_rating, finished_at, description, status,
           runtime_minutes, release_date, purchase_date, average_rating, performance_rating, story_rating,
           review_count, listening_progress, audible_owned, last_audible_sync
      FROM audible_books
     ORDER BY COALESCE(series, ''), book_number, title
)sql";

enum Column {
    Id,
    Asin,
    Title,
    Author,
    Narrator,
    Series,
    BookNumber,
    CoverURL,
    CoverSize,
    AudibleURL,
    DateAdded,
    DateSynced,
    Notes,
    UserRating,
    FinishedAt,
    Description,
    Status,
    RuntimeMinutes,
    ReleaseDate,
    PurchaseDate,
    AverageRating,
    PerformanceRating,
    StoryRating,
    ReviewCount,
    ListeningProgress,
    AudibleOwned,
    LastAudibleSync,
};

} // namespace

QList<Audiobook> all(SQLiteDatabase &database, CoverCache &covers)
{
    const ReadSnapshot snapshot(database);
    covers.follow(database);
    CoverReader coverReader(database, covers, ArtworkKind::Audiobook);

    QList<Audiobook> audiobooks;
    audiobooks.reserve(
        qsizetype(SQLiteStatement(database, "SELECT COUNT(*) FROM audible_books").firstInteger().value_or(0)));
    SQLiteStatement row(database, selectAudiobooks);
    QString lastStatus;
    while (row.step()) {
        const qint64 id = row.intValue(Id).value_or(0);
        audiobooks.append({
            .id = id,
            .asin = row.string(Asin, {}),
            .title = row.string(Title, {}),
            .author = row.optionalString(Author),
            .narrator = row.optionalString(Narrator),
            .series = row.optionalString(Series),
            .bookNumber = row.intValue(BookNumber),
            .coverURL = urlColumn(row, CoverURL),
            .coverData = coverReader.cover(id, row.intValue(CoverSize).value_or(0)),
            .audibleURL = urlColumn(row, AudibleURL),
            .dateAdded = row.optionalString(DateAdded),
            .dateSynced = row.optionalString(DateSynced),
            .notes = row.string(Notes, {}),
            .userRating = row.optionalDouble(UserRating),
            .finishedAt = row.optionalString(FinishedAt),
            .summary = row.optionalString(Description),
            .status = row.repeatingString(Status, QStringLiteral("read"), lastStatus),
            .runtimeMinutes = row.intValue(RuntimeMinutes),
            .releaseDate = row.optionalString(ReleaseDate),
            .purchaseDate = row.optionalString(PurchaseDate),
            .averageRating = row.optionalDouble(AverageRating),
            .performanceRating = row.optionalDouble(PerformanceRating),
            .storyRating = row.optionalDouble(StoryRating),
            .reviewCount = row.intValue(ReviewCount),
            .listeningProgress = row.optionalDouble(ListeningProgress),
            .audibleOwned = row.intValue(AudibleOwned) == 1,
            .lastAudibleSync = row.optionalString(LastAudibleSync),
        });
    }
    return audiobooks;
}

} // namespace quire::AudiobookRows
