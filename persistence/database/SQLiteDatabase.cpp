#include "persistence/database/SQLiteDatabase.h"

#include "files/DurableFile.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/SQLiteStatement.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <memory>

namespace quire {

namespace {

constexpr int readOnlyFlags = SQLITE_OPEN_READONLY | SQLITE_OPEN_FULLMUTEX;
constexpr int readWriteFlags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
constexpr int busyTimeoutMilliseconds = 5000;
constexpr int instructionsBetweenQuestions = 1000; // of SQLite's machine; well below a millisecond

static_assert(readOnlyFlags == 0x10001 && readWriteFlags == 0x10006);

// The two connections of a copy: closed with sqlite3_close, in the order
// destination, source.
struct Close
{
    void operator()(sqlite3 *handle) const { sqlite3_close(handle); }
};
using Connection = std::unique_ptr<sqlite3, Close>;

Connection openForCopy(const QString &path, int flags, const QString &failure)
{
    sqlite3 *raw = nullptr;
    const int code = sqlite3_open_v2(QFile::encodeName(path).constData(), &raw, flags, nullptr);
    Connection connection(raw); // SQLite gives one even when opening fails
    if (code != SQLITE_OK || !connection) {
        throw DatabaseError(DatabaseError::Kind::Backup, failure);
    }
    return connection;
}

template<typename Visit>
void visitRows(SQLiteStatement &statement, const Visit &visit)
{
    QList<QString> names;
    for (int column = 0; column < statement.columnCount(); ++column) {
        names.append(statement.columnName(column));
    }
    while (statement.step()) {
        SQLiteRow row;
        for (int column = 0; column < int(names.size()); ++column) {
            row.set(names[column], statement.value(column));
        }
        visit(row);
    }
}

} // namespace

SQLiteDatabase::SQLiteDatabase(const QString &url, bool readOnly)
    : m_url(url)
{
    const int code = sqlite3_open_v2(
        QFile::encodeName(url).constData(), &m_handle, readOnly ? readOnlyFlags : readWriteFlags, nullptr);
    if (code != SQLITE_OK || !m_handle) {
        const QString text
            = m_handle ? QString::fromUtf8(sqlite3_errmsg(m_handle)) : QStringLiteral("Unknown SQLite error");
        sqlite3_close(m_handle);
        throw DatabaseError(DatabaseError::Kind::Open, text);
    }
    sqlite3_busy_timeout(m_handle, busyTimeoutMilliseconds);
    configure();
}

SQLiteDatabase::~SQLiteDatabase()
{
    close();
}

void SQLiteDatabase::configure()
{
    // None of these reads the file, and none can fail on an open connection.
    // Temporary files would make the sorting of a large library half as slow again.
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_exec(m_handle,
        "PRAGMA cell_size_check = ON; PRAGMA mmap_size = 0; PRAGMA secure_delete = ON; PRAGMA temp_store = MEMORY;",
        nullptr, nullptr, nullptr);
}

void SQLiteDatabase::close()
{
    sqlite3_close_v2(m_handle);
    m_handle = nullptr;
}

void SQLiteDatabase::setFoldsLogOnClose(bool folds)
{
    if (m_handle) {
        sqlite3_db_config(m_handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, folds ? 0 : 1, nullptr);
    }
}

void SQLiteDatabase::setMaximumLength(int bytes)
{
    if (m_handle) {
        sqlite3_limit(m_handle, SQLITE_LIMIT_LENGTH, bytes);
    }
}

void SQLiteDatabase::interruptWhen(std::function<bool()> isUnwanted)
{
    m_isUnwanted = std::move(isUnwanted);
    if (m_handle) {
        const auto ask = [](void *self) { return static_cast<SQLiteDatabase *>(self)->m_isUnwanted() ? 1 : 0; };
        sqlite3_progress_handler(m_handle, instructionsBetweenQuestions, ask, this);
    }
}

QString SQLiteDatabase::message() const
{
    return m_handle ? QString::fromUtf8(sqlite3_errmsg(m_handle)) : QStringLiteral("The database is closed.");
}

void SQLiteDatabase::executeScript(const char *sql)
{
    if (!m_handle) {
        throw DatabaseError(DatabaseError::Kind::Execute, message());
    }
    char *raw = nullptr;
    const int code = sqlite3_exec(m_handle, sql, nullptr, nullptr, &raw);
    const std::unique_ptr<char, decltype(&sqlite3_free)> returned(raw, sqlite3_free);
    if (code != SQLITE_OK) {
        throw DatabaseError(DatabaseError::Kind::Execute, returned ? QString::fromUtf8(returned.get()) : message());
    }
}

void SQLiteDatabase::requireInPlace() const
{
    int hasMoved = 0;
    if (m_handle) {
        sqlite3_file_control(m_handle, "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved);
    }
    if (hasMoved != 0) {
        throw DatabaseError(DatabaseError::Kind::Execute,
            QStringLiteral("The library file was moved, replaced or removed while it was open."));
    }
}

void SQLiteDatabase::confirmCommit() const
{
    // After the commit: what happened to the file before it is seen now.
    requireInPlace();
    if (m_syncsFolder) {
        DurableFile::syncFolder(QFileInfo(m_url).path());
    }
}

void SQLiteDatabase::makeDurable()
{
    executeScript("PRAGMA wal_checkpoint(PASSIVE)"); // begins by syncing the log; without a log, nothing
    DurableFile::syncFolder(QFileInfo(m_url).path());
}

int SQLiteDatabase::execute(const char *sql, const QList<SQLiteValue> &values)
{
    const bool isTransaction = m_handle && sqlite3_get_autocommit(m_handle) != 0;
    if (!isTransaction) {
        return SQLiteStatement(*this, sql).run(values);
    }
    requireInPlace();
    const int changes = SQLiteStatement(*this, sql).run(values);
    confirmCommit();
    return changes;
}

void SQLiteDatabase::forEachRow(const char *sql, const std::function<void(const SQLiteRow &)> &visit) const
{
    SQLiteStatement statement(*this, sql);
    visitRows(statement, visit);
}

QList<SQLiteRow> SQLiteDatabase::query(const char *sql, const QList<SQLiteValue> &values) const
{
    SQLiteStatement statement(*this, sql);
    statement.bind(values);
    QList<SQLiteRow> rows;
    visitRows(statement, [&rows](const SQLiteRow &row) { rows.append(row); });
    return rows;
}

std::optional<SQLiteValue> SQLiteDatabase::scalar(const char *sql, const QList<SQLiteValue> &values) const
{
    SQLiteStatement statement(*this, sql);
    statement.bind(values);
    std::optional<SQLiteValue> first;
    while (statement.step()) { // to the end, where a late failure shows
        if (!first) {
            first = statement.value(0);
        }
    }
    return first;
}

bool SQLiteDatabase::firstValueIsOk(const char *pragma) const
{
    // What it finds first is the answer: going on to look, it may fail on that.
    SQLiteStatement statement(*this, pragma);
    return statement.step() && statement.string(0, {}) == QStringLiteral("ok");
}

bool SQLiteDatabase::quickCheck() const
{
    return firstValueIsOk("PRAGMA quick_check");
}

bool SQLiteDatabase::integrityCheck() const
{
    return firstValueIsOk("PRAGMA integrity_check");
}

void SQLiteDatabase::backUp(const QString &source, const QString &destination)
{
    const Connection from
        = openForCopy(source, readOnlyFlags, QStringLiteral("The source database could not be opened."));
    const Connection to
        = openForCopy(destination, readWriteFlags, QStringLiteral("The destination database could not be opened."));
    sqlite3_backup *const backup = sqlite3_backup_init(to.get(), "main", from.get(), "main");
    // One step for the whole file: between steps a foreign writer would make
    // SQLite begin anew, for ever.
    const int stepped = backup ? sqlite3_backup_step(backup, -1) : SQLITE_ERROR;
    const int finished = backup ? sqlite3_backup_finish(backup) : SQLITE_ERROR;
    if ((stepped != SQLITE_DONE && stepped != SQLITE_OK) || finished != SQLITE_OK) {
        throw DatabaseError(DatabaseError::Kind::Backup, QString::fromUtf8(sqlite3_errmsg(to.get())));
    }
}

} // namespace quire
