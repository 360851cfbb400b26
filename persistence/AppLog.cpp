#include "persistence/AppLog.h"

#include "concurrency/SerialExecutor.h"
#include "concurrency/SystemClock.h"
#include "files/DurableFile.h"
#include "persistence/AppDirectories.h"
#include "records/DateParser.h"
#include "records/Text.h"

#include <QFile>
#include <QFileInfo>

#include <memory>
#include <mutex>

namespace quire::AppLog {

namespace {

constexpr qint64 maximumBytes = 2'000'000;

void rotate(const QString &log)
{
    const QString previous = QFileInfo(log).absolutePath() + QStringLiteral("/quire.previous.log");
    QFile::remove(previous);
    QFile::rename(log, previous);
}

void writeLine(const QString &message)
{
    const QString log = path();
    DurableFile::createFolder(QFileInfo(log).absolutePath());
    if (QFileInfo(log).size() > maximumBytes) {
        rotate(log);
    }
    const QByteArray line = QStringLiteral("[%1] %2\n").arg(DateParser::iso8601(SystemClock().now()), message).toUtf8();
    if (!QFileInfo::exists(log)) {
        DurableFile::write(log, line);
        return;
    }
    QFile file(log);
    if (file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::ExistingOnly)) {
        file.write(line);
    }
}

// The queue lives until the program ends, and then writes out what it holds.
// Other globals may still log after that: the shell of the queue is therefore
// never destroyed, and takes no more lines.
class Queue
{
public:
    static Queue &shared()
    {
        static Queue &queue = *new Queue;
        static const struct Drain
        {
            ~Drain() { shared().close(); }
        } drain;
        return queue;
    }

    void add(const QString &message)
    {
        const std::lock_guard lock(m_mutex);
        if (!m_executor) {
            return;
        }
        m_executor->submit([message] {
            try {
                writeLine(message);
            } catch (const std::exception &) {
                // There is nowhere to report that the log cannot be written.
            }
        });
    }

private:
    void close()
    {
        std::unique_ptr<SerialExecutor> closing;
        {
            const std::lock_guard lock(m_mutex);
            closing = std::move(m_executor);
        }
    }

    std::mutex m_mutex;
    std::unique_ptr<SerialExecutor> m_executor = std::make_unique<SerialExecutor>(QStringLiteral("Quire.AppLog"));
};

} // namespace

void write(const QString &message)
{
    Queue::shared().add(message);
}

QString path()
{
    const auto configured = Text::nonEmptyValue(qEnvironmentVariable("QUIRE_LOG_PATH"));
    return configured.value_or(AppDirectories::supportDirectory() + QStringLiteral("/quire.log"));
}

} // namespace quire::AppLog
