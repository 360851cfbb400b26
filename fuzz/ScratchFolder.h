// A folder for the files of one target, in memory where there is one: an input is
// a file there a hundred times a second.
//
// Thread: one at a time.

#pragma once

#include <QByteArray>
#include <QTemporaryDir>

namespace quire::fuzz {

class ScratchFolder
{
public:
    ScratchFolder();

    QString path() const { return m_folder.path(); }
    QString filePath(const QString &name) const { return m_folder.filePath(name); }

    // Puts a file of these bytes at `path`, over what is there. Ends the process
    // when it cannot: no promise could be held against what is there instead.
    void put(const QString &path, const QByteArray &bytes) const;

    // Removes all that lies in it, hidden too.
    void clear() const;

private:
    QTemporaryDir m_folder;
};

// What is in the file at `path`; nothing when it cannot be read.
QByteArray bytesOf(const QString &path);

} // namespace quire::fuzz
