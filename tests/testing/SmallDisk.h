// A disk with little room, for tests of what happens when it is full: memory,
// mounted on a folder where this process alone sees it.
//
// Thread: the test's. The process moves into a mount namespace of its own, which
// threads that run already do not follow: ask isAvailable() before any starts.

#pragma once

#include <QString>

namespace quire::testing {

class SmallDisk
{
public:
    // Whether this machine lets a test mount one: as root, or where an ordinary
    // user may have namespaces. The first call moves the process into its own.
    static bool isAvailable();

    // folder: exists; what lies in it is hidden until the disk goes away.
    explicit SmallDisk(const QString &folder);
    ~SmallDisk(); // nothing on it may be open any more

    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    // What is left to write: so many blocks of 4 KB, or so many files more.
    // The other of the two is without limit. An empty disk leaves at least one block.
    void leaveBlocks(int blocks);
    void leaveFiles(int files);
    void leaveEverything();

private:
    void remount(const QByteArray &options);

    QByteArray m_folder;
};

} // namespace quire::testing
