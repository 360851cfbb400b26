#include "reliability/QuireLibraryLease.h"

#include "files/DurableFile.h"
#include "files/FileError.h"
#include "persistence/database/DatabaseError.h"
#include "records/UUIDText.h"

#include <QFile>
#include <QSet>

#include <cstdio>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace quire {

namespace {

bool rename(const QString &from, const QString &to)
{
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

// With all that is in it; a link is removed, not followed. An empty one goes
// even where too many files are open for a look into it.
bool removeFolder(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    if (::rmdir(name.constData()) == 0) {
        return true;
    }
    std::error_code error;
    std::filesystem::remove_all(name.toStdString(), error);
    return !error;
}

// Leases of this process that ended without their lock, the disk being away or
// dead. Their locks name a process that lives, and yet nobody holds them.
class LeftBehind
{
public:
    static LeftBehind &instance()
    {
        static LeftBehind &leftBehind = *new LeftBehind; // leases may end after static objects
        return leftBehind;
    }

    void add(const QUuid &token)
    {
        const std::lock_guard hold(m_mutex);
        m_tokens.insert(token);
    }
    bool contains(const QUuid &token)
    {
        const std::lock_guard hold(m_mutex);
        return m_tokens.contains(token);
    }

private:
    std::mutex m_mutex;
    QSet<QUuid> m_tokens;
};

} // namespace

QuireLibraryLease::QuireLibraryLease(
    const QString &libraryDirectory, const Clock &clock, const QuireHostIdentity &host, const Timing &timing)
    : m_clock(clock)
    , m_timing(timing)
    , m_legacyKeys(host.legacyKeys)
    , m_libraryDirectory(libraryDirectory)
    , m_locksDirectory(libraryDirectory + QStringLiteral("/.Quire Locks"))
    , m_lockPath(m_locksDirectory + QStringLiteral("/Quire Library.lock"))
    , m_ownerPath(m_lockPath + QStringLiteral("/Owner.json"))
    , m_owner{QUuid::createUuid(), ::getpid(), host.hostName, host.current, clock.now()}
{
}

QuireLibraryLease::~QuireLibraryLease()
{
    release();
}

void QuireLibraryLease::acquire()
{
    DurableFile::createFolder(m_locksDirectory);
    LeaseGuard guard(m_libraryDirectory);
    for (int round = 1; round <= m_timing.rounds; ++round) {
        switch (attempt(guard)) {
        case Attempt::Taken:
            m_acquired = true;
            m_heartbeat.emplace(m_ownerPath, m_owner.token, m_clock, m_timing.heartbeat);
            return;
        case Attempt::OutOfTheWay:
            continue;
        case Attempt::Held:
            break;
        }
        if (round == m_timing.rounds) {
            failBusy();
        }
        std::this_thread::sleep_for(m_timing.pause);
    }
}

void QuireLibraryLease::release()
{
    m_heartbeat.reset();
    if (m_acquired) {
        giveUp();
        m_acquired = false;
    }
}

// One round. Taking stands under the guard as well as recovery: between the
// making of the lock and its record, another could come to think it abandoned.
QuireLibraryLease::Attempt QuireLibraryLease::attempt(LeaseGuard &guard) const
{
    const std::unique_lock hold(guard, std::try_to_lock);
    if (!hold) {
        return Attempt::Held; // by a process that decides about it at this moment
    }
    if (take()) {
        return Attempt::Taken;
    }
    return recoverAbandonedLockIfNeeded() ? Attempt::OutOfTheWay : Attempt::Held;
}

// The atomic step, and the record.
bool QuireLibraryLease::take() const
{
    if (::mkdir(QFile::encodeName(m_lockPath).constData(), 0777) != 0) {
        return false;
    }
    try {
        DurableFile::write(m_ownerPath, m_owner.encoded());
    } catch (const FileError &) {
        removeFolder(m_lockPath);
        return false;
    }
    return true;
}

// True when the lock is out of the way.
bool QuireLibraryLease::recoverAbandonedLockIfNeeded() const
{
    if (!lockExists()) {
        return true;
    }
    const LeaseEvidence evidence = LeaseEvidence::gather(m_lockPath, m_ownerPath);
    const bool isOurOwn = evidence.owner && LeftBehind::instance().contains(evidence.owner->token);
    if (!isOurOwn && !isAbandoned(evidence, m_owner.hostID, m_legacyKeys, m_clock.now(), m_timing.patience)) {
        return false;
    }
    const QString abandoned = QStringLiteral("%1/Abandoned %2").arg(m_locksDirectory, UUIDText::fresh());
    // One of two machines that both try it succeeds; the other finds nothing.
    if (rename(m_lockPath, abandoned) && removeFolder(abandoned)) {
        return true;
    }
    return !lockExists();
}

// Under the guard: between the look at the record and the renaming, a successor
// could put its own lock in the place.
void QuireLibraryLease::giveUp() const
{
    using Monotonic = std::chrono::steady_clock;
    LeaseGuard guard(m_libraryDirectory);
    std::unique_lock hold(guard, std::try_to_lock);
    for (const auto end = Monotonic::now() + m_timing.guard; !hold && Monotonic::now() < end;) {
        std::this_thread::sleep_for(m_timing.pause);
        static_cast<void>(hold.try_lock());
    }
    const auto owner = QuireLibraryLeaseOwner::read(m_ownerPath);
    if (owner && owner->token != m_owner.token) {
        return;
    }
    const QString released = QStringLiteral("%1/Released %2").arg(m_locksDirectory, UUIDText::of(m_owner.token));
    if (rename(m_lockPath, released)) { // the lock is free from here on
        removeFolder(released);
    } else {
        LeftBehind::instance().add(m_owner.token);
    }
}

bool QuireLibraryLease::lockExists() const
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(m_lockPath).constData(), &status) == 0;
}

void QuireLibraryLease::failBusy() const
{
    const auto owner = QuireLibraryLeaseOwner::read(m_ownerPath);
    const QString detail = owner ? QStringLiteral(" It is currently open on %1.").arg(owner->hostName) : QString();
    throw DatabaseError(DatabaseError::Kind::LibraryBusy,
        QStringLiteral("This Quire library is already in use.%1 Close Quire on the other Mac, allow the cloud "
                       "service to finish syncing, and then open Quire again.")
            .arg(detail));
}

} // namespace quire
