// A library on a faulty disk: a folder that can be set to any image again and
// again, the store over it, and the places around it that a run must not touch.
//
// Thread: the test's.

#pragma once

#include "faults/DiskRecord.h"
#include "faults/LibraryContent.h"
#include "persistence/LibraryStore.h"
#include "testing/ManualClock.h"

#include <QTemporaryDir>

#include <memory>

namespace quire::testing {

// Where a library lies decides its journal: a write-ahead log in the default
// folder, a rollback journal and full syncs anywhere else. From the default
// folder a library may move on, with a record of where it is.
enum class Place { DefaultFolder, ChosenFolder };

const char *nameOf(Place place);

// What the store answers, or its failure. Waits without an event loop, which
// would make ten thousand answers slow.
template<typename T>
T done(QFuture<T> future)
{
    future.waitForFinished(); // rethrows
    if constexpr (!std::is_void_v<T>) {
        return future.result();
    }
}

class FaultBench
{
public:
    explicit FaultBench(Place place);
    ~FaultBench();

    FaultBench(const FaultBench &) = delete;
    FaultBench &operator=(const FaultBench &) = delete;

    Place place() const { return m_place; }
    // Absolute: the library's folder, watched by FaultyDisk; and one outside it.
    const QString &folder() const { return m_folder; }
    QString outside(const QString &name) const;

    // Makes the folder hold these files and nothing else, what this machine
    // remembers of the library among them, and a store that is not open yet.
    // Whatever was open is closed, and whoever held a lock in the image is no more.
    // Sets the environment so that the default folder is this bench's own, and the
    // home folder the watched one; a test with several benches does this before
    // each use.
    void reset(const FolderImage &image);

    // The store, open or not.
    LibraryStore &store() { return *m_store; }
    void open(bool recoveringFromCrash = false);
    void close();

    // Makes a lock old whose maker ended before its record was there and whole,
    // which is respected for two seconds.
    void letTimePass() const;

    // A store of another start of the program, some time later.
    void restart();

    // Needs no open library, and leaves none.
    LibraryContent content() const { return LibraryContent::read(libraryFolder(), m_folder); }
    FolderImage image() const { return readFolder(m_folder); }

    // What is lacking for the library to be of use: an edit and a setting are
    // written and read back, here and after another start. Leaves it closed.
    QStringList findingsOfFurtherWork();

private:
    // Where the next start looks for the library.
    QString libraryFolder() const;

    Place m_place;
    QTemporaryDir m_root; // first: outlives the store
    QString m_folder;
    ManualClock m_clock;
    std::unique_ptr<LibraryStore> m_store;
};

} // namespace quire::testing
