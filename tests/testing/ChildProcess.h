// A process that a test starts, watches and kills, such as one that dies in the
// middle of a write. Started by posix_spawn(3), since ThreadSanitizer cannot
// follow the way in which QProcess starts one.

#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

#include <sys/types.h>

namespace quire::testing {

class ChildProcess
{
public:
    // Starts `program` with this process's environment and `environment` over
    // it. Its input is what writeLine() says, its error output goes where ours
    // goes. Throws std::system_error.
    explicit ChildProcess(
        const QString &program, const QStringList &arguments, const QMap<QString, QString> &environment = {});

    // Kills it if it still runs.
    ~ChildProcess();

    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    // The next line of its output without the line feed; nothing when it closed
    // its output or said nothing within the limit.
    std::optional<QByteArray> readLine(std::chrono::milliseconds limit = std::chrono::seconds(20));

    // A line of its input, without the line feed; dropped when it has ended.
    void writeLine(const QByteArray &line) const;

    // While it runs, and until waitUntilEnded() has told its end.
    pid_t processID() const { return m_process; }

    // SIGKILL: it runs nothing more of its own.
    void kill() const;

    // SIGSTOP and SIGCONT: it stands still, and goes on. stop() returns when it
    // stands.
    void stop() const;
    void resume() const;

    bool isRunning();

    // True once it has ended, false when it has not within the limit.
    bool waitUntilEnded(std::chrono::milliseconds limit = std::chrono::seconds(60));

    // Of a child that has ended: its exit status, nothing when a signal ended it.
    std::optional<int> exitStatus() const;

private:
    pid_t m_process = -1;
    int m_channel = -1; // our end of its input and output
    QByteArray m_pending;
    std::optional<int> m_ending; // as waitpid(2) told it
};

} // namespace quire::testing
