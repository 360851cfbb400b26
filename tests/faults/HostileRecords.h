// Owner records that no build of Quire has written, and some that one could
// have.
//
// Thread: the test's.

#pragma once

#include "faults/Torture.h"
#include "reliability/QuireLibraryLeaseOwner.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace quire::testing {

struct HostileRecord
{
    QString kind; // what was done to it
    QByteArray bytes;
    // What reading it gives, a record or nothing; absent where that is not known
    // without reading it.
    std::optional<std::optional<QuireLibraryLeaseOwner>> expected;
};

// The identifier of the machine that some of them name.
inline constexpr char hostileRecordMachine[] = "the machine under test";

HostileRecord drawRecord(Torture &torture);

} // namespace quire::testing
