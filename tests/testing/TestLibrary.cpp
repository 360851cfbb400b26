#include "testing/TestLibrary.h"

#include "testing/Await.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace quire::testing {

TestLibrary::TestLibrary(Start start)
    : m_store(std::make_unique<LibraryStore>(m_clock, m_folder.path()))
{
    if (start == Start::Open) {
        open();
    }
}

void TestLibrary::open(bool recoveringFromCrash)
{
    await(m_store->prepare(recoveringFromCrash));
}

void TestLibrary::close()
{
    await(m_store->shutdown());
}

bool TestLibrary::isLeaseHeld() const
{
    return QFileInfo::exists(file(QStringLiteral(".Quire Locks/Quire Library.lock")));
}

bool TestLibrary::isHeldOpen() const
{
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    const QStringList names = descriptors.entryList(QDir::Files | QDir::System);
    return std::any_of(names.begin(), names.end(), [&](const QString &name) {
        return QFile::symLinkTarget(descriptors.filePath(name)).startsWith(databasePath());
    });
}

void TestLibrary::execute(const char *sql, const QList<SQLiteValue> &values)
{
    SQLiteDatabase(databasePath()).execute(sql, values);
}

void TestLibrary::executeScript(const char *sql)
{
    SQLiteDatabase(databasePath()).executeScript(sql);
}

QList<SQLiteRow> TestLibrary::query(const char *sql, const QList<SQLiteValue> &values) const
{
    return SQLiteDatabase(databasePath()).query(sql, values);
}

SQLiteValue TestLibrary::scalar(const char *sql, const QList<SQLiteValue> &values) const
{
    return SQLiteDatabase(databasePath()).scalar(sql, values).value_or(SQLiteValue());
}

} // namespace quire::testing
