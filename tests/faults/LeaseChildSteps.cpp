#include "faults/LeaseChildSteps.h"

#include <QByteArray>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <random>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <sys/types.h>

namespace quire::testing {

namespace {

std::atomic<bool> enabled = false;

bool isBroken(QByteArrayView step)
{
    static const QByteArray flaw = qgetenv("QUIRE_CHILD_FLAW");
    return enabled && flaw == step;
}

// Most steps follow at once and a few take long, so that one process does all it
// has to between two steps of another.
void delay()
{
    static const int longest = qEnvironmentVariableIntValue("QUIRE_CHILD_DELAY");
    thread_local std::mt19937 random(unsigned(qEnvironmentVariableIntValue("QUIRE_CHILD_SEED")));
    if (enabled && longest > 0 && random() % 6 == 0) {
        const int code = errno;
        std::this_thread::sleep_for(std::chrono::microseconds(random() % unsigned(longest)));
        errno = code;
    }
}

bool isRecord(const char *path)
{
    return std::string_view(path).ends_with("/Owner.json");
}

} // namespace

void enableLeaseSteps()
{
    enabled = true;
}

} // namespace quire::testing

using namespace quire::testing;

// The names are the linker's (--wrap).
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

int __real_flock(int file, int operation);
int __real_kill(pid_t process, int signal);
int __real_mkdir(const char *path, mode_t mode);
int __real_open(const char *path, int flags, ...);
int __real_rename(const char *from, const char *to);

int __wrap_flock(int file, int operation)
{
    delay();
    return isBroken("guard") ? 0 : __real_flock(file, operation);
}

int __wrap_kill(pid_t process, int signal)
{
    return isBroken("liveness") ? 0 : __real_kill(process, signal);
}

int __wrap_mkdir(const char *path, mode_t mode)
{
    delay();
    int answer = __real_mkdir(path, mode);
    if (answer != 0 && errno == EEXIST && isBroken("creation")) {
        answer = 0;
    }
    delay();
    return answer;
}

int __wrap_open(const char *path, int flags, ...)
{
    std::va_list more;
    va_start(more, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
    va_end(more);
    if (isRecord(path) && isBroken("token")) {
        errno = EACCES;
        return -1;
    }
    return __real_open(path, flags, mode);
}

int __wrap_rename(const char *from, const char *to)
{
    delay();
    const int answer = __real_rename(from, to);
    delay();
    return answer;
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
