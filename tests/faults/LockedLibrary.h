// A library's folder and the lock in it, as it lies on the disk: made, dated and
// looked at without the product's help.
//
// Thread: the test's.

#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QUuid>

#include <chrono>
#include <optional>

#include <sys/types.h>

namespace quire::testing {

class LockedLibrary
{
public:
    QString path() const { return m_folder.path(); }

    // A lock folder without a record, made `age` ago.
    void putLock(std::chrono::seconds age) const;

    // A lock whose record holds these bytes and was last touched `age` ago.
    void putRecord(const QByteArray &bytes, std::chrono::seconds age) const;

    // Dates the record.
    void dateRecord(std::chrono::seconds age) const;

    // For how long the record has not been touched; nothing when there is none.
    std::optional<std::chrono::seconds> recordAge() const;

    // The token in the record; nothing when there is none to be read.
    std::optional<QUuid> holder() const;

    // Removes all locks; false when there was anything.
    bool clear() const;

private:
    QTemporaryDir m_folder;
    QString m_locks = m_folder.filePath(QStringLiteral(".Quire Locks"));
    QString m_lock = m_locks + QStringLiteral("/Quire Library.lock");
    QString m_record = m_lock + QStringLiteral("/Owner.json");
};

// The number of a process that has ended.
pid_t endedProcess();

} // namespace quire::testing
