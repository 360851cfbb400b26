// Lets one process of this machine at a time decide about a library's lock.
//
// Looking at a lock and acting on what was seen are two steps. Of two processes
// that both find an abandoned lock, the slower one would take away the lock that
// the faster one has made in the meantime, and both would believe that they hold
// the library. The guard is a flock(2) on a file in the runtime directory of the
// user, named by the device and inode of the library's folder, so that every
// path to a folder leads to one guard; the system lets go of it when its process
// dies. It is held for single steps, never while a library is open.
//
// It says nothing to another machine or another user; for them the lock folder
// stands alone, as it does where no guard can be had (no place for its file, a
// system without flock).
//
// Thread: one at a time. Lockable, for std::unique_lock.

#pragma once

#include "files/Descriptor.h"

#include <QString>

namespace quire {

class LeaseGuard
{
public:
    // libraryFolder: absolute; must exist for the guard to be had. Opens the
    // guard's file, holds nothing yet.
    explicit LeaseGuard(const QString &libraryFolder);

    // False while another holder has it. Never waits; true without effect where
    // no guard can be had.
    bool try_lock();

    void unlock();

private:
    Descriptor m_file;
};

} // namespace quire
