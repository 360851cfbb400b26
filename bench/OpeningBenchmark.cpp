// What it costs to open a library of 10,000 titles with covers of 40 KB, 400 MB
// in all: everything up to an open library (conflict copies, lease, schema,
// lineage, stale files, memory of the lineage) beside the first reload after it,
// which reads every row and every cover. The aim is less than a tenth.

#include "concurrency/SystemClock.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/SQLiteStatement.h"
#include "persistence/database/Transaction.h"
#include "persistence/LibraryStore.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

#include <chrono>

namespace quire {

namespace {

constexpr int titles = 10'000;
constexpr int coverBytes = 40'000;

class LargeLibrary
{
public:
    static LargeLibrary &shared()
    {
        static LargeLibrary library;
        return library;
    }

    QString folder() const { return m_folder.path(); }
    const SystemClock &clock() const { return m_clock; }

private:
    LargeLibrary()
    {
        {
            LibraryStore store(m_clock, folder());
            store.prepare(false).waitForFinished();
            store.shutdown().waitForFinished();
        }
        SQLiteDatabase database(m_folder.filePath(QStringLiteral("quire.db")));
        inTransaction(database, [&] { fill(database); });
    }

    static void fill(SQLiteDatabase &database)
    {
        SQLiteStatement book(database, R"sql(
            INSERT INTO goodreads_books (goodreads_id, title, author, shelf, description, cover_data, date_added)
            VALUES (?, ?, 'Somebody', 'read', ?, ?, '2026-01-02')
        )sql");
        const QString description = QStringLiteral("A reader meets the lighthouse. ").repeated(12);
        for (int i = 1; i <= titles; ++i) {
            book.run({QString::number(i), QStringLiteral("The Long Winter, Part %1").arg(i), description,
                QByteArray(coverBytes, char(i))});
        }
    }

    QTemporaryDir m_folder;
    SystemClock m_clock;
};

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void prepare(benchmark::State &state)
{
    const LargeLibrary &library = LargeLibrary::shared();
    for ([[maybe_unused]] auto _ : state) {
        LibraryStore store(library.clock(), library.folder());
        const auto start = std::chrono::steady_clock::now();
        store.prepare(false).waitForFinished();
        state.SetIterationTime(secondsSince(start));
        store.shutdown().waitForFinished();
    }
}

void firstReload(benchmark::State &state)
{
    const LargeLibrary &library = LargeLibrary::shared();
    for ([[maybe_unused]] auto _ : state) {
        LibraryStore store(library.clock(), library.folder());
        store.prepare(false).waitForFinished();
        const auto start = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(store.books().result().size());
        benchmark::DoNotOptimize(store.audiobooks().result().size());
        benchmark::DoNotOptimize(store.tags().result().size());
        benchmark::DoNotOptimize(store.settings().result().size());
        state.SetIterationTime(secondsSince(start));
        store.shutdown().waitForFinished();
    }
}

BENCHMARK(prepare)->Name("Opening/prepare")->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(firstReload)->Name("Opening_baseline/firstReload")->Unit(benchmark::kMillisecond)->UseManualTime();

} // namespace

} // namespace quire
