// FaultyDisk stands between the program under test and the files of one folder.
// It counts the calls that go through, makes the n-th fail, or the process end
// there, and records what would reach a disk.
//
// Two roads lead through it: SQLite's, by a VFS that is registered as the
// default one (FaultyVFS.cpp), and that of files written by the program itself,
// by wrapping the system's calls at link time (FaultySystemCalls.cpp).
//
// Thread: any; one lock. Files outside the watched folder pass untouched.

#pragma once

#include "faults/DiskRecord.h"

#include <QHash>
#include <QString>

#include <mutex>
#include <optional>

namespace quire::testing {

class FaultyDisk
{
public:
    enum class Lasting { Once, FromThenOn };

    // What happens at the call that is struck.
    enum class Stroke {
        Fail, // it fails; a write has written half of its bytes
        FailAsFull, // the same, and a write says that the disk is full
        End, // the process ends as at a failure point, nothing flushed
    };

    static FaultyDisk &instance();

    // Begins to look at `folder`, absolute and free of links. Nothing fails yet.
    void watch(const QString &folder);
    // Lets everything pass again.
    void release();

    // Counts from 0 again; strikes call `nth`, from 1.
    void strike(int nth, Lasting lasting, Stroke stroke);
    // Strikes no more, and counts on.
    void relent();

    // Calls since strike() or watch(), and whether one was struck.
    int calls() const;
    bool hasStruck() const;
    // The names of the calls since then, for a reader of findings.
    QString struckCall() const;

    // Begins a record of the watched folder.
    void beginRecord();
    // A line in the record: the test was told that so much is done.
    void mark(qint64 done);
    DiskRecord takeRecord();
    // A broken twin for controls: what asks for a sync is told that it was made.
    void ignoreSyncs(bool ignore);

    // For the two roads. ----------------------------------------------------

    bool watches(const QString &path) const;
    // Counts one call on a watched path. What shall happen instead of it.
    std::optional<Stroke> next(const char *call, const QString &path);

    // A number for the file at `path`, made and recorded when it is new.
    int opened(const QString &path, bool mayCreate);
    void wrote(int file, qint64 offset, const char *bytes, qint64 size);
    void truncated(int file, qint64 size);
    void synced(int file);
    void syncedFolder(const QString &path);
    void deleted(const QString &path);
    void renamed(const QString &from, const QString &to);

private:
    FaultyDisk() = default;

    QString relative(const QString &path) const;
    void append(DiskEvent event);

    mutable std::mutex m_mutex;
    QString m_folder; // with a slash; empty when nothing is watched
    int m_calls = 0;
    int m_nth = 0; // 0: none
    Lasting m_lasting = Lasting::Once;
    Stroke m_stroke = Stroke::Fail;
    QString m_struck;
    bool m_recording = false;
    bool m_ignoresSyncs = false;
    DiskRecord m_record;
    QHash<QString, int> m_numbers; // of files that exist, by relative path
    int m_nextNumber = 0;
};

} // namespace quire::testing
