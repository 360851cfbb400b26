// The session record: a small file that tells the next start whether this run
// ended cleanly. A lost record is no sign of a crash.
//
// Thread: any; blocks on the disk. Holds no state but the path.

#pragma once

#include "records/Instant.h"

#include <QString>
#include <QUuid>

#include <optional>

namespace quire {

struct QuireSessionRecord
{
    QUuid sessionID; // one per run
    QString openedAt; // ISO-8601 with fractional seconds
    std::optional<QString> closedAt; // absent while the run lasts
    bool clean = false;

    bool operator==(const QuireSessionRecord &) const = default;
};

class QuireSessionHealth
{
public:
    // path: absolute path of the record, "Session State.json".
    explicit QuireSessionHealth(QString path);

    // The record as it is stored; nothing when there is none or it is unreadable.
    std::optional<QuireSessionRecord> read() const;

    // Creates the folder and writes the record durably. Throws FileError.
    void write(const QuireSessionRecord &record) const;

    // Closes the stored session at `now`; a record that is lost by then is
    // made up. Throws FileError.
    void markClean(Instant now) const;

private:
    QString m_path;
};

} // namespace quire
