#include "persistence/database/Transaction.h"

#include "persistence/database/DatabaseError.h"

namespace quire {

Transaction::Transaction(SQLiteDatabase &database)
    : m_database(database)
{
    m_database.executeScript("BEGIN IMMEDIATE TRANSACTION");
}

Transaction::~Transaction()
{
    if (!m_open) {
        return;
    }
    try {
        m_database.executeScript("ROLLBACK");
    } catch (const DatabaseError &) {
        // SQLite may have rolled back already; there is nothing left to do.
    }
}

void Transaction::commit()
{
    m_database.executeScript("COMMIT");
    m_open = false;
}

} // namespace quire
