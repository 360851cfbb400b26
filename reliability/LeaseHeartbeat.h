// Keeps a held lock fresh by setting the date of its owner's record. Only the
// date changes, so that a sync service has nothing but a date to carry.
//
// Thread: made and destroyed on one thread; beats on its own, holding the path
// and the token and nothing of the lease. Failures of a beat are dropped.

#pragma once

#include "concurrency/Clock.h"

#include <QString>
#include <QUuid>

#include <chrono>
#include <thread>

namespace quire {

class LeaseHeartbeat
{
public:
    // The name of its thread.
    static constexpr QStringView label = u"com.corin.quire.library-lock-heartbeat";

    // Beats first after `interval`, then every `interval`, measured on a
    // monotonic clock; beats missed while the process stood still are not made
    // up for. ownerPath: absolute. clock: tells the date to set, outlives this.
    LeaseHeartbeat(
        const QString &ownerPath, const QUuid &token, const Clock &clock, std::chrono::milliseconds interval);

    // No beat comes after it; waits for one under way.
    ~LeaseHeartbeat() = default;

    LeaseHeartbeat(const LeaseHeartbeat &) = delete;
    LeaseHeartbeat &operator=(const LeaseHeartbeat &) = delete;

    // Sets the modification date of the record at `ownerPath` to `now` when its
    // token is `token`; false when it did not.
    static bool beat(const QString &ownerPath, const QUuid &token, Instant now);

private:
    std::jthread m_thread; // asks it to stop and joins it when destroyed
};

} // namespace quire
