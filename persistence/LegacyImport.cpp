#include "persistence/LegacyImport.h"

#include "files/DurableFile.h"
#include "persistence/database/DatabaseError.h"
#include "persistence/database/DatabaseFiles.h"
#include "persistence/database/SQLiteDatabase.h"
#include "records/DateParser.h"

#include <QFileInfo>

namespace quire::LegacyImport {

namespace {

// Under a name of its own until it is whole: a crash in between would otherwise
// leave part of a library, which the next start would take for a new one.
void importDatabase(const QString &source, const QString &databaseURL)
{
    const QString copy = databaseURL + QStringLiteral(".importing");
    DatabaseFiles::remove(copy); // of an import that did not end
    try {
        SQLiteDatabase::backUp(source, copy);
        if (!SQLiteDatabase(copy).quickCheck()) {
            throw DatabaseError(
                DatabaseError::Kind::Backup, QStringLiteral("The imported Books database failed its integrity check."));
        }
        DurableFile::move(copy, databaseURL);
    } catch (const std::exception &) {
        DatabaseFiles::remove(copy);
        throw;
    }
    DatabaseFiles::remove(copy); // what the check may have left beside it
}

} // namespace

void runIfAvailable(
    const QString &legacyFolder, const QString &supportDirectory, const QString &databaseURL, Instant now)
{
    const QString books = legacyFolder + QStringLiteral("/Books");
    const QString source = books + QStringLiteral("/books.db");
    if (!QFileInfo::exists(source)) {
        return;
    }
    importDatabase(source, databaseURL);
    if (const QString siteID = books + QStringLiteral("/deploy/.site-id"); QFileInfo(siteID).isFile()) {
        const QString folder = supportDirectory + QStringLiteral("/deploy");
        DurableFile::createFolder(folder);
        DurableFile::copy(siteID, folder + QStringLiteral("/.site-id"));
    }
    const QString note = QStringLiteral("Quire created this isolated database from the preserved Books library on %1.\n"
                                        "Changes made in Quire do not change the preserved Books database.");
    DurableFile::write(
        supportDirectory + QStringLiteral("/Quire Import.txt"), note.arg(DateParser::iso8601(now)).toUtf8());
}

} // namespace quire::LegacyImport
