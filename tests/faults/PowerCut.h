// What a folder may look like after the power failed, or the process died, at
// one moment of a record.
//
// The disk it thinks of keeps its promises and no more: what was synced is
// there; what was written and not synced is there, or not, in any order and in
// pieces of a sector; the end of a file that was not synced may hold anything;
// names change in the order in which they were changed, and those that were not
// synced up to some point of it.
//
// Thread: the test's.

#pragma once

#include "faults/DiskRecord.h"

#include <random>
#include <vector>

namespace quire::testing {

class PowerCut
{
public:
    explicit PowerCut(DiskRecord record);

    // Moments to fail at: 0 (before anything happened) to this, both included.
    int moments() const { return int(m_record.events.size()); }

    // What the test had been told of by then: its last mark, 0 before the first.
    qint64 markAt(int moment) const;

    // All that was done by then, synced or not: the process died, the system
    // went on.
    FolderImage afterCrash(int moment) const;

    // What the disk may hold.
    FolderImage afterPowerCut(int moment, std::mt19937 &random) const;

private:
    struct File;
    struct Disk;

    Disk diskAt(int moment) const;

    DiskRecord m_record;
};

} // namespace quire::testing
