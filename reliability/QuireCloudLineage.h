// What this machine saw of a library last: its identity and how far its history
// had come. A sync service can hand back an older file, or one with another
// history, which SQLite cannot see; comparing the file with this memory can.
//
// The memory lies outside the library, a small JSON file for each path at which
// a library was opened, and never travels with the library's file.
//
// Thread: any; blocks on the disk. Holds no state but the path.

#pragma once

#include <QString>

#include <optional>

namespace quire {

struct QuireCloudLineage
{
    QString libraryUUID; // who the library is, for ever
    qint64 generation = 0; // changes so far; rises with each
    QString lineageToken; // new at every change
    QString recordedAt; // ISO-8601 with fractional seconds

    bool operator==(const QuireCloudLineage &) const = default;
};

enum class LineageFinding {
    OtherLibrary, // another library has taken the path
    RolledBack, // an older file has come back
    MovedOn, // changed since, here or on another machine
    Diverged, // two histories of the same length
    Unchanged,
};

// What a library is to the memory of it. A library that has moved on may have
// left the remembered history before: there is no walk back through it.
LineageFinding compare(const QuireCloudLineage &current, const QuireCloudLineage &remembered);

class QuireCloudLineageStore
{
public:
    // directory: absolute path of the folder of the records, which may not
    // exist yet; on this machine alone, in no folder that is synchronised.
    explicit QuireCloudLineageStore(QString directory);

    // Absolute path of the record for the library at that absolute path.
    QString recordURL(const QString &databaseURL) const;

    // Creates the folder and writes the record durably. Throws FileError, the
    // former record as it was.
    void save(const QuireCloudLineage &lineage, const QString &databaseURL) const;

    // Nothing when there is no record or it cannot be understood: then there is
    // nothing to compare with. Throws FileError when the system could not open it
    // at this moment, which says nothing of what it remembers.
    std::optional<QuireCloudLineage> read(const QString &databaseURL) const;

private:
    QString m_directory;
};

} // namespace quire
