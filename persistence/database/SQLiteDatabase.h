// SQLiteDatabase is a thin layer over one SQLite connection. It owns the
// connection and adds typed values and typed failures, nothing else.
//
// The file is untrusted: it may have been written by another program or torn by
// a sync service. The connection therefore refuses to change its own schema
// behind SQLite's back, runs no application function from the schema, checks
// cells when it reads pages, and maps no file into memory, where an I/O error
// would be a signal. What it deletes is overwritten: a secret that leaves a table
// leaves the file as well.
//
// A write that is reported as done is in the file at url(), and nowhere else: when
// that file was moved, replaced or removed under the open connection, a write
// fails, although SQLite could well go on writing into what is left of it.
//
// The file itself must never be opened, read and closed by other means while a
// connection to it is open in this process: closing it drops SQLite's locks.
//
// Thread: one at a time; in the program, the executor of its owner.
//
// Failures: DatabaseError. Once closed, every operation fails with the text
// "The database is closed."

#pragma once

#include "persistence/database/SQLiteValue.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

struct sqlite3;

namespace quire {

class SQLiteDatabase
{
public:
    // url: absolute path of the file, created when absent unless readOnly.
    // Touches no byte of it. Throws DatabaseError Open.
    explicit SQLiteDatabase(const QString &url, bool readOnly = false);
    ~SQLiteDatabase(); // closes

    SQLiteDatabase(const SQLiteDatabase &) = delete;
    SQLiteDatabase &operator=(const SQLiteDatabase &) = delete;

    // Closes the connection. Harmless when it is closed.
    void close();
    bool isOpen() const { return m_handle != nullptr; }

    // Whether closing moves what a write-ahead log holds into the file, as it does
    // unless told otherwise. A file that is refused is left as it is, its log
    // beside it.
    void setFoldsLogOnClose(bool folds);

    // For a file that means no good. bytes: a text or blob that is longer fails
    // whatever reads or makes it from now on, with DatabaseError Step.
    void setMaximumLength(int bytes);
    // isUnwanted: asked now and then while a statement runs; once it says yes, the
    // statement fails with DatabaseError Step.
    void interruptWhen(std::function<bool()> isUnwanted);

    // Absolute path of the file.
    const QString &url() const { return m_url; }

    // From now on a commit counts only when the folder has been synced as well.
    // With a rollback journal it is the deleting of the journal that commits, and
    // a name that was deleted may be there again after a power cut.
    void syncFolderAfterCommits() { m_syncsFolder = true; }

    // For whoever begins or has made a commit by hand: fails when it cannot be
    // relied on. Throws DatabaseError Execute when the file is not in its place
    // any more; confirmCommit also FileError.
    void requireInPlace() const;
    void confirmCommit() const;

    // Makes all that was committed survive a power cut, also where commits are not
    // synced one by one: for what is about to be remembered elsewhere. Throws
    // DatabaseError Execute or FileError.
    void makeDurable();

    // One or more statements without parameters; rows are dropped.
    // Throws DatabaseError Execute.
    void executeScript(const char *sql);

    // One statement that yields no rows, with values for parameters 1, 2, 3 and
    // so on. The number of rows changed by the last INSERT, UPDATE or DELETE.
    // Outside a transaction it is one of its own, with what that promises.
    // Throws DatabaseError Prepare or Step, or as a commit does.
    int execute(const char *sql, const QList<SQLiteValue> &values = {});

    // Hands every row to `visit`, in step order and one at a time.
    // Throws DatabaseError Prepare or Step, and whatever `visit` throws.
    void forEachRow(const char *sql, const std::function<void(const SQLiteRow &)> &visit) const;

    // Every row, in step order; on a failure in the middle none.
    // Throws DatabaseError Prepare or Step.
    QList<SQLiteRow> query(const char *sql, const QList<SQLiteValue> &values = {}) const;

    // The first row's value of a statement of one column, nothing without a row.
    // Throws DatabaseError Prepare or Step.
    std::optional<SQLiteValue> scalar(const char *sql, const QList<SQLiteValue> &values = {}) const;

    // Whether SQLite's short or complete check of the file finds nothing.
    // Throws DatabaseError Prepare or Step.
    bool quickCheck() const;
    bool integrityCheck() const;

    // Copies the whole database at `source` to `destination`, in one step and
    // through connections of its own, so that a database in use is copied in one
    // consistent state. Throws DatabaseError Backup.
    static void backUp(const QString &source, const QString &destination);

    // For SQLiteStatement: the connection, null when closed, and what it says of
    // its last failure.
    sqlite3 *handle() const { return m_handle; }
    QString message() const;

private:
    void configure();
    bool firstValueIsOk(const char *pragma) const;

    sqlite3 *m_handle = nullptr;
    QString m_url;
    std::function<bool()> m_isUnwanted;
    bool m_syncsFolder = false;
};

} // namespace quire
