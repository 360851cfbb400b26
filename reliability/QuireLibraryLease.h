// The right to use a library, across the machines that share its folder through
// a sync service, where SQLite's own locks do not reach. The lease is a folder
// whose creation is atomic, with a record of its owner inside, whose date a
// heartbeat keeps fresh. A lock that a crash left behind is recognised and taken
// away.
//
//   .Quire Locks/                      home of all lock activity
//     Quire Library.lock/              exists exactly while the lease is held
//       Owner.json                     who holds it; its date is the heartbeat
//     Released UUID, Abandoned UUID    locks on their way out
//
// The lease is advisory: a holder that was silent for too long (a suspended
// machine) loses it without being told, and a sync service can let two machines
// take one. It then leaves the successor's lock alone.
//
// Of several processes on this machine one at a time decides about the lock
// (LeaseGuard), so that exactly one takes over what all find abandoned.
//
// Thread: construction and all operations on one thread, the store's executor.
// acquire() and release() block on the disk and in short sleeps.

#pragma once

#include "concurrency/Clock.h"
#include "reliability/LeaseEvidence.h"
#include "reliability/LeaseGuard.h"
#include "reliability/LeaseHeartbeat.h"
#include "reliability/QuireHostIdentity.h"
#include "reliability/QuireLibraryLeaseOwner.h"

#include <QString>

#include <chrono>
#include <optional>

namespace quire {

// The product's values; tests have their own.
struct QuireLibraryLeaseTiming
{
    int rounds = 51; // attempts of one acquire()
    std::chrono::microseconds pause{2'000}; // between two attempts
    std::chrono::milliseconds heartbeat = std::chrono::seconds(30); // between two beats
    LeasePatience patience;
    // For how long release() lets another process of this machine decide about
    // the lock, before it goes on all the same.
    std::chrono::milliseconds guard = std::chrono::seconds(2);
};

class QuireLibraryLease
{
public:
    using Timing = QuireLibraryLeaseTiming;

    // A lease on the library in `libraryDirectory`, absolute; not held. Touches
    // nothing on disk. clock: outlives the lease.
    QuireLibraryLease(const QString &libraryDirectory, const Clock &clock,
        const QuireHostIdentity &host = QuireHostIdentity::ofThisMachine(), const Timing &timing = Timing());

    // Releases it.
    ~QuireLibraryLease();

    QuireLibraryLease(const QuireLibraryLease &) = delete;
    QuireLibraryLease &operator=(const QuireLibraryLease &) = delete;

    // Takes the lease, creating the folder of locks with its parents; a fraction
    // of a second in all, it does not wait for the holder. To be called while it
    // is not held.
    // Throws FileError when the folder of locks cannot be created, and
    // DatabaseError LibraryBusy, with a message for the reader, when somebody
    // else holds the lease.
    // Returns without the lease, isAcquired() false and no heartbeat, when the
    // last round found the lock out of the way: after a recovery in the very last
    // round, and where locks cannot be created at all (a read-only or full disk).
    // The library is then used without a lease.
    void acquire();

    // Gives the lease up: the lock is free at once. Leaves a lock that has passed
    // to somebody else alone. Does nothing when not held; never fails. Takes as
    // long as Timing::guard at most, and that only when another process stands
    // still in the middle of deciding about this lock.
    void release();

    // Whether acquire() took it and release() has not given it up. True also when
    // a successor has taken it over in the meantime.
    bool isAcquired() const { return m_acquired; }

    // What this lease writes as its owner; the token is its own.
    const QuireLibraryLeaseOwner &owner() const { return m_owner; }

private:
    enum class Attempt { Taken, OutOfTheWay, Held };

    Attempt attempt(LeaseGuard &guard) const;
    bool take() const;
    bool recoverAbandonedLockIfNeeded() const;
    bool lockExists() const;
    void giveUp() const;
    [[noreturn]] void failBusy() const;

    const Clock &m_clock;
    Timing m_timing;
    QSet<QString> m_legacyKeys;
    QString m_libraryDirectory;
    QString m_locksDirectory;
    QString m_lockPath;
    QString m_ownerPath;
    QuireLibraryLeaseOwner m_owner;
    bool m_acquired = false;
    std::optional<LeaseHeartbeat> m_heartbeat;
};

} // namespace quire
