// What a piece of work costs: time, of the clock and of the processor, and the
// most memory the process held.

#pragma once

#include <QElapsedTimer>
#include <QFile>

#include <ctime>

namespace quire::testing {

// Sanitizers multiply both; a test that bounds memory leaves it out there.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool isInstrumented = true;
#else
inline constexpr bool isInstrumented = false;
#endif
#else
inline constexpr bool isInstrumented = false;
#endif

// Optimised builds keep the promised times; others take a few times as long.
#ifdef NDEBUG
inline constexpr int patience = 1;
#else
inline constexpr int patience = isInstrumented ? 20 : 5;
#endif

class ResourceUse
{
public:
    // Begins to measure; the peak so far is forgotten.
    ResourceUse()
    {
        QFile file(QStringLiteral("/proc/self/clear_refs"));
        if (file.open(QIODevice::WriteOnly)) {
            file.write("5");
        }
        m_clock.start();
        m_processorStart = std::clock();
    }

    qint64 milliseconds() const { return m_clock.elapsed(); }

    // Of all threads; does not grow when the machine is busy with others.
    qint64 processorMilliseconds() const { return (std::clock() - m_processorStart) / (CLOCKS_PER_SEC / 1000); }

    // Resident memory of the whole process at its highest since then, in MB.
    qint64 peakMegabytes() const
    {
        QFile file(QStringLiteral("/proc/self/status"));
        if (!file.open(QIODevice::ReadOnly)) {
            return 0;
        }
        const QByteArray status = file.readAll();
        const qsizetype at = status.indexOf("VmHWM:") + 6;
        return status.mid(at, status.indexOf("kB", at) - at).trimmed().toLongLong() * 1024 / 1'000'000;
    }

private:
    QElapsedTimer m_clock;
    std::clock_t m_processorStart = 0;
};

} // namespace quire::testing
