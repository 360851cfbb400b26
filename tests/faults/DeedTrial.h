// One deed, tried again and again under some hindrance: whatever the hindrance,
// the library is before the deed or after it, a failure is one of ours, and the
// store works on once the hindrance is gone.
//
// Thread: the test's.

#pragma once

#include "faults/Deeds.h"

#include <QStringList>

#include <functional>
#include <vector>

namespace quire::testing {

class DeedTrial
{
public:
    // Does the deed once without a hindrance, to know where it leads.
    DeedTrial(const Deed &deed, FaultBench &bench);

    const Deed &deed() const { return m_deed; }

    // Where the library may be found after the deed failed: before it, in the
    // order of its commits, after it.
    const std::vector<LibraryContent> &rests() const { return m_rests; }

    // Starts anew and does the deed between the two. hinder: makes the deed hard
    // for an open store, or for a closed one when the deed is an opening. free:
    // takes that back, also after a failure. where: how findings name this trial;
    // called after `free`. True when the store told the deed to be done.
    bool run(
        const std::function<void()> &hinder, const std::function<void()> &free, const std::function<QString()> &where);

    const QStringList &findings() const { return m_findings; }

private:
    bool isDone(QStringList &findings);
    void look(bool isDone, QStringList &findings);
    bool isRest(const LibraryContent &content) const;

    const Deed &m_deed;
    FaultBench &m_bench;
    std::vector<LibraryContent> m_rests; // first: before; last: after
    QStringList m_findings;
};

} // namespace quire::testing
