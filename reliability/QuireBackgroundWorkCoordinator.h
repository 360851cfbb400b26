// The one slot of all long-running work: two jobs never write the library at
// the same time, and the same job is never started twice.
//
// Thread: acquire() and finish() from any; what they do happens on an executor
// of the coordinator's own. A suspended acquire() holds no thread.

#pragma once

#include "concurrency/SerialExecutor.h"
#include "reliability/QuireBackgroundJob.h"

#include <QFuture>
#include <QUuid>

#include <functional>
#include <memory>

namespace quire {

class QuireBackgroundWorkCoordinator
{
public:
    // makeId: the source of the random ids that order requests of one
    // priority; called on the executor.
    explicit QuireBackgroundWorkCoordinator(std::function<QUuid()> makeId = &QUuid::createUuid);

    // Answers false to every request still waiting.
    ~QuireBackgroundWorkCoordinator();

    QuireBackgroundWorkCoordinator(const QuireBackgroundWorkCoordinator &) = delete;
    QuireBackgroundWorkCoordinator &operator=(const QuireBackgroundWorkCoordinator &) = delete;

    // Asks for the slot. True, possibly much later: the caller holds it and
    // calls finish(job) exactly once, on every path. False: this kind of job is
    // running or waiting already, or the coordinator was destroyed; the caller
    // does nothing further. Manual requests go before automatic ones, and
    // requests of one priority in random order. Never fails, and does not react
    // to the caller's being cancelled.
    QFuture<bool> acquire(QuireBackgroundJob job, QuireJobPriority priority);

    // Gives the slot up, to the first who waits. Nothing happens when `job` does
    // not hold it. The future is finished once the slot has passed on; it may
    // be dropped.
    QFuture<void> finish(QuireBackgroundJob job);

private:
    class Slot;

    std::unique_ptr<Slot> m_slot; // used on the executor alone
    SerialExecutor m_executor; // after the slot: what it still runs needs it
};

} // namespace quire
