// A folder in memory where there is one, for tests of what is in files and not of
// how they get to the disk: each sync of a busy disk takes longer than the rest
// of a round.

#pragma once

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>

namespace quire::testing {

class MemoryFolder : public QTemporaryDir
{
public:
    MemoryFolder()
        : QTemporaryDir(QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                ? QStringLiteral("/dev/shm/quire-test-XXXXXX")
                : QDir::tempPath() + QStringLiteral("/quire-test-XXXXXX"))
    {
    }
};

} // namespace quire::testing
