#include "persistence/database/Transaction.h"

#include "persistence/database/DatabaseError.h"

namespace quire {

namespace {

void rollBack(SQLiteDatabase &database)
{
    try {
        database.executeScript("ROLLBACK");
    } catch (const DatabaseError &) {
        // SQLite may have rolled back already; there is nothing left to do.
    }
}

} // namespace

Transaction::Transaction(SQLiteDatabase &database)
    : m_database(database)
{
    m_database.requireInPlace();
    m_database.executeScript("BEGIN IMMEDIATE TRANSACTION");
}

Transaction::~Transaction()
{
    if (m_open) {
        rollBack(m_database);
    }
}

void Transaction::commit()
{
    m_database.executeScript("COMMIT");
    m_open = false;
    m_database.confirmCommit();
}

ReadSnapshot::ReadSnapshot(SQLiteDatabase &database)
    : m_database(database)
{
    m_database.executeScript("BEGIN TRANSACTION");
}

ReadSnapshot::~ReadSnapshot()
{
    rollBack(m_database); // nothing was written: the quicker way to end
}

} // namespace quire
