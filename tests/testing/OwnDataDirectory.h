// The reader's data directory in a place of its own, for the length of a scope.
// Stores that look it up are built within that scope and gone before its end.

#pragma once

#include <QFile>
#include <QTemporaryDir>

namespace quire::testing {

class OwnDataDirectory
{
public:
    OwnDataDirectory() { qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder.path())); }
    ~OwnDataDirectory()
    {
        if (m_former.isNull()) {
            qunsetenv("XDG_DATA_HOME");
        } else {
            qputenv("XDG_DATA_HOME", m_former);
        }
    }

    OwnDataDirectory(const OwnDataDirectory &) = delete;
    OwnDataDirectory &operator=(const OwnDataDirectory &) = delete;

    // Absolute paths: of the directory, of a file in it.
    QString path() const { return m_folder.path(); }
    QString file(const QString &name) const { return m_folder.filePath(name); }

private:
    QByteArray m_former = qgetenv("XDG_DATA_HOME");
    QTemporaryDir m_folder;
};

} // namespace quire::testing
