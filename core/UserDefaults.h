// What the program remembers of this user on this machine, whichever library is
// open: one small file that a person can read.
//
// Thread: the interface thread.

#pragma once

#include "records/Instant.h"

#include <QString>

#include <optional>

namespace quire {

class UserDefaults
{
public:
    // file: absolute, as ServiceEndpoints::userSettingsFile(); need not be there.
    explicit UserDefaults(QString file);

    // When the update host last gave an answer; nothing before the first time,
    // or where something else stands there.
    std::optional<Instant> lastUpdateCheck() const;

    // What cannot be written is forgotten: the host is asked once more then.
    void setLastUpdateCheck(Instant instant) const;

private:
    QString m_file;
};

} // namespace quire
