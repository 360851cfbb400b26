// What a reload costs: every table of the library read into records, beside a
// bare walk over the same columns through SQLite's own interface. The aim is
// twice the walk. One title in twenty has a cover of 40 KB, which neither reads:
// the store hands out the bytes it read the first time.

#include "concurrency/SystemClock.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/SQLiteStatement.h"
#include "persistence/database/Transaction.h"
#include "persistence/LibraryStore.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include <map>
#include <random>
#include <sqlite3.h>

namespace quire {

namespace {

constexpr int coverBytes = 40'000;
constexpr int coverEvery = 20;
constexpr int audiobookEvery = 5;

// A library of `titles` books and a fifth of that in audiobooks, made once a
// size and kept open for the whole run.
class BenchLibrary
{
public:
    explicit BenchLibrary(int titles)
        : m_store(m_clock, m_folder.path())
    {
        m_store.prepare(false).waitForFinished();
        fill(titles);
        m_store.books().waitForFinished(); // reads the covers
        m_store.audiobooks().waitForFinished();
    }

    static BenchLibrary &of(int titles)
    {
        static std::map<int, std::unique_ptr<BenchLibrary>> libraries;
        auto &library = libraries[titles];
        if (!library) {
            library = std::make_unique<BenchLibrary>(titles);
        }
        return *library;
    }

    LibraryStore &store() { return m_store; }
    QString path() const { return m_folder.filePath(QStringLiteral("quire.db")); }

private:
    void fill(int titles)
    {
        SQLiteDatabase database(path());
        inTransaction(database, [&] {
            fillBooks(database, titles);
            fillAudiobooks(database, titles / audiobookEvery);
            for (int i = 0; i < 60; ++i) {
                database.execute("INSERT INTO settings VALUES (?, ?)",
                    {QStringLiteral("setting%1").arg(i), QStringLiteral("value %1").arg(i)});
            }
        });
    }

    void fillBooks(SQLiteDatabase &database, int count)
    {
        SQLiteStatement book(database, R"sql(
            INSERT INTO goodreads_books
                (goodreads_id, title, author, isbn, shelf, user_rating, average_rating, num_pages, description,
                 goodreads_url, published_year, cover_url, goodreads_image_url, cover_data, cover_data_source,
                 read_at, date_added, notes)
            VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)
        )sql");
        SQLiteStatement tag(database, "INSERT INTO book_tags (book_id, tag) VALUES (?, ?)");
        const QStringList shelves{QStringLiteral("read"), QStringLiteral("to-read"),
            QStringLiteral("currently-reading"), QStringLiteral("did-not-finish")};
        for (int i = 1; i <= count; ++i) {
            const QString number = QString::number(i);
            book.run({number, QStringLiteral("The %1 of the Long Winter, Part %2").arg(word(), number),
                QStringLiteral("%1 %2").arg(word(), word()), QStringLiteral("978%1").arg(i, 10, 10, QLatin1Char('0')),
                shelves[qsizetype(m_random() % 4)], double(m_random() % 6), 3.5 + double(m_random() % 15) / 10,
                int(100 + m_random() % 700), QStringLiteral("A reader meets the %1. ").arg(word()).repeated(12),
                QStringLiteral("https://books.example/book/show/%1?utm_source=rss").arg(number),
                int(1900 + m_random() % 125), QStringLiteral("https://images.example/books/%1/large.jpg").arg(number),
                QStringLiteral("https://images.example/books/%1/small.jpg").arg(number), cover(i),
                QStringLiteral("https://images.example/books/%1/large.jpg").arg(number), date(), date(),
                i % 10 == 0 ? QStringLiteral("Lent to a friend, came back with tea on it.") : QString()});
            for (int t = 0; t < 2; ++t) {
                tag.run({i, QStringLiteral("tag-%1-%2").arg(t).arg(m_random() % 40)});
            }
        }
    }

    void fillAudiobooks(SQLiteDatabase &database, int count)
    {
        SQLiteStatement audiobook(database, R"sql(
            INSERT INTO audible_books
                (asin, title, author, narrator, series, book_number, cover_url, cover_data, cover_data_source,
                 audible_url, date_added, notes, user_rating, description, status, runtime_minutes, release_date,
                 purchase_date, average_rating, listening_progress, audible_owned, last_audible_sync)
            VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)
        )sql");
        for (int i = 1; i <= count; ++i) {
            const QString number = QStringLiteral("B%1").arg(i, 9, 10, QLatin1Char('0'));
            audiobook.run({number, QStringLiteral("Listening to %1").arg(word()), word(), word(), word(),
                int(m_random() % 9), QStringLiteral("https://images.example/audio/%1.jpg").arg(number), cover(i),
                QStringLiteral("https://images.example/audio/%1.jpg").arg(number),
                QStringLiteral("https://audio.example/pd/%1").arg(number), date(), QString(), double(m_random() % 6),
                QStringLiteral("Read aloud by the %1. ").arg(word()).repeated(12), QStringLiteral("to-read"),
                int(m_random() % 1200), date(), date(), 4.2, double(m_random() % 100), 1, date()});
        }
    }

    QString word()
    {
        static const QStringList words{QStringLiteral("Lighthouse"), QStringLiteral("Bücher"), QStringLiteral("Island"),
            QStringLiteral("Cartographer"), QStringLiteral("Élan"), QStringLiteral("Orchard"), QStringLiteral("Tide")};
        return words[qsizetype(m_random() % quint64(words.size()))];
    }

    QString date()
    {
        return QStringLiteral("20%1-%2-%3T10:00:00.000Z")
            .arg(10 + m_random() % 16, 2, 10, QLatin1Char('0'))
            .arg(1 + m_random() % 12, 2, 10, QLatin1Char('0'))
            .arg(1 + m_random() % 28, 2, 10, QLatin1Char('0'));
    }

    static SQLiteValue cover(int row)
    {
        return row % coverEvery == 0 ? SQLiteValue(QByteArray(coverBytes, char(row))) : SQLiteValue();
    }

    std::mt19937_64 m_random{20'261'121};
    QTemporaryDir m_folder;
    SystemClock m_clock;
    LibraryStore m_store;
};

constexpr const char *booksSql = R"sql(
    SELECT id, goodreads_id, title, author, isbn, shelf, user_rating, average_rating, num_pages, description,
           goodreads_url, published_year, cover_url, goodreads_image_url, read_at, date_added, date_synced,
           date_modified, notes, hidden
      FROM goodreads_books
     ORDER BY
       CASE shelf WHEN 'currently-reading' THEN 1 WHEN 'read' THEN 2 WHEN 'to-read' THEN 3
                  WHEN 'did-not-finish' THEN 4 ELSE 5 END,
       COALESCE(read_at, date_added) DESC
)sql";

constexpr const char *audiobooksSql = R"sql(
    SELECT id, asin, title, author, narrator, series, book_number, cover_url, audible_url, date_added, date_synced,
           notes, user_rating, finished_at, description, status, runtime_minutes, release_date, purchase_date,
           average_rating, performance_rating, story_rating, review_count, listening_progress, audible_owned,
           last_audible_sync
      FROM audible_books
     ORDER BY COALESCE(series, ''), book_number, title
)sql";

constexpr const char *tagsOfBooksSql = "SELECT book_id, tag FROM book_tags ORDER BY tag";
constexpr const char *tagCountsSql
    = "SELECT tag, COUNT(*) AS count FROM book_tags GROUP BY tag ORDER BY count DESC, tag";
constexpr const char *settingsSql = "SELECT key, value FROM settings";

// Steps through all rows and takes each value as its type has it, to no end.
void walk(const SQLiteDatabase &database, const char *sql)
{
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(database.handle(), sql, -1, &statement, nullptr);
    const int columns = sqlite3_column_count(statement);
    while (sqlite3_step(statement) == SQLITE_ROW) {
        for (int column = 0; column < columns; ++column) {
            switch (sqlite3_column_type(statement, column)) {
            case SQLITE_INTEGER:
                benchmark::DoNotOptimize(sqlite3_column_int64(statement, column));
                break;
            case SQLITE_FLOAT:
                benchmark::DoNotOptimize(sqlite3_column_double(statement, column));
                break;
            case SQLITE_TEXT:
                benchmark::DoNotOptimize(sqlite3_column_text(statement, column));
                benchmark::DoNotOptimize(sqlite3_column_bytes(statement, column));
                break;
            default:
                break;
            }
        }
    }
    sqlite3_finalize(statement);
}

void books(benchmark::State &state)
{
    LibraryStore &store = BenchLibrary::of(int(state.range(0))).store();
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(store.books().result().size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void booksWalk(benchmark::State &state)
{
    const SQLiteDatabase database(BenchLibrary::of(int(state.range(0))).path());
    for ([[maybe_unused]] auto _ : state) {
        walk(database, booksSql);
        walk(database, tagsOfBooksSql);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void reload(benchmark::State &state)
{
    LibraryStore &store = BenchLibrary::of(int(state.range(0))).store();
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(store.books().result().size());
        benchmark::DoNotOptimize(store.audiobooks().result().size());
        benchmark::DoNotOptimize(store.tags().result().size());
        benchmark::DoNotOptimize(store.settings().result().size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void reloadWalk(benchmark::State &state)
{
    const SQLiteDatabase database(BenchLibrary::of(int(state.range(0))).path());
    for ([[maybe_unused]] auto _ : state) {
        for (const char *sql : {booksSql, tagsOfBooksSql, audiobooksSql, tagCountsSql, settingsSql}) {
            walk(database, sql);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    // The work is done on the store's thread: what counts is the whole process.
    benchmark->Arg(1'000)->Arg(10'000)->Arg(50'000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
}

BENCHMARK(books)->Name("Store/books")->Apply(sizes);
BENCHMARK(booksWalk)->Name("Store_SQLite/books")->Apply(sizes);
BENCHMARK(reload)->Name("Store/reload")->Apply(sizes);
BENCHMARK(reloadWalk)->Name("Store_SQLite/reload")->Apply(sizes);

} // namespace

} // namespace quire
