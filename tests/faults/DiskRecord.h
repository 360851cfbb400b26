// What a library's folder went through, call by call, as a disk would see it:
// from it, PowerCut builds what such a disk may hold after the power fails.
//
// Thread: a plain value.

#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

namespace quire::testing {

// The files of a folder and those below it, by path within it.
using FolderImage = QMap<QString, QByteArray>;

struct DiskEvent
{
    enum class Kind {
        Create, // `file` appears under `name`
        Write, // `bytes` at `offset` of `file`
        Truncate, // `file` is cut, or grown, to `offset` bytes
        Sync, // all of `file` before this is on the disk
        Delete, // `name` disappears
        Rename, // what is called `name` is called `newName`
        SyncFolder, // all names in the folder `name` before this are on the disk
        Mark, // the test has been told that so much is done: `offset`
    };

    Kind kind = Kind::Mark;
    int file = -1; // a number for the life of the file, whatever its name
    QString name;
    QString newName;
    qint64 offset = 0;
    QByteArray bytes;
};

struct DiskRecord
{
    FolderImage before; // all of it on the disk; file numbers in order of name
    QList<DiskEvent> events;
};

// Reads every file below `folder`.
FolderImage readFolder(const QString &folder);

// Makes `folder` hold these files.
void writeFolder(const QString &folder, const FolderImage &image);

} // namespace quire::testing
