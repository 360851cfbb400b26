#include "reliability/LeaseHeartbeat.h"

#include "concurrency/ThreadName.h"
#include "files/Descriptor.h"
#include "reliability/QuireLibraryLeaseOwner.h"

#include <QFile>

#include <algorithm>
#include <condition_variable>
#include <mutex>

#include <fcntl.h>
#include <sys/stat.h>

namespace quire {

namespace {

using Monotonic = std::chrono::steady_clock;

timespec time(Instant moment)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(moment);
    const std::chrono::nanoseconds rest = moment - seconds;
    return {.tv_sec = seconds.time_since_epoch().count(), .tv_nsec = rest.count()};
}

void run(const std::stop_token &stop, const QString &ownerPath, const QUuid &token, const Clock &clock,
    std::chrono::milliseconds interval)
{
    nameThisThread(LeaseHeartbeat::label);
    std::mutex mutex;
    std::condition_variable_any stopped;
    std::unique_lock lock(mutex);
    for (auto next = Monotonic::now() + interval;; next = std::max(next, Monotonic::now()) + interval) {
        stopped.wait_until(lock, stop, next, [] { return false; });
        if (stop.stop_requested()) {
            return;
        }
        LeaseHeartbeat::beat(ownerPath, token, clock.now());
    }
}

} // namespace

LeaseHeartbeat::LeaseHeartbeat(
    const QString &ownerPath, const QUuid &token, const Clock &clock, std::chrono::milliseconds interval)
    : m_thread([ownerPath, token, &clock, interval](
                   const std::stop_token &stop) { run(stop, ownerPath, token, clock, interval); })
{
}

bool LeaseHeartbeat::beat(const QString &ownerPath, const QUuid &token, Instant now)
{
    // Through one descriptor, so that what is dated is what was read, also when
    // a successor puts its own record in the place.
    const Descriptor file(::open(QFile::encodeName(ownerPath).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.number() < 0) {
        return false;
    }
    const auto owner = QuireLibraryLeaseOwner::read(file.number());
    if (!owner || owner->token != token) {
        return false;
    }
    const timespec times[2] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, time(now)};
    return ::futimens(file.number(), times) == 0;
}

} // namespace quire
