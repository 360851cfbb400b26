// FrameTimes notes when a window shows a frame, and tells how long the reader
// waited for the next one: by the clock, and by the processor time that the
// thread itself took, which a busy machine does not lengthen.
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
    qsizetype gapsLongerThan(double milliseconds) const;

private:
    static double quantile(std::vector<double> times, double part);
    static double processorTime();

    std::optional<std::chrono::steady_clock::time_point> m_last;
    double m_lastProcessorTime = 0;
    std::vector<double> m_gaps;
    std::vector<double> m_work;
};

} // namespace quire
