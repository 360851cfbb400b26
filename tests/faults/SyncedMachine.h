// Machines that share a library through a sync service, each with a folder and a
// memory of its own, and the oracle of the model test: what a machine must do
// with the file it finds, told from the true ancestry of the file and of what the
// machine saw last, not from the tokens inside.
//
// Thread: the test's.

#pragma once

#include "faults/MemoryFolder.h"
#include "persistence/LibraryStore.h"
#include "reliability/QuireCloudLineage.h"
#include "testing/ManualClock.h"

#include <QByteArray>
#include <QMap>
#include <QStringList>

#include <functional>
#include <memory>

namespace quire::testing {

// The file as one session left it.
struct Moment
{
    int library = 0; // of one number: one identity
    qint64 generation = 0;
    QByteArray file;
    std::shared_ptr<const Moment> before;
};
using MomentPtr = std::shared_ptr<const Moment>;

// Whether `later` is `moment` or came of it.
bool isOf(const MomentPtr &later, const MomentPtr &moment);

enum class Ending {
    Opened,
    OpenedLongerFork, // as Opened; the rule lets a longer history pass, forked or not
    OpenedNewLibrary, // nothing was there and nothing remembered
    ConflictCopy,
    RolledBack,
    Diverged,
    NoLibrary, // no database, and none remembered: SQLite refuses it
};

class SyncedMachine
{
public:
    // The sync service at work, while the library is closed. -------------------

    // Puts a file in the library's place, as services do: beside it, then renamed.
    void deliver(const MomentPtr &moment);
    // A file that holds no library, or none at all when `bytes` is null.
    void deliverNoLibrary(const QByteArray &bytes);
    // A file of that name beside the library.
    void leave(const QString &name, const QByteArray &bytes);
    void forgetLibrary(); // removes the memory

    // The reader. ---------------------------------------------------------------

    // One session: opens the library, makes `edits` changes and ends cleanly, or as
    // a crash does, with no last word. Then what must hold is looked at; what did
    // not is added to `findings`. A library that was refused is as it was.
    Ending use(int edits, bool crashes, QStringList &findings);

    // Does what the message asks for: puts the conflict copies away and the file
    // that this machine saw last in the library's place.
    void heal();

    // Null when no library lies there.
    const MomentPtr &file() const { return m_file; }

    // For broken twins: what is done to the memory before each opening.
    std::function<void(QuireCloudLineage &remembered, const QuireCloudLineage &current)> tamper;

    // What an opening of this file by this machine must end with.
    Ending expected() const;

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QString libraryPath() const { return path(QStringLiteral("quire.db")); }
    QuireCloudLineageStore memory() const
    {
        return QuireCloudLineageStore(path(QStringLiteral("Cloud Library State")));
    }
    Ending open(LibraryStore &store) const;
    void edit(LibraryStore &store, int edits) const;
    void takeOver(Ending ending, int edits, QStringList &findings);
    void checkRefusal(Ending ending, const QByteArray &memoryBefore, QStringList &findings);

    MemoryFolder m_folder;
    ManualClock m_clock;
    MomentPtr m_file;
    MomentPtr m_remembered; // what the memory must stand for; null without one
    QByteArray m_bytes; // of the file, library or not; null for no file
    QMap<QString, QByteArray> m_conflictCopies;
};

} // namespace quire::testing
