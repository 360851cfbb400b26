#include "fuzz/BrokenPromise.h"
#include "fuzz/Promises.h"
#include "fuzz/ScratchFolder.h"

#include "concurrency/SystemClock.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/LibraryStore.h"

#include <QFile>

#include <sqlite3.h>

#include <cmath>
#include <memory>

namespace quire::fuzz::promises {

namespace {

const QString name = QStringLiteral("quire.db");
constexpr char magic[] = "SQLite format 3"; // with its zero

// What a library of its own making holds, as one file.
QByteArray makeLibrary()
{
    const ScratchFolder folder;
    const SystemClock clock;
    LibraryStore store(clock, folder.path());
    store.prepare(false).waitForFinished();
    ManualBookDraft draft;
    draft.title = QStringLiteral("The Sea, the Sea");
    draft.author = QStringLiteral("Iris Murdoch");
    store.addManualBook(draft, CoverBytes(QByteArray(3000, 'c'))).waitForFinished();
    store
        .addAudiobook(
            {.asin = QStringLiteral("A1"), .title = QStringLiteral("Dune")}, QStringLiteral("to-listen"), {}, {})
        .waitForFinished();
    store.setSetting(QStringLiteral("goodreadsUserId"), QStringLiteral("1")).waitForFinished();
    store.shutdown().waitForFinished();
    return bytesOf(folder.filePath(name));
}

const QByteArray &ownLibrary()
{
    static const QByteArray bytes = makeLibrary();
    return bytes;
}

QByteArray patched(QByteArray library, const QByteArray &patches)
{
    for (qsizetype at = 0; at + 4 <= patches.size(); at += 4) {
        const auto byte = [&patches, at](qsizetype of) { return qsizetype(uchar(patches[at + of])); };
        const qsizetype place = (byte(0) << 16 | byte(1) << 8 | byte(2)) % library.size();
        library[place] = char(uchar(library[place]) ^ uchar(patches[at + 3]));
    }
    return library;
}

// The statements may do anything to the one file, and nothing to any other. Those
// that fail are passed over.
QByteArray changedBy(const QByteArray &statements, const QByteArray &library)
{
    constexpr int longestValue = 1 << 20;
    constexpr int mostQuestions = 1000;
    constexpr int instructionsBetweenQuestions = 1000;
    static const ScratchFolder folder;
    folder.clear();
    const QString path = folder.filePath(name);
    folder.put(path, library);
    sqlite3 *raw = nullptr;
    sqlite3_open(QFile::encodeName(path).constData(), &raw);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> database(raw, sqlite3_close);
    sqlite3_limit(raw, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_limit(raw, SQLITE_LIMIT_LENGTH, longestValue);
    int questions = 0;
    const auto ask = [](void *asked) { return ++*static_cast<int *>(asked) > mostQuestions ? 1 : 0; };
    sqlite3_progress_handler(raw, instructionsBetweenQuestions, ask, &questions);
    for (const QByteArray &statement : statements.split('\n')) {
        sqlite3_exec(raw, statement.constData(), nullptr, nullptr, nullptr);
    }
    sqlite3_exec(raw, "PRAGMA journal_mode = DELETE", nullptr, nullptr, nullptr); // one file
    return bytesOf(path);
}

QByteArray databaseOf(const QByteArray &input)
{
    if (input.startsWith("SQL\n")) {
        return changedBy(input.sliced(4), ownLibrary());
    }
    return input.startsWith("PATCH\n") ? patched(ownLibrary(), input.sliced(6)) : input;
}

// A copy of the library in a folder, to be looked at without the rules of the store.
// A look ends where the file does not let it go on, or takes too long.
class Copy
{
public:
    explicit Copy(const QString &folder)
    {
        m_folder.clear();
        for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-journal")}) {
            QFile::copy(folder + u'/' + name + suffix, m_folder.filePath(name + suffix));
        }
    }

    // Nothing when not all of them can be read.
    std::optional<QStringList> titles() const
    {
        constexpr const char *lists[] = {"SELECT id, title FROM main.goodreads_books NOT INDEXED ORDER BY rowid",
            "SELECT id, title FROM main.audible_books NOT INDEXED ORDER BY rowid"};
        QStringList titles;
        try {
            const auto database = open();
            for (const char *list : lists) {
                database->forEachRow(list, [&titles](const SQLiteRow &row) {
                    titles.append(
                        row.string(QStringLiteral("id"), {}) + u' ' + row.string(QStringLiteral("title"), {}));
                });
            }
        } catch (const DatabaseError &) {
            return std::nullopt;
        }
        return titles;
    }

    // Whether a real in it is beyond all integers: to ask for it as one is a fault
    // that ends the program (SQLiteValue::intValue).
    bool holdsFault() const
    {
        try {
            const auto database = open();
            for (const SQLiteRow &table : database->query("SELECT DISTINCT tbl_name FROM sqlite_schema")) {
                const QString quoted
                    = table.string(QStringLiteral("tbl_name"), {}).replace(u'"', QStringLiteral("\"\""));
                if (holdsFault(*database, QStringLiteral("SELECT * FROM main.\"%1\"").arg(quoted).toUtf8())) {
                    return true;
                }
            }
        } catch (const DatabaseError &) {
        }
        return false;
    }

private:
    std::unique_ptr<SQLiteDatabase> open() const
    {
        constexpr int mostQuestions = 1000;
        auto database = std::make_unique<SQLiteDatabase>(m_folder.filePath(name));
        database->interruptWhen([questions = 0]() mutable { return ++questions > mostQuestions; });
        return database;
    }

    static bool holdsFault(const SQLiteDatabase &database, const QByteArray &select)
    {
        constexpr double beyond = 9223372036854775808.0;
        sqlite3_stmt *raw = nullptr;
        sqlite3_prepare_v2(database.handle(), select.constData(), -1, &raw, nullptr);
        const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> statement(raw, sqlite3_finalize);
        while (raw && sqlite3_step(raw) == SQLITE_ROW) {
            for (int column = 0; column < sqlite3_column_count(raw); ++column) {
                const double real = sqlite3_column_double(raw, column);
                if (sqlite3_column_type(raw, column) == SQLITE_FLOAT
                    && (std::isnan(real) || real < -beyond || real >= beyond)) {
                    return true;
                }
            }
        }
        return false;
    }

    static inline const ScratchFolder m_folder;
};

} // namespace

void databaseFile(const QByteArray &bytes, const UseLibrary &use)
{
    static const ScratchFolder folder;
    folder.clear();
    const QByteArray file = databaseOf(bytes);
    const QString path = folder.filePath(name);
    folder.put(path, file);
    const Copy copy(folder.path());
    if (copy.holdsFault()) {
        return;
    }
    const auto before = copy.titles();

    const bool wasOpened = use(folder.path());

    // A file of one byte is one of none to SQLite.
    if (file.size() > 1 && !file.startsWith(QByteArray(magic, sizeof magic))) {
        require(!wasOpened, "a library in what is no database");
        require(bytesOf(path) == file, "a file that was refused and changed");
    }
    if (before) {
        require(Copy(folder.path()).titles() == before, "a library without its titles");
    }
}

} // namespace quire::fuzz::promises
