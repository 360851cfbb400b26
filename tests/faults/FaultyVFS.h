// SQLite's road through FaultyDisk: a VFS over the system's own.
//
// Thread: as SQLite calls it.

#pragma once

namespace quire::testing {

// Registers the VFS as the default one, so that what is opened from now on goes
// through it; once and for the life of the process.
bool registerFaultyVFS();

} // namespace quire::testing
