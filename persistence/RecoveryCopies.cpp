#include "persistence/RecoveryCopies.h"

#include "files/DurableFile.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/DatabaseFiles.h"
#include "persistence/database/SQLiteDatabase.h"
#include "persistence/LibraryFile.h"
#include "records/DateParser.h"
#include "records/UUIDText.h"

#include <QFile>

namespace quire::RecoveryCopies {

namespace {

QString nameOfCopy(const QString &reason, Instant now)
{
    return QStringLiteral("Quire %1 %2 %3.db")
        .arg(QString(reason).replace(u'/', u'-'), DateParser::iso8601(now).replace(u':', u'-'), UUIDText::fresh());
}

// Whether SQLite can read the file and leave what is beside it as it is. Of a file
// without pages it would delete the log; to one that writes ahead, and that
// nobody has open, it would add a log and an index, for a sync service to carry
// to other machines.
bool isReadWithoutTrace(const QString &url)
{
    if (LibraryFile::writesAhead(url)) {
        return QFile::exists(url + QStringLiteral("-wal")) && QFile::exists(url + QStringLiteral("-shm"));
    }
    return LibraryFile::contentOf(url) == LibraryFile::Content::Database;
}

bool copyThroughSQLite(const QString &url, const QString &copy)
{
    if (!isReadWithoutTrace(url)) {
        return false;
    }
    try {
        SQLiteDatabase::backUp(url, copy);
        return true;
    } catch (const DatabaseError &) {
        DatabaseFiles::remove(copy); // with its journal, which would undo the copy that follows
        return false;
    }
}

// What a crash left beside the file belongs to what is in it.
void copyBytes(const QString &url, const QString &copy)
{
    DurableFile::copy(url, copy);
    for (const QString &suffix : {QStringLiteral("-wal"), QStringLiteral("-journal")}) {
        if (QFile::exists(url + suffix)) {
            DurableFile::copy(url + suffix, copy + suffix);
        }
    }
}

} // namespace

QString preserveDatabaseForRecovery(
    const QString &url, const QString &reason, const QString &localStateDirectory, Instant now)
{
    const QString folder = localStateDirectory + QStringLiteral("/Recovery");
    DurableFile::createFolder(folder);
    QString copy = folder + u'/' + nameOfCopy(reason, now);
    if (!copyThroughSQLite(url, copy)) {
        copyBytes(url, copy);
    }
    return copy;
}

} // namespace quire::RecoveryCopies
