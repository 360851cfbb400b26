#include "bench/OwnHome.h"

#include "bench/DrawnCovers.h"
#include "concurrency/SystemClock.h"
#include "persistence/AppDirectories.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/database/SQLiteStatement.h"
#include "persistence/database/Transaction.h"
#include "persistence/LibraryStore.h"

#include <QDir>
#include <QFile>

namespace quire {

namespace {

constexpr int distinctCovers = 100;

QList<QByteArray> drawnCovers(QSize size)
{
    QList<QByteArray> covers;
    for (int number = 0; number < distinctCovers; ++number) {
        covers.append(encoded(drawnCover(number, number % 4 == 0 ? QSize(size.width(), size.width()) : size), "jpeg"));
    }
    return covers;
}

} // namespace

void moveInto(const QString &home)
{
    for (const char *variable : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"}) {
        qputenv(variable, QFile::encodeName(home));
    }
    QDir(home).mkpath(QStringLiteral("Quire"));
    QFile file(home + QStringLiteral("/Quire/Quire.conf"));
    file.open(QIODevice::WriteOnly);
    file.write("[endpoints]\n");
    for (const char *service : {"goodreads", "audibleAPI", "audibleWeb", "openLibrary", "openLibraryCovers",
             "appleBooks", "netlify", "update", "help"}) {
        file.write(QByteArray(service) + "=http://127.0.0.1:9\n");
    }
}

void fillLibrary(const BenchLibrary &library)
{
    const SystemClock clock;
    LibraryStore store(clock, AppDirectories::supportDirectory());
    store.prepare(false).waitForFinished();
    SQLiteDatabase database(AppDirectories::supportDirectory() + QStringLiteral("/quire.db"));
    const QList<QByteArray> covers = drawnCovers(library.coverSize);
    const auto fill = [&covers](SQLiteStatement &row, int titles) {
        for (int number = 0; number < titles; ++number) {
            const QString name = QStringLiteral("Title %1").arg(number, 5, 10, QLatin1Char('0'));
            row.run({name, name, covers.at(number % distinctCovers)});
        }
    };
    inTransaction(database, [&] {
        SQLiteStatement book(database,
            "INSERT INTO goodreads_books (goodreads_id, title, shelf, cover_data, cover_data_source)"
            " VALUES (?, ?, 'read', ?, 'https://covers.example/1.jpg')");
        fill(book, library.books);
        SQLiteStatement audiobook(database,
            "INSERT INTO audible_books (asin, title, status, cover_data, cover_data_source)"
            " VALUES (?, ?, 'read', ?, 'https://covers.example/1.jpg')");
        fill(audiobook, library.audiobooks);
        for (const char *key : {"automaticGoodreadsSync", "automaticAudibleSync"}) {
            database.execute("INSERT OR REPLACE INTO settings VALUES (?, '0')", {QString::fromLatin1(key)});
        }
        database.execute("INSERT OR REPLACE INTO settings VALUES ('lastBackupAt', '2999-01-01T00:00:00.000Z')");
        database.execute("INSERT OR REPLACE INTO settings VALUES ('selectedTab', ?)", {library.selectedTab});
    });
    store.shutdown().waitForFinished();
}

} // namespace quire
