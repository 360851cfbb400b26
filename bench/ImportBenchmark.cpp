// What an import costs, of titles that are new and of titles that are there,
// beside the same rows written by a bare prepared upsert through SQLite's own
// interface into a library of the same schema. The aim is three times that.
//
// An import writes a dozen rows of audit trail for each title, so a second
// baseline writes the rows of both tables, their hashes made beforehand.

#include "concurrency/SystemClock.h"
#include "persistence/GoodreadsMerge.h"
#include "persistence/LibraryStore.h"

#include <benchmark/benchmark.h>

#include <QCryptographicHash>
#include <QTemporaryDir>

#include <chrono>
#include <ctime>
#include <functional>
#include <sqlite3.h>
#include <stdexcept>
#include <vector>

namespace quire {

namespace {

// A library of its own that goes away with its folder.
struct BenchLibrary
{
    BenchLibrary() { store.prepare(false).waitForFinished(); }

    QByteArray path() const { return folder.filePath(QStringLiteral("quire.db")).toUtf8(); }

    QTemporaryDir folder;
    SystemClock clock;
    LibraryStore store{clock, folder.path()};
};

QList<GoodreadsFeedBook> feed(qsizetype count)
{
    QList<GoodreadsFeedBook> books;
    for (qsizetype i = 0; i < count; ++i) {
        const QString number = QString::number(10'000'000 + i * 7919 % 50'000'017);
        books.append({
            .goodreadsID = number,
            .title = QStringLiteral("The %1th Night of the Long Winter").arg(number),
            .author = QStringLiteral("Author %1 of Many").arg(i % 997),
            .isbn = QStringLiteral("978%1").arg(number, 10, u'0'),
            .shelf = i % 3 ? QStringLiteral("read") : QStringLiteral("to-read"),
            .userRating = double(i % 6),
            .averageRating = 3.5 + double(i % 15) / 10,
            .numberOfPages = 100 + i % 700,
            .summary = QStringLiteral("A reader meets the number %1 and goes on. ").arg(number).repeated(12),
            .goodreadsURL = Url::parse(QStringLiteral("https://books.example/book/show/%1").arg(number)),
            .publishedYear = 1900 + i % 125,
            .coverURL = Url::parse(QStringLiteral("https://images.example/books/%1/large.jpg").arg(number)),
            .goodreadsImageURL = Url::parse(QStringLiteral("https://images.example/books/%1/large.jpg").arg(number)),
            .readAt = QStringLiteral("Sat, 14 Mar 2020 00:00:00 -0700"),
            .dateAdded = QStringLiteral("Sun, 01 Mar 2020 10:00:00 -0700"),
        });
    }
    return books;
}

QList<AudibleLibraryItem> items(qsizetype count)
{
    QList<AudibleLibraryItem> made;
    for (qsizetype i = 0; i < count; ++i) {
        AudibleLibraryItem item;
        item.asin = QStringLiteral("B%1").arg(i, 9, 10, QLatin1Char('0'));
        item.title = QStringLiteral("Listening to the %1th Winter").arg(i);
        item.author = QStringLiteral("Author %1 of Many").arg(i % 997);
        item.narrator = QStringLiteral("A Narrator");
        item.summary = QStringLiteral("Read aloud by a voice. ").repeated(12);
        item.runtimeMinutes = i % 1200;
        item.purchaseDate = QStringLiteral("2020-06-01T10:00:00Z");
        item.listeningProgress = double(i % 100);
        made.append(item);
    }
    return made;
}

// Rows made ready in UTF-8, so that the baseline measures SQLite and nothing else.
struct BareRow
{
    std::vector<QByteArray> texts; // in the order of the insert below
    double userRating = 0;
    double averageRating = 0;
    qint64 pages = 0;
    qint64 year = 0;
    std::vector<std::pair<QByteArray, QByteArray>> trail; // field and hash
};

std::vector<BareRow> bareRows(const QList<GoodreadsFeedBook> &books)
{
    std::vector<BareRow> rows;
    for (const GoodreadsFeedBook &book : books) {
        BareRow row;
        for (const QString &text : {book.goodreadsID, book.title, book.author, book.isbn.value_or(QString()),
                 book.shelf, book.summary.value_or(QString()), textOf(book.goodreadsURL).value_or(QString()),
                 textOf(book.coverURL).value_or(QString()), textOf(book.goodreadsImageURL).value_or(QString()),
                 book.readAt.value_or(QString()), book.dateAdded.value_or(QString())}) {
            row.texts.push_back(text.toUtf8());
        }
        row.userRating = book.userRating;
        row.averageRating = book.averageRating.value_or(0);
        row.pages = book.numberOfPages.value_or(0);
        row.year = book.publishedYear.value_or(0);
        const auto values = GoodreadsMerge::fieldValues(book);
        for (auto field = values.values().cbegin(); field != values.values().cend(); ++field) {
            row.trail.emplace_back(
                field.key().toUtf8(), QCryptographicHash::hash(field->toUtf8(), QCryptographicHash::Sha256).toHex());
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

class BareStatement
{
public:
    BareStatement(sqlite3 *handle, const char *sql)
    {
        if (sqlite3_prepare_v2(handle, sql, -1, &m_statement, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(handle));
        }
    }
    ~BareStatement() { sqlite3_finalize(m_statement); }
    BareStatement(const BareStatement &) = delete;
    BareStatement &operator=(const BareStatement &) = delete;

    void bind(int at, const QByteArray &text)
    {
        sqlite3_bind_text(m_statement, at, text.constData(), int(text.size()), SQLITE_STATIC);
    }
    void bind(int at, double value) { sqlite3_bind_double(m_statement, at, value); }
    void bind(int at, qint64 value) { sqlite3_bind_int64(m_statement, at, value); }
    void run()
    {
        if (sqlite3_step(m_statement) != SQLITE_DONE) {
            throw std::runtime_error("the baseline failed");
        }
        sqlite3_reset(m_statement);
    }

private:
    sqlite3_stmt *m_statement = nullptr;
};

constexpr auto bareBookSql = R"sql(
    INSERT INTO goodreads_books (goodreads_id, title, author, isbn, shelf, description, goodreads_url, cover_url,
      goodreads_image_url, read_at, date_added, user_rating, average_rating, num_pages, published_year, date_synced)
    VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, datetime('now'))
    ON CONFLICT(goodreads_id) DO UPDATE SET title = excluded.title, author = excluded.author, isbn = excluded.isbn,
      shelf = excluded.shelf, description = excluded.description, goodreads_url = excluded.goodreads_url,
      cover_url = excluded.cover_url, goodreads_image_url = excluded.goodreads_image_url, read_at = excluded.read_at,
      date_added = excluded.date_added, user_rating = excluded.user_rating, average_rating = excluded.average_rating,
      num_pages = excluded.num_pages, published_year = excluded.published_year,
      date_synced = datetime('now'), date_modified = datetime('now')
)sql";

constexpr auto bareTrailSql = R"sql(
    INSERT INTO field_provenance (entity_kind, entity_id, field_name, source, first_seen_at, last_seen_at,
      last_value_hash, applied)
    VALUES ('book', ?, ?, 'goodreads', datetime('now'), datetime('now'), ?, 1)
    ON CONFLICT(entity_kind, entity_id, field_name, source) DO UPDATE SET
      last_seen_at = datetime('now'), last_value_hash = excluded.last_value_hash
)sql";

enum class Bare { Books, BooksAndTrail };

void writeBare(const QByteArray &path, const std::vector<BareRow> &rows, Bare what)
{
    sqlite3 *handle = nullptr;
    if (sqlite3_open(path.constData(), &handle) != SQLITE_OK) {
        throw std::runtime_error("the baseline's library did not open");
    }
    {
        sqlite3_exec(handle, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        BareStatement book(handle, bareBookSql);
        BareStatement trail(handle, bareTrailSql);
        qint64 id = 0; // the rows are numbered in their order, both times
        for (const BareRow &row : rows) {
            int at = 0;
            for (const QByteArray &text : row.texts) {
                book.bind(++at, text);
            }
            book.bind(++at, row.userRating);
            book.bind(++at, row.averageRating);
            book.bind(++at, row.pages);
            book.bind(++at, row.year);
            book.run();
            ++id;
            if (what == Bare::BooksAndTrail) {
                trail.bind(1, id);
                for (const auto &[field, hash] : row.trail) {
                    trail.bind(2, field);
                    trail.bind(3, hash);
                    trail.run();
                }
            }
        }
        sqlite3_exec(handle, "COMMIT", nullptr, nullptr, nullptr);
    }
    sqlite3_close(handle);
}

double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

// Times `write` on a fresh library for new rows, or on one that already has
// them; making the library is not in the time. The counter tells the processor
// time of all threads, which a busy machine and a slow disk do not stretch.
void measure(benchmark::State &state, bool isThere, const std::function<void(BenchLibrary &)> &write)
{
    double processor = 0;
    for (auto _ : state) {
        BenchLibrary library;
        if (isThere) {
            write(library);
        }
        const double processorStart = processorSeconds();
        const auto start = std::chrono::steady_clock::now();
        write(library);
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        processor += processorSeconds() - processorStart;
    }
    state.counters["processor_ms"] = benchmark::Counter(processor * 1e3, benchmark::Counter::kAvgIterations);
}

void importFeed(benchmark::State &state, bool isThere)
{
    const auto batch = feed(state.range(0));
    measure(
        state, isThere, [&](BenchLibrary &library) { library.store.upsertGoodreadsBooks(batch).waitForFinished(); });
}

void bareUpsert(benchmark::State &state, bool isThere, Bare what)
{
    const auto rows = bareRows(feed(state.range(0)));
    measure(state, isThere, [&](BenchLibrary &library) { writeBare(library.path(), rows, what); });
}

void mergeAudio(benchmark::State &state, bool isThere)
{
    const auto batch = items(state.range(0));
    measure(state, isThere,
        [&](BenchLibrary &library) { library.store.mergeAudibleLibraryItems(batch).waitForFinished(); });
}

// A library of that many titles meets half as many, every other one of them new.
void mergeAudioIntoLibrary(benchmark::State &state)
{
    const qsizetype rows = state.range(0);
    const auto all = items(rows + rows / 4);
    const auto known = all.first(rows);
    const auto batch = all.last(rows / 2);
    const auto merge = [](BenchLibrary &library, const QList<AudibleLibraryItem> &titles) {
        library.store.mergeAudibleLibraryItems(titles).waitForFinished();
    };
    for (auto _ : state) {
        BenchLibrary library;
        merge(library, known);
        const auto start = std::chrono::steady_clock::now();
        merge(library, batch);
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(1'000)->Arg(10'000)->Arg(50'000)->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(importFeed, new, false)->Apply(sizes);
BENCHMARK_CAPTURE(bareUpsert, new_books, false, Bare::Books)->Apply(sizes);
BENCHMARK_CAPTURE(bareUpsert, new_books_and_trail, false, Bare::BooksAndTrail)->Apply(sizes);
BENCHMARK_CAPTURE(importFeed, again, true)->Apply(sizes);
BENCHMARK_CAPTURE(bareUpsert, again_books, true, Bare::Books)->Apply(sizes);
BENCHMARK_CAPTURE(bareUpsert, again_books_and_trail, true, Bare::BooksAndTrail)->Apply(sizes);
BENCHMARK_CAPTURE(mergeAudio, new, false)->Apply(sizes);
BENCHMARK_CAPTURE(mergeAudio, again, true)->Apply(sizes);
BENCHMARK(mergeAudioIntoLibrary)->Arg(5'000)->Arg(20'000)->Apply(sizes);

} // namespace

} // namespace quire
