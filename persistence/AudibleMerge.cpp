#include "persistence/AudibleMerge.h"

#include "persistence/AudibleStatus.h"
#include "persistence/AudiobookIndex.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/SQLiteStatement.h"
#include "records/DateParser.h"
#include "reliability/QuireFailureInjector.h"
#include "reliability/QuireReliabilityError.h"

namespace quire::AudibleMerge {

namespace {

// Proves that the batch fits the database's own rules before a row of the
// library is touched; nothing reads the table afterwards.
void stageAudibleItems(SQLiteDatabase &database, const QList<AudibleLibraryItem> &batch)
{
    database.executeScript(R"sql(
        DROP TABLE IF EXISTS temp.quire_audible_stage;
        CREATE TEMP TABLE quire_audible_stage (
          asin TEXT PRIMARY KEY,
          title TEXT NOT NULL,
          status TEXT NOT NULL
        );
    )sql");
    SQLiteStatement insert(database, "INSERT INTO quire_audible_stage (asin, title, status) VALUES (?, ?, ?)");
    for (const AudibleLibraryItem &item : batch) {
        insert.run({item.asin, item.title, derivedStatus(item)});
    }
    const auto count = database.scalar("SELECT COUNT(*) FROM quire_audible_stage");
    if (!count || count->intValue() != batch.size()) {
        throw QuireReliabilityError::invalidImport(QStringLiteral("the staged Audible record count did not match"));
    }
}

AudiobookIndex indexLibrary(const SQLiteDatabase &database)
{
    AudiobookIndex index;
    for (const SQLiteRow &row : database.query("SELECT id, asin, title, author FROM audible_books")) {
        index.add(row.intValue(QStringLiteral("id")).value_or(0), row.string(QStringLiteral("asin"), {}),
            row.string(QStringLiteral("title"), {}), row.optionalString(QStringLiteral("author")));
    }
    return index;
}

// The incoming status is bound once for each place that looks at it. A progress
// that is no number arrives as NULL, which MAX would let win.
constexpr auto updateSql = R"sql(
    UPDATE audible_books SET
      author = COALESCE(NULLIF(author, ''), ?),
      narrator = COALESCE(NULLIF(narrator, ''), ?),
      series = COALESCE(NULLIF(series, ''), ?),
      book_number = COALESCE(book_number, ?),
      cover_url = COALESCE(NULLIF(cover_url, ''), ?),
      audible_url = COALESCE(NULLIF(audible_url, ''), ?),
      description = COALESCE(NULLIF(description, ''), ?),
      runtime_minutes = COALESCE(runtime_minutes, ?),
      release_date = COALESCE(NULLIF(release_date, ''), ?),
      purchase_date = COALESCE(NULLIF(purchase_date, ''), ?),
      average_rating = COALESCE(average_rating, ?),
      performance_rating = COALESCE(performance_rating, ?),
      story_rating = COALESCE(story_rating, ?),
      review_count = COALESCE(review_count, ?),
      listening_progress = MAX(COALESCE(listening_progress, 0), COALESCE(?, 0)),
      audible_owned = MAX(COALESCE(audible_owned, 0), ?),
      status = CASE
        WHEN status IN ('read', 'did-not-finish') THEN status
        WHEN ? IN ('read', 'did-not-finish') THEN ?
        WHEN status = 'reading' AND ? = 'to-read' THEN status
        ELSE ?
      END,
      finished_at = CASE
        WHEN finished_at IS NOT NULL THEN finished_at
        WHEN ? = 'read' THEN COALESCE(?, datetime('now'))
        ELSE NULL
      END,
      last_audible_sync = datetime('now'),
      date_synced = datetime('now')
    WHERE id = ?
)sql";

constexpr auto insertSql = R"sql(
    INSERT INTO audible_books (
      asin, title, author, narrator, series, book_number, cover_url,
      audible_url, date_added, finished_at, description, status,
      runtime_minutes, release_date, purchase_date, average_rating,
      performance_rating, story_rating, review_count, listening_progress,
      audible_owned, date_synced, last_audible_sync, notes
    )
    VALUES (
      ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?,
      datetime('now'), datetime('now'), ''
    )
)sql";

int update(SQLiteStatement &statement, qint64 id, const AudibleLibraryItem &item)
{
    const QString status = derivedStatus(item);
    return statement.run({
        item.author,
        item.narrator,
        item.series,
        item.bookNumber,
        textOf(item.coverURL),
        textOf(item.audibleURL),
        item.summary,
        item.runtimeMinutes,
        item.releaseDate,
        item.purchaseDate,
        item.averageRating,
        item.performanceRating,
        item.storyRating,
        item.reviewCount,
        item.listeningProgress,
        qint64(item.ownedIndefinitely),
        status,
        status,
        status,
        status,
        status,
        item.purchaseDate,
        id,
    });
}

void insert(SQLiteStatement &statement, const AudibleLibraryItem &item, const QString &now)
{
    const QString dateAdded = item.purchaseDate.value_or(now);
    statement.run({
        item.asin,
        item.title,
        item.author,
        item.narrator,
        item.series,
        item.bookNumber,
        textOf(item.coverURL),
        textOf(item.audibleURL),
        dateAdded,
        item.isFinished ? std::optional(dateAdded) : std::nullopt,
        item.summary,
        derivedStatus(item),
        item.runtimeMinutes,
        item.releaseDate,
        item.purchaseDate,
        item.averageRating,
        item.performanceRating,
        item.storyRating,
        item.reviewCount,
        item.listeningProgress,
        qint64(item.ownedIndefinitely),
    });
}

} // namespace

FieldValues fieldValues(const AudibleLibraryItem &item)
{
    FieldValues fields;
    fields.set(QStringLiteral("asin"), item.asin);
    fields.set(QStringLiteral("audible_owned"), item.ownedIndefinitely);
    fields.set(QStringLiteral("author"), item.author);
    fields.set(QStringLiteral("book_number"), item.bookNumber);
    fields.set(QStringLiteral("cover_url"), item.coverURL);
    fields.set(QStringLiteral("description"), item.summary);
    fields.set(QStringLiteral("listening_progress"), item.listeningProgress);
    fields.set(QStringLiteral("narrator"), item.narrator);
    fields.set(QStringLiteral("purchase_date"), item.purchaseDate);
    fields.set(QStringLiteral("release_date"), item.releaseDate);
    fields.set(QStringLiteral("runtime_minutes"), item.runtimeMinutes);
    fields.set(QStringLiteral("series"), item.series);
    fields.set(QStringLiteral("status"), derivedStatus(item));
    fields.set(QStringLiteral("title"), item.title);
    return fields;
}

AudibleSyncResult merge(SQLiteDatabase &database, const QList<AudibleLibraryItem> &batch, Instant now)
{
    const QString nowText = DateParser::iso8601(now);
    AudibleSyncResult result{.count = batch.size()};

    stageAudibleItems(database, batch);
    QuireFailureInjector::checkpoint(u"audible-after-staging");

    AudiobookIndex index = indexLibrary(database);
    SQLiteStatement updateRow(database, updateSql);
    SQLiteStatement insertRow(database, insertSql);
    SQLiteStatement newId(database, "SELECT last_insert_rowid()");
    ProvenanceWriter provenance(database, EntityKind::Audiobook, Source::Audible);
    for (const AudibleLibraryItem &item : batch) {
        if (const std::optional<qint64> found = index.find(item)) {
            result.refreshed += update(updateRow, *found, item) > 0;
            provenance.record(*found, fieldValues(item), false);
        } else {
            insert(insertRow, item, nowText);
            const qint64 id = newId.firstInteger().value_or(0);
            ++result.added;
            provenance.record(id, fieldValues(item), true);
            index.add(id, item.asin, item.title, item.author); // a later item may be another edition
        }
    }
    database.executeScript("DROP TABLE IF EXISTS temp.quire_audible_stage");
    return result;
}

} // namespace quire::AudibleMerge
