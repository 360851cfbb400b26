// A process that wants the lease on a library, as the test of a race sees it.
//
// Thread: the test's.

#pragma once

#include "testing/ChildProcess.h"

#include <QString>
#include <QUuid>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace quire::testing {

using namespace std::chrono_literals;

class LeaseRival
{
public:
    struct Manner
    {
        QString machine = QStringLiteral("this machine");
        std::chrono::seconds clockError{0}; // what its clock is ahead
        int rounds = 15;
        std::chrono::microseconds pause = 1ms;
        std::chrono::milliseconds heartbeat = 1h;
        std::chrono::milliseconds ownerless = 2s;
        std::chrono::milliseconds silent = 300s;
        std::chrono::microseconds delay = 0us; // longest, before and after a step
        quint32 seed = 0; // of the delays
        QString flaw; // see LeaseChildSteps.h
    };

    enum class Answer { Won, Busy, None, Failed };

    // Starts it and waits until it listens.
    LeaseRival(const QString &library, const Manner &manner);

    // Told to acquire; all that are told the same moment begin together.
    void go(std::chrono::steady_clock::time_point start) const;

    // What came of it. Waits.
    Answer answer();

    // Told to give the lease up, if it has it.
    void release() const;

    // Waits until that is done; false when it died instead.
    bool isReleased();

    // go() at once, and answer().
    Answer acquire();

    // Of the lease that it won last.
    QUuid token() const { return m_token; }

    ChildProcess &process() { return *m_process; }

private:
    std::unique_ptr<ChildProcess> m_process;
    QUuid m_token;
};

// Lets all of them acquire together; their answers in their order.
std::vector<LeaseRival::Answer> race(std::vector<LeaseRival> &rivals);

} // namespace quire::testing
