#include "persistence/database/DatabaseFiles.h"

#include <QFile>

namespace quire::DatabaseFiles {

void remove(const QString &path)
{
    // The side files first: a new database at this path must not find them.
    for (const QLatin1String suffix :
        {QLatin1String("-journal"), QLatin1String("-wal"), QLatin1String("-shm"), QLatin1String("")}) {
        QFile::remove(path + suffix);
    }
}

} // namespace quire::DatabaseFiles
