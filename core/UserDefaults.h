// What the program remembers of this user on this machine, whichever library is
// open: one small file that a person can read.
//
// Thread: the interface thread.

#pragma once

#include "records/Instant.h"

#include <QSize>
#include <QString>

#include <optional>

namespace quire {

// How the main window was left.
struct WindowShape
{
    QSize size; // without its frame, where it does not fill the screen; in logical pixels
    bool isMaximized = false;

    bool operator==(const WindowShape &) const = default;
};

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

    // Nothing before the first time, or where something else stands there; any size
    // otherwise, also one of which no screen has room.
    std::optional<WindowShape> windowShape() const;

    // What cannot be written is forgotten.
    void setWindowShape(const WindowShape &shape) const;

private:
    QString m_file;
};

} // namespace quire
