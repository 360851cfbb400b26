// What a lock folder tells about whoever holds it, and whether it is abandoned.
//
// Thread: any; gather() blocks on the disk.

#pragma once

#include "records/Instant.h"
#include "reliability/QuireHostIdentity.h"
#include "reliability/QuireLibraryLeaseOwner.h"

#include <QString>

#include <chrono>
#include <optional>

namespace quire {

struct LeaseEvidence
{
    std::optional<QuireLibraryLeaseOwner> owner; // absent: no record, or no whole one
    std::optional<Instant> ownerDate; // when the record's file last changed: the heartbeat
    std::optional<Instant> lockDate; // when the lock folder last changed

    // What lies at the two absolute paths now; what cannot be read is absent.
    static LeaseEvidence gather(const QString &lockPath, const QString &ownerPath);

    // The last sign of life.
    Instant lastSign() const;
};

// How long a lock may be silent.
struct LeasePatience
{
    // Without a record: the time that a concurrent taker needs to write it.
    std::chrono::milliseconds ownerless = std::chrono::seconds(2);
    // With one: ten heartbeats.
    std::chrono::milliseconds silent = std::chrono::seconds(300);
};

// True when the lock's holder is gone: a process of this machine that no longer
// exists, however fresh the lock looks, or one silent for longer than
// `patience`, wherever it is. A sign of life from the future is no silence.
// ownHostID: this machine's key, absent when it has none; legacyKeys: by which a
// record without a hostID is recognised as this machine's.
bool isAbandoned(const LeaseEvidence &evidence, const std::optional<QString> &ownHostID,
    const QSet<QString> &legacyKeys, Instant now, const LeasePatience &patience);

} // namespace quire
