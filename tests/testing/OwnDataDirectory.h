// The reader's data directory in a place of its own, for the length of a scope.
// Stores that look it up are built within that scope and gone before its end.

#pragma once

#include "testing/OwnVariable.h"

#include <QTemporaryDir>

namespace quire::testing {

class OwnDataDirectory
{
public:
    // Absolute paths: of the directory, of a file in it.
    QString path() const { return m_folder.path(); }
    QString file(const QString &name) const { return m_folder.filePath(name); }

private:
    QTemporaryDir m_folder;
    OwnVariable m_variable{"XDG_DATA_HOME", m_folder.path()};
};

} // namespace quire::testing
