// What it costs to save the launch cache of a library with covers, beside writing
// the covers' bytes alone to a file that is synced and renamed. And what the
// reader feels of it: the longest absence of the interface's event loop, and the
// memory that the process grows by.

#include "bench/LongestGap.h"
#include "core/LaunchCacheWriter.h"
#include "files/DurableFile.h"
#include "tests/testing/ResourceUse.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QIODevice>
#include <QTemporaryDir>

#include <cstring>
#include <map>
#include <random>

#include <unistd.h>

namespace quire {

namespace {

using Steady = std::chrono::steady_clock;

constexpr qint64 coverBytes = 40'000;

CoverBytes cover(std::mt19937_64 &random)
{
    QByteArray bytes(coverBytes, '\0');
    for (qsizetype i = 0; i + 8 <= bytes.size(); i += 8) {
        const quint64 word = random();
        std::memcpy(bytes.data() + i, &word, sizeof word);
    }
    return CoverBytes(bytes);
}

const QuireLibrarySnapshot &snapshotOf(qint64 titles)
{
    static std::map<qint64, QuireLibrarySnapshot> snapshots;
    QuireLibrarySnapshot &snapshot = snapshots[titles];
    if (snapshot.books.isEmpty()) {
        std::mt19937_64 random(20'261'122);
        snapshot.databasePath = QStringLiteral("/somewhere/quire.db");
        for (qint64 id = 1; id <= titles; ++id) {
            Book book;
            book.id = id;
            book.goodreadsID = QString::number(id);
            book.title = QStringLiteral("The %1th Night of the Long Winter").arg(id);
            book.author = QStringLiteral("Author %1").arg(id % 997);
            book.shelf = QStringLiteral("read");
            book.summary = QStringLiteral("A reader meets a tide. ").repeated(20);
            book.coverData = cover(random);
            snapshot.books.append(book);
        }
    }
    return snapshot;
}

template<typename Work>
void timed(benchmark::State &state, Work work)
{
    for ([[maybe_unused]] auto _ : state) {
        ::sync();
        const auto start = Steady::now();
        work();
        state.SetIterationTime(std::chrono::duration<double>(Steady::now() - start).count());
    }
}

void SavingLaunchCache(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("Launch Library.plist"));
    const QuireLibrarySnapshot &snapshot = snapshotOf(state.range(0));
    std::chrono::duration<double, std::milli> longest{0};
    qint64 grown = 0;
    timed(state, [&] {
        QFile::remove(file);
        const testing::ResourceUse use;
        const qint64 before = use.peakMegabytes();
        LaunchCacheWriter writer{QuireLaunchCache(folder.path())};
        const auto asked = Steady::now();
        writer.save({}, snapshot);
        longest = std::max<std::chrono::duration<double, std::milli>>(longest, Steady::now() - asked);
        longest = std::max(longest, longestGap([&file] { return QFile::exists(file); }));
        grown = std::max(grown, use.peakMegabytes() - before);
    });
    state.counters["covers_MB"] = double(state.range(0) * coverBytes) / 1e6;
    state.counters["grown_MB"] = double(grown);
    state.counters["longest_absence_ms"] = longest.count();
}

void CoverBytesAlone(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QuireLibrarySnapshot &snapshot = snapshotOf(state.range(0));
    timed(state, [&] {
        DurableFile::writeStreamed(folder.filePath(QStringLiteral("covers")), [&snapshot](QIODevice &device) {
            for (const Book &book : snapshot.books) {
                device.write(book.coverData->bytes());
            }
        });
    });
}

void sizes(benchmark::internal::Benchmark *row)
{
    row->ArgNames({"titles"})->Arg(1'000)->Arg(10'000)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
}

BENCHMARK(SavingLaunchCache)->Apply(sizes);
BENCHMARK(CoverBytesAlone)->Apply(sizes);

} // namespace

} // namespace quire
