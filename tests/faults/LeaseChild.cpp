// A process that takes and gives up the lease on a library as its input tells
// it, for races between processes. LeaseRival.h starts it and says what it
// understands; LeaseChildSteps.cpp slows it down or breaks it.
// usage: quire_lease_child LIBRARY MACHINE CLOCK ROUNDS PAUSE HEARTBEAT OWNERLESS SILENT

#include "concurrency/Clock.h"
#include "faults/LeaseChildSteps.h"
#include "persistence/database/DatabaseError.h"
#include "reliability/QuireLibraryLease.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>
#include <iostream>
#include <string>
#include <thread>

namespace {

using namespace quire;

// The system's clock, set by somebody who got it wrong.
class WrongClock final : public Clock
{
public:
    explicit WrongClock(std::chrono::seconds error)
        : m_error(error)
    {
    }

    Instant now() const override
    {
        return std::chrono::floor<Instant::duration>(std::chrono::system_clock::now()) + m_error;
    }

    QCoro::Task<> sleep(std::chrono::nanoseconds, std::stop_token) override { co_return; }

private:
    std::chrono::seconds m_error;
};

void say(const QByteArray &line)
{
    std::puts(line.constData());
    std::fflush(stdout);
}

QByteArray acquire(QuireLibraryLease &lease)
{
    try {
        lease.acquire();
    } catch (const DatabaseError &error) {
        return error.kind() == DatabaseError::Kind::LibraryBusy ? "busy" : error.what();
    } catch (const Failure &failure) {
        return failure.what();
    }
    return lease.isAcquired() ? "won " + lease.owner().token.toByteArray(QUuid::WithoutBraces) : QByteArray("none");
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const auto number = [&arguments](int at) { return arguments.value(at).toLongLong(); };
    const WrongClock clock{std::chrono::seconds(number(3))};
    const auto host = QuireHostIdentity::make(arguments.value(2).toUtf8(), arguments.value(2), std::nullopt);
    const QuireLibraryLease::Timing timing{.rounds = int(number(4)),
        .pause = std::chrono::microseconds(number(5)),
        .heartbeat = std::chrono::milliseconds(number(6)),
        .patience
        = {.ownerless = std::chrono::milliseconds(number(7)), .silent = std::chrono::milliseconds(number(8))}};

    std::optional<QuireLibraryLease> lease;
    say("ready");
    for (std::string line; std::getline(std::cin, line);) {
        if (line == "release") {
            lease.reset();
            say("released");
        } else { // the moment to acquire at
            const std::chrono::steady_clock::time_point start{std::chrono::nanoseconds(std::stoll(line))};
            lease.emplace(arguments.value(1), clock, host, timing);
            std::this_thread::sleep_until(start);
            testing::enableLeaseSteps();
            say(acquire(*lease));
        }
    }
    return 0;
}
