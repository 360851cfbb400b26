#include "bench/FrameTimes.h"

#include <QFile>

#include <algorithm>
#include <ctime>

namespace quire {

void FrameTimes::begin()
{
    m_gaps.clear();
    m_work.clear();
    m_undisturbed.clear();
    m_last.reset();
}

void FrameTimes::frameShown()
{
    const auto now = std::chrono::steady_clock::now();
    const double worked = processorTime();
    const double waited = waitingTime();
    if (m_last) {
        const double gap = std::chrono::duration<double, std::milli>(now - *m_last).count();
        m_gaps.push_back(gap);
        m_undisturbed.push_back(gap - (waited - m_lastWaitingTime));
        m_work.push_back(worked - m_lastProcessorTime);
    }
    m_last = now;
    m_lastProcessorTime = worked;
    m_lastWaitingTime = waited;
}

qsizetype FrameTimes::gapsLongerThan(double milliseconds) const
{
    return std::count_if(m_gaps.begin(), m_gaps.end(), [=](double gap) { return gap > milliseconds; });
}

double FrameTimes::quantile(std::vector<double> times, double part)
{
    if (times.empty()) {
        return 0;
    }
    std::sort(times.begin(), times.end());
    return times[size_t(double(times.size() - 1) * part)];
}

double FrameTimes::processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

// What the kernel notes of a thread that is ready and has no processor.
double FrameTimes::waitingTime()
{
    QFile file(QStringLiteral("/proc/thread-self/schedstat"));
    file.open(QIODevice::ReadOnly);
    return file.readAll().split(' ').value(1).toDouble() / 1e6;
}

} // namespace quire
