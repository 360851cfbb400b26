// What a verified backup costs: the library of a reader with many covers, beside
// what the command line does for the same, a copy by sqlite3, its check, and
// sha256sum. The aim is half as long again. The disk has its part in both, so
// the two are taken in turns and each begins with nothing left to write.
//
// And what the reader feels of it: the longest time between two turns of the
// interface thread's event loop while a backup runs behind it.

#include "bench/LongestGap.h"
#include "concurrency/SystemClock.h"
#include "core/AppModel.h"
#include "core/Desktop.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/SQLiteStatement.h"
#include "persistence/database/Transaction.h"
#include "persistence/LibraryStore.h"
#include "sources/NetworkClient.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <chrono>
#include <map>
#include <random>
#include <stdexcept>

#include <unistd.h>

namespace quire {

namespace {

using Steady = std::chrono::steady_clock;

constexpr int coverBytes = 40'000;

// A library of `titles` books, each with a cover that does not compress, made
// once a size.
class BackupLibrary
{
public:
    explicit BackupLibrary(int titles)
    {
        {
            LibraryStore store(m_clock, folder());
            store.prepare(false).waitForFinished();
            store.shutdown().waitForFinished();
        }
        SQLiteDatabase database(path());
        inTransaction(database, [&] {
            SQLiteStatement book(database, R"sql(
                INSERT INTO goodreads_books (goodreads_id, title, author, shelf, description, cover_data)
                VALUES (?, ?, ?, 'read', ?, ?)
            )sql");
            for (int i = 1; i <= titles; ++i) {
                book.run({QString::number(i), QStringLiteral("The %1th Night of the Long Winter").arg(i),
                    QStringLiteral("Author %1").arg(i % 997), QStringLiteral("A reader meets a tide. ").repeated(20),
                    cover()});
            }
            database.execute("INSERT INTO settings VALUES ('maximumBackupFiles', '1')");
            database.execute("INSERT INTO settings VALUES ('lastBackupAt', '2999-01-01T00:00:00.000Z')");
        });
    }

    static BackupLibrary &of(int titles)
    {
        static std::map<int, std::unique_ptr<BackupLibrary>> libraries;
        auto &library = libraries[titles];
        if (!library) {
            library = std::make_unique<BackupLibrary>(titles);
        }
        return *library;
    }

    QString folder() const { return m_folder.path(); }
    QString path() const { return m_folder.filePath(QStringLiteral("quire.db")); }
    Clock &clock() { return m_clock; }

    // An empty folder for backups, and nothing that the disk still has to write.
    QString freshFolder() const
    {
        QString fresh = m_folder.filePath(QStringLiteral("backups"));
        QDir(fresh).removeRecursively();
        QDir().mkpath(fresh);
        ::sync();
        return fresh;
    }

private:
    QByteArray cover()
    {
        QByteArray bytes(coverBytes, '\0');
        for (qsizetype i = 0; i + 8 <= bytes.size(); i += 8) {
            const quint64 word = m_random();
            std::memcpy(bytes.data() + i, &word, sizeof word);
        }
        return bytes;
    }

    std::mt19937_64 m_random{20'261'121};
    QTemporaryDir m_folder;
    SystemClock m_clock;
};

template<typename Work>
void timed(benchmark::State &state, BackupLibrary &library, Work work)
{
    for ([[maybe_unused]] auto _ : state) {
        const QString target = library.freshFolder();
        const auto start = Steady::now();
        work(target);
        state.SetIterationTime(std::chrono::duration<double>(Steady::now() - start).count());
    }
}

void verified(benchmark::State &state)
{
    BackupLibrary &library = BackupLibrary::of(int(state.range(0)));
    LibraryStore store(library.clock(), library.folder());
    store.prepare(false).waitForFinished();
    timed(state, library, [&](const QString &target) { store.backUpDatabase(target).waitForFinished(); });
    store.shutdown().waitForFinished();
}

void run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0) {
        throw std::runtime_error("the baseline failed: " + program.toStdString());
    }
}

void commandLine(benchmark::State &state)
{
    BackupLibrary &library = BackupLibrary::of(int(state.range(0)));
    timed(state, library, [&](const QString &target) {
        const QString copy = target + QStringLiteral("/copy.db");
        run(QStringLiteral("sqlite3"), {library.path(), QStringLiteral(".backup '%1'").arg(copy)});
        run(QStringLiteral("sqlite3"), {copy, QStringLiteral("PRAGMA integrity_check")});
        run(QStringLiteral("sha256sum"), {copy});
    });
}

// Asks nobody and opens nothing.
class NoDesktop final : public Desktop
{
public:
    QCoro::Task<std::optional<QString>> chooseFolder(FolderQuestion /*question*/) override { co_return std::nullopt; }
    QCoro::Task<int> showAlert(DesktopAlert /*alert*/) override { co_return 0; }
    void open(const QUrl & /*address*/) override { }
};

void interface(benchmark::State &state)
{
    BackupLibrary &library = BackupLibrary::of(int(state.range(0)));
    NetworkClient network;
    NoDesktop desktop;
    AppModel model(std::make_unique<LibraryStore>(library.clock(), library.folder()), std::nullopt,
        {library.clock(), network, desktop, ServiceEndpoints::standard()});
    const auto starting = model.start();
    longestGap([&] { return model.isReady() || model.notice(); });
    if (!model.isReady()) {
        throw std::runtime_error("the library did not open");
    }

    // The backup that is due at a start turns another away while it runs.
    const auto backUp = [&](const QString &target) {
        const auto backingUp = model.backUpDatabase(target);
        return longestGap([&] { return backingUp.isReady(); });
    };
    while (!model.notice()) {
        backUp(library.freshFolder());
    }

    std::chrono::duration<double, std::milli> longest{0};
    timed(state, library, [&](const QString &target) {
        model.setNotice(std::nullopt);
        longest = std::max(longest, backUp(target));
        if (!model.notice() || model.notice()->kind != AppNotice::Kind::Information) {
            throw std::runtime_error("the backup failed");
        }
    });
    state.counters["longest_gap_ms"] = longest.count();
    QCoro::waitFor(model.shutdown());
}

void sizes(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(1'000)->Arg(10'000)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
}

BENCHMARK(verified)->Name("Backup/verified")->Apply(sizes);
BENCHMARK(commandLine)->Name("Backup_sqlite3/copy_check_sha256sum")->Apply(sizes);
BENCHMARK(interface)->Name("Backup/interface")->Apply(sizes);

} // namespace

} // namespace quire
