// A library's folder for tests of its lease: locks of other machines with their
// dates, and what an attempt to take one comes to.

#pragma once

#include "reliability/QuireLibraryLease.h"
#include "testing/ManualClock.h"
#include "testing/TestFiles.h"

#include <gtest/gtest.h>

#include <QStringList>
#include <QTemporaryDir>

namespace quire::testing {

using namespace std::chrono_literals;

class LeaseTest : public ::testing::Test
{
protected:
    // Not held. Few rounds: most tests know what each of them finds.
    QuireLibraryLease lease(int rounds = 3) const { return {library, clock, host, {.rounds = rounds}}; }

    // A record of another machine, whose process number lives on this one too.
    QuireLibraryLeaseOwner rival() const;

    // A lock with that record, whose last sign of life is `age` ago.
    void putLock(const QuireLibraryLeaseOwner &owner, Instant::duration age) const;

    // A lock whose maker wrote no record.
    void putOwnerlessLock(Instant::duration age) const;

    // Dates a file, a folder or a link itself.
    void setAge(const QString &path, Instant::duration age) const;

    // Acquires, expecting to get it and to leave nothing else behind.
    void expectTaken(QuireLibraryLease lease) const;

    // Acquires, expecting that somebody else has it and that nothing changes.
    void expectBusy(QuireLibraryLease lease) const;

    // The record in the lock.
    std::optional<QuireLibraryLeaseOwner> stored() const { return QuireLibraryLeaseOwner::read(ownerPath); }

    // Its date.
    std::optional<Instant> heartbeat() const { return LeaseEvidence::gather(lock, ownerPath).ownerDate; }

    // What lies in the folder of locks.
    QStringList activity() const;

    ManualClock clock;
    QTemporaryDir folder;
    // As awkward as a reader's folder can be; not created.
    QString library = folder.filePath(QStringLiteral("Böcker %1 \"书\" 100%/Quire's Library"));
    QString locks = library + QStringLiteral("/.Quire Locks");
    QString lock = locks + QStringLiteral("/Quire Library.lock");
    QString ownerPath = lock + QStringLiteral("/Owner.json");
    QuireHostIdentity host = QuireHostIdentity::make("this machine", QStringLiteral("Shelf.local"), std::nullopt);
};

void setMode(const QString &path, mode_t mode);

// The number of a process that has ended.
pid_t endedProcess();

// What the failure of a busy library says: `detail` in its place.
QString busyText(const QString &detail = {});

} // namespace quire::testing
