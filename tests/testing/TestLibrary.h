// A library of its own for one test, in a folder that goes away with it.
//
// Thread: the test's.

#pragma once

#include "persistence/database/SQLiteDatabase.h"
#include "persistence/LibraryStore.h"
#include "testing/ManualClock.h"

#include <QTemporaryDir>

#include <memory>

namespace quire::testing {

class TestLibrary
{
public:
    // With the library open; or not yet, for what stands there before.
    enum class Start { Open, Closed };
    explicit TestLibrary(Start start = Start::Open);

    LibraryStore &store() { return *m_store; }
    ManualClock &clock() { return m_clock; }

    // Opens the library, or opens it again; throws its failure.
    void open(bool recoveringFromCrash = false);
    void close();

    // Absolute paths: of the library's folder, of a file in it, of the library.
    QString folder() const { return m_folder.path(); }
    QString file(const QString &name) const { return m_folder.filePath(name); }
    QString databasePath() const { return file(QStringLiteral("quire.db")); }

    // Whether somebody holds the lease on it, and whether this process has the
    // library or a file beside it open.
    bool isLeaseHeld() const;
    bool isHeldOpen() const;

    // The file itself through a second connection that lives for one call:
    // statements to run, rows to look at. The library may be open or closed.
    void execute(const char *sql, const QList<SQLiteValue> &values = {});
    void executeScript(const char *sql);
    QList<SQLiteRow> query(const char *sql, const QList<SQLiteValue> &values = {}) const;
    // The first value; null without a row.
    SQLiteValue scalar(const char *sql, const QList<SQLiteValue> &values = {}) const;

private:
    QTemporaryDir m_folder; // first: outlives the store
    ManualClock m_clock;
    std::unique_ptr<LibraryStore> m_store;
};

} // namespace quire::testing
