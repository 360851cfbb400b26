#include "testing/ChildProcess.h"

#include <QFile>
#include <QProcessEnvironment>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quire::testing {

namespace {

using Milliseconds = std::chrono::milliseconds;
using Steady = std::chrono::steady_clock;

[[noreturn]] void fail(int code, const char *what)
{
    throw std::system_error(code, std::generic_category(), what);
}

// Texts as the null-terminated list that exec(3) asks for.
class CStrings
{
public:
    explicit CStrings(const QStringList &texts)
    {
        m_bytes.reserve(std::size_t(texts.size()));
        for (const QString &text : texts) {
            m_bytes.push_back(QFile::encodeName(text));
        }
        m_pointers.reserve(m_bytes.size() + 1);
        for (QByteArray &bytes : m_bytes) {
            m_pointers.push_back(bytes.data());
        }
        m_pointers.push_back(nullptr);
    }

    char **data() { return m_pointers.data(); }

private:
    std::vector<QByteArray> m_bytes;
    std::vector<char *> m_pointers;
};

QStringList environmentWith(const QMap<QString, QString> &changes)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
        environment.insert(change.key(), *change);
    }
    return environment.toStringList();
}

Milliseconds left(Steady::time_point end)
{
    return std::max(Milliseconds::zero(), std::chrono::ceil<Milliseconds>(end - Steady::now()));
}

} // namespace

ChildProcess::ChildProcess(
    const QString &program, const QStringList &arguments, const QMap<QString, QString> &environment)
{
    // One socket for both directions: unlike a pipe, it can be written to
    // without a signal when the child is gone.
    int ends[2] = {};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        fail(errno, "socketpair");
    }
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);

    CStrings words(QStringList(program) + arguments);
    CStrings variables(environmentWith(environment));
    const int failure = ::posix_spawn(&m_process, words.data()[0], &actions, nullptr, words.data(), variables.data());
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    m_channel = ends[0];
    if (failure != 0) {
        ::close(m_channel);
        fail(failure, "posix_spawn");
    }
}

ChildProcess::~ChildProcess()
{
    kill();
    waitUntilEnded();
    ::close(m_channel);
}

std::optional<QByteArray> ChildProcess::readLine(Milliseconds limit)
{
    const auto end = Steady::now() + limit;
    for (;;) {
        if (const qsizetype feed = m_pending.indexOf('\n'); feed >= 0) {
            const QByteArray line = m_pending.first(feed);
            m_pending.remove(0, feed + 1);
            return line;
        }
        pollfd watched = {.fd = m_channel, .events = POLLIN, .revents = 0};
        if (::poll(&watched, 1, int(left(end).count())) <= 0) {
            return std::nullopt;
        }
        char buffer[4'096];
        const ssize_t count = ::read(m_channel, buffer, sizeof buffer);
        if (count <= 0) {
            return std::nullopt;
        }
        m_pending.append(buffer, count);
    }
}

void ChildProcess::writeLine(const QByteArray &line) const
{
    const QByteArray bytes = line + '\n';
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count
            = ::send(m_channel, bytes.constData() + written, size_t(bytes.size() - written), MSG_NOSIGNAL);
        if (count < 0) {
            return;
        }
        written += count;
    }
}

void ChildProcess::stop() const
{
    if (!m_ending && ::kill(m_process, SIGSTOP) == 0) {
        siginfo_t told;
        ::waitid(P_PID, id_t(m_process), &told, WSTOPPED | WEXITED | WNOWAIT);
    }
}

void ChildProcess::resume() const
{
    if (!m_ending) {
        ::kill(m_process, SIGCONT);
    }
}

void ChildProcess::kill() const
{
    if (!m_ending) { // else the number may be another's by now
        ::kill(m_process, SIGKILL);
    }
}

bool ChildProcess::isRunning()
{
    return !waitUntilEnded(Milliseconds::zero());
}

bool ChildProcess::waitUntilEnded(Milliseconds limit)
{
    const auto end = Steady::now() + limit;
    while (!m_ending) {
        int status = 0;
        if (::waitpid(m_process, &status, WNOHANG) == m_process) {
            m_ending = status;
        } else if (left(end) == Milliseconds::zero()) {
            return false;
        } else {
            std::this_thread::sleep_for(Milliseconds(1));
        }
    }
    return true;
}

std::optional<int> ChildProcess::exitStatus() const
{
    return m_ending && WIFEXITED(*m_ending) ? std::optional(WEXITSTATUS(*m_ending)) : std::nullopt;
}

} // namespace quire::testing
