#include "faults/WorkerDeeds.h"

#include "faults/FaultBench.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/QuireCredentialStore.h"

#include <QDir>

namespace quire::testing {

namespace {

constexpr int titles = 10; // of either kind, before the first deed
constexpr int batchSize = 20;

const QString secretKey = QStringLiteral("goodreadsRssKey");

CoverBytes coverOf(const QString &number)
{
    return CoverBytes((number + QLatin1Char(' ')).toUtf8().repeated(2'000));
}

QList<GoodreadsFeedBook> feedOf(const QString &number, int count)
{
    QList<GoodreadsFeedBook> batch;
    for (int i = 0; i < count; ++i) {
        GoodreadsFeedBook book;
        book.goodreadsID = QStringLiteral("%1-%2").arg(number).arg(i);
        book.title = QStringLiteral("Title");
        book.author = number;
        book.shelf = QStringLiteral("to-read");
        batch.append(book);
    }
    return batch;
}

QList<AudibleLibraryItem> itemsOf(const QString &number, int count)
{
    QList<AudibleLibraryItem> batch;
    for (int i = 0; i < count; ++i) {
        AudibleLibraryItem item;
        item.asin = QStringLiteral("%1-%2").arg(number).arg(i);
        item.title = QStringLiteral("Title %1 of %2").arg(i).arg(number);
        item.author = number;
        batch.append(item);
    }
    return batch;
}

// One row of the result: a thing's argument, its number, and whether it is whole.
void addTraces(const SQLiteDatabase &database, const char *word, const char *sql, Traces &traces, QStringList &torn)
{
    for (const SQLiteRow &row : database.query(sql)) {
        const QString argument = row.string(QStringLiteral("argument"), {});
        const QString name
            = argument.isEmpty() ? QLatin1String(word) : QLatin1String(word) + QLatin1Char(' ') + argument;
        traces.insert(name, row.string(QStringLiteral("number"), {}));
        if (row.intValue(QStringLiteral("whole")) != 1) {
            torn.append(name);
        }
    }
}

} // namespace

WorkerDeed WorkerDeed::random(std::mt19937 &random)
{
    static const QStringList words{QStringLiteral("note"), QStringLiteral("note"), QStringLiteral("audionote"),
        QStringLiteral("batch"), QStringLiteral("secret"), QStringLiteral("cover"), QStringLiteral("feed"),
        QStringLiteral("items"), QStringLiteral("manual"), QStringLiteral("backup"), QStringLiteral("reopen")};
    const auto below = [&](int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random); };
    return {words[below(int(words.size()))], 1 + below(titles)};
}

QString WorkerDeed::run(LibraryStore &store, const QString &number, const QString &backupFolder) const
{
    if (word == u"note") {
        done(store.updateBook(argument, 3, QStringLiteral("read"), number));
    } else if (word == u"audionote") {
        done(store.updateAudiobook(argument, 3, QStringLiteral("read"), number));
    } else if (word == u"batch") {
        done(store.setSettings(
            {{QStringLiteral("a"), number}, {QStringLiteral("b"), number}, {QStringLiteral("c"), number}}));
    } else if (word == u"secret") {
        done(store.setSetting(secretKey, number));
    } else if (word == u"cover") {
        const ArtworkRequest request{.kind = ArtworkKind::Book, .id = argument, .title = {}, .sourceURL = std::nullopt};
        done(store.storeArtwork(coverOf(number), request, number));
    } else if (word == u"feed") {
        done(store.upsertGoodreadsBooks(feedOf(number, batchSize)));
    } else if (word == u"items") {
        done(store.mergeAudibleLibraryItems(itemsOf(number, batchSize)));
    } else if (word == u"manual") {
        ManualBookDraft draft;
        draft.title = number;
        draft.shelf = QStringLiteral("read");
        done(store.addManualBook(draft, coverOf(number)));
    } else if (word == u"backup") {
        return done(store.backUpDatabase(backupFolder));
    } else {
        done(store.shutdown());
        done(store.prepare(true));
    }
    return {};
}

Traces WorkerDeed::traces(const QString &number) const
{
    if (word == u"backup" || word == u"reopen") {
        return {};
    }
    const bool isOfATitle = word == u"note" || word == u"audionote" || word == u"cover";
    const bool isOnlyOne = word == u"batch" || word == u"secret";
    return {{isOnlyOne ? word : word + QLatin1Char(' ') + (isOfATitle ? QString::number(argument) : number), number}};
}

void createWorkersLibrary(const QString &folder)
{
    const ManualClock clock;
    LibraryStore store(clock, folder);
    done(store.prepare(false));
    done(store.upsertGoodreadsBooks(feedOf(QStringLiteral("first"), titles)));
    done(store.mergeAudibleLibraryItems(itemsOf(QStringLiteral("first"), titles)));
    done(store.shutdown());
}

Traces tracesIn(const SQLiteDatabase &database, const QString &folder, QStringList &torn)
{
    Traces traces;
    addTraces(database, "note", R"sql(
        SELECT id AS argument, notes AS number, user_rating = 3 AND shelf = 'read' AS whole
        FROM goodreads_books WHERE notes <> ''
    )sql",
        traces, torn);
    addTraces(database, "audionote", R"sql(
        SELECT id AS argument, notes AS number, user_rating = 3 AND status = 'read' AS whole
        FROM audible_books WHERE notes <> ''
    )sql",
        traces, torn);
    addTraces(database, "batch", R"sql(
        SELECT '' AS argument, MAX(value) AS number, COUNT(*) = 3 AND MIN(value) = MAX(value) AS whole
        FROM settings WHERE key IN ('a', 'b', 'c') HAVING COUNT(*) > 0
    )sql",
        traces, torn);
    addTraces(database, "cover", R"sql(
        SELECT id AS argument, cover_data_source AS number,
               cover_data = CAST(replace(hex(zeroblob(1000)), '0', cover_data_source || ' ') AS BLOB) AS whole
        FROM goodreads_books WHERE cover_data IS NOT NULL AND cover_data_source <> 'manual'
    )sql",
        traces, torn);
    addTraces(database, "feed", R"sql(
        SELECT author AS argument, author AS number, COUNT(*) = 20 AS whole
        FROM goodreads_books WHERE author NOT IN ('', 'first') GROUP BY author
    )sql",
        traces, torn);
    addTraces(database, "items", R"sql(
        SELECT author AS argument, author AS number, COUNT(*) = 20 AS whole
        FROM audible_books WHERE author <> 'first' GROUP BY author
    )sql",
        traces, torn);
    addTraces(database, "manual", R"sql(
        SELECT title AS argument, title AS number, length(cover_data) > 0 AS whole
        FROM goodreads_books WHERE goodreads_id LIKE 'manual:%'
    )sql",
        traces, torn);
    const auto secrets = QuireCredentialStore(folder + QStringLiteral("/Credentials.plist")).load();
    if (const auto secret = secrets.constFind(secretKey); secret != secrets.cend()) {
        traces.insert(QStringLiteral("secret"), *secret);
    }
    return traces;
}

} // namespace quire::testing
