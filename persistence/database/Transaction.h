// Transaction is the one form of every write: begin immediately, so that a
// second writer is met at the start and not in the middle, then all or nothing.
//
// Thread: that of its connection.

#pragma once

#include "persistence/database/SQLiteDatabase.h"

#include <functional>
#include <type_traits>

namespace quire {

class Transaction
{
public:
    // Throws DatabaseError Execute when the write lock cannot be had, or when the
    // file is not in its place any more.
    explicit Transaction(SQLiteDatabase &database);
    // Rolls back unless committed; a failure of that is dropped, since the
    // failure that led here is the one to report.
    ~Transaction();

    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;

    // Throws DatabaseError Execute; the destructor then rolls back. Throws also
    // when the commit was made but cannot be relied on, as confirmCommit() does.
    void commit();

private:
    SQLiteDatabase &m_database;
    bool m_open = true;
};

// Holds the file still while several reads make one answer: they all see the
// state of the first. Throws DatabaseError Execute.
class ReadSnapshot
{
public:
    explicit ReadSnapshot(SQLiteDatabase &database);
    ~ReadSnapshot(); // statements that read must be gone by then

    ReadSnapshot(const ReadSnapshot &) = delete;
    ReadSnapshot &operator=(const ReadSnapshot &) = delete;

private:
    SQLiteDatabase &m_database;
};

// Runs `work` in a transaction and gives its result. The first failure, of the
// work or of the commit, is passed on with nothing changed.
template<typename Work>
auto inTransaction(SQLiteDatabase &database, Work &&work) -> std::invoke_result_t<Work>
{
    Transaction transaction(database);
    if constexpr (std::is_void_v<std::invoke_result_t<Work>>) {
        std::invoke(work);
        transaction.commit();
    } else {
        auto result = std::invoke(work);
        transaction.commit();
        return result;
    }
}

} // namespace quire
