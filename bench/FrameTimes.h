// FrameTimes notes when a window shows a frame, and tells how long the reader
// waited for the next one: by the clock, by the processor time that the thread
// itself took, and by the clock without the time that other programs kept the
// thread from a processor.
//
// Thread: where the window draws; with the software renderer the interface
// thread.

#pragma once

#include <QtGlobal>

#include <chrono>
#include <optional>
#include <vector>

namespace quire {

class FrameTimes
{
public:
    // From the next frame on.
    void begin();
    void frameShown();

    qsizetype frames() const { return qsizetype(m_gaps.size()); }
    // Of the gaps between two frames, in milliseconds: the one that `part` of
    // them (0 to 1) do not exceed.
    double gap(double part) const { return quantile(m_gaps, part); }
    double work(double part) const { return quantile(m_work, part); }
    double undisturbed(double part) const { return quantile(m_undisturbed, part); }
    qsizetype gapsLongerThan(double milliseconds) const;

private:
    static double quantile(std::vector<double> times, double part);
    static double processorTime();
    static double waitingTime();

    std::optional<std::chrono::steady_clock::time_point> m_last;
    double m_lastProcessorTime = 0;
    double m_lastWaitingTime = 0;
    std::vector<double> m_gaps;
    std::vector<double> m_work;
    std::vector<double> m_undisturbed;
};

} // namespace quire
