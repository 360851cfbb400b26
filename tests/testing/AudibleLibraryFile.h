// A library as the Audible application keeps it: a database of its tables, as
// far as Quire looks at them, with the titles that a test puts into it.
//
// Thread: the test's.

#pragma once

#include "persistence/database/SQLiteDatabase.h"

#include <QMap>
#include <QString>

namespace quire::testing {

// Values by the names of the application's own columns.
using AudibleColumns = QMap<QString, SQLiteValue>;

class AudibleLibraryFile
{
public:
    // path: of a new file, in a folder that exists.
    explicit AudibleLibraryFile(const QString &path);

    // A title in its three tables, or in two when no column of the third is given.
    // columns: beside its ASIN and title; contentType is "Product" unless given.
    void addTitle(const QString &asin, const QString &title, const AudibleColumns &columns = {});

    // The file through its one connection: to keep a write-ahead log beside it, to
    // lock it, to spoil it.
    SQLiteDatabase &database() { return m_database; }

private:
    void insert(const QString &table, const AudibleColumns &columns);

    SQLiteDatabase m_database;
};

} // namespace quire::testing
