#include "sources/AudibleLibraryReader.h"

#include "concurrency/Cancelled.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "sources/AudibleLibraryRow.h"
#include "sources/ServiceError.h"

#include <ctime>

namespace quire::AudibleLibraryReader {

namespace {

// What both statements look at.
#define TITLES_OF_THE_LIBRARY                                                                                          \
    R"sql(
        FROM library_item AS l
        JOIN products AS p ON p.asin = l.asin
        LEFT JOIN user_products AS u ON u.asin = l.asin
        WHERE p.contentType = 'Product'
          AND COALESCE(json_extract(l.json_data, '$.isArchived'), 0) = 0
    )sql"

constexpr auto titles = R"sql(
        SELECT p.asin AS asin, p.title AS title, p.authors AS authors, p.narrators AS narrators,
               p.relationships AS relationships, p.productImages AS productImages,
               p.publisherSummary AS publisherSummary, p.runtimeLength AS runtimeLength,
               p.releaseDate AS releaseDate, p.rating AS rating, l.purchaseDate AS purchaseDate,
               COALESCE(json_extract(l.json_data, '$.percentComplete'), 0) AS percentComplete,
               COALESCE(u.isStarted, 0) AS isStarted,
               COALESCE(u.isFinished, 0) AS isFinished,
               COALESCE(u.customerEntitlements_consumableIndefinitely, 0) AS ownedIndefinitely
    )sql" TITLES_OF_THE_LIBRARY "ORDER BY COALESCE(l.purchaseDate, ''), p.title";

// The length of each title's texts, one for the row itself: without an order, so
// that nothing is collected before it is known how much there is.
constexpr auto lengths = R"sql(
        SELECT 1 + COALESCE(LENGTH(CAST(p.asin AS BLOB)), 0) + COALESCE(LENGTH(CAST(p.title AS BLOB)), 0)
                 + COALESCE(LENGTH(CAST(p.authors AS BLOB)), 0) + COALESCE(LENGTH(CAST(p.narrators AS BLOB)), 0)
                 + COALESCE(LENGTH(CAST(p.relationships AS BLOB)), 0) + COALESCE(LENGTH(CAST(p.productImages AS BLOB)), 0)
                 + COALESCE(LENGTH(CAST(p.publisherSummary AS BLOB)), 0) + COALESCE(LENGTH(CAST(p.releaseDate AS BLOB)), 0)
                 + COALESCE(LENGTH(CAST(p.rating AS BLOB)), 0) + COALESCE(LENGTH(CAST(l.purchaseDate AS BLOB)), 0)
                 + LENGTH(CAST(COALESCE(json_extract(l.json_data, '$.percentComplete'), 0) AS BLOB)) AS bytes
    )sql" TITLES_OF_THE_LIBRARY;

#undef TITLES_OF_THE_LIBRARY

ServiceError damaged()
{
    return ServiceError::message(QStringLiteral("Audible’s local library did not pass its integrity check."));
}

// Of this thread; it stands still while others run.
std::chrono::nanoseconds workDone()
{
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void requireSize(const SQLiteDatabase &database, qint64 limit)
{
    qint64 bytes = 0;
    database.forEachRow(lengths, [&bytes, limit](const SQLiteRow &row) {
        bytes += row.intValue(QStringLiteral("bytes")).value_or(0);
        if (bytes > limit) {
            throw damaged();
        }
    });
}

QList<AudibleLibraryItem> readTitles(const SQLiteDatabase &database, const QUrl &audibleWeb)
{
    QList<AudibleLibraryItem> items;
    database.forEachRow(titles, [&items, &audibleWeb](const SQLiteRow &row) {
        if (auto item = AudibleLibraryRow::map(row, audibleWeb)) {
            items.append(std::move(*item));
        }
    });
    return items;
}

} // namespace

QList<AudibleLibraryItem> read(
    const QString &database, const QUrl &audibleWeb, const std::stop_token &stop, const Limits &limits)
{
    const auto deadline = workDone() + limits.work;
    SQLiteDatabase copy(database);
    copy.setMaximumLength(limits.valueBytes);
    copy.interruptWhen([&] { return stop.stop_requested() || workDone() > deadline; });
    try {
        // Nobody else has the copy open: no memory is shared through a file, which
        // on a full disk would be a signal instead of a failure. What must be sorted
        // or indexed on the way may be as large as the file.
        copy.executeScript("PRAGMA locking_mode = EXCLUSIVE; PRAGMA temp_store = FILE;");
        if (!copy.quickCheck()) {
            throw damaged();
        }
        requireSize(copy, limits.textBytes);
        return readTitles(copy, audibleWeb);
    } catch (const DatabaseError &) {
        if (stop.stop_requested()) {
            throw Cancelled();
        }
        if (workDone() > deadline) {
            throw damaged();
        }
        throw;
    }
}

} // namespace quire::AudibleLibraryReader
