#include "persistence/BackupRotation.h"

#include "files/FileError.h"
#include "files/FolderListing.h"
#include "reliability/BackupPaths.h"

#include <QFile>

#include <algorithm>
#include <cerrno>

#include <unistd.h>

namespace quire::BackupRotation {

namespace {

bool isDatabase(const FolderEntry &entry)
{
    const QByteArray extension = QByteArray::fromStdString(entry.path.extension().native());
    return !entry.isFolder && extension.toLower() == ".db";
}

// Not std::filesystem::remove(), which would take an empty folder as well.
void removeDatabase(const std::filesystem::path &path)
{
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) { // one that is gone already is no failure
        throw FileError(QStringLiteral("remove the file"), QFile::decodeName(path.c_str()), errno);
    }
}

void removeManifest(const std::filesystem::path &database)
{
    const QByteArray suffix = BackupPaths::manifestSuffix.toUtf8();
    ::unlink((database.native() + suffix.toStdString()).c_str());
}

} // namespace

void rotate(const QString &folder, qsizetype limit)
{
    auto databases = FolderListing::of(folder);
    std::erase_if(databases, [](const FolderEntry &entry) { return !isDatabase(entry); });
    // From the last name to the first, and then by date: a stable sort leaves
    // those of one date in that order. A date that cannot be read sorts before all.
    std::reverse(databases.begin(), databases.end());
    std::stable_sort(databases.begin(), databases.end(),
        [](const FolderEntry &a, const FolderEntry &b) { return a.modified > b.modified; });

    for (std::size_t i = std::size_t(limit); i < databases.size(); ++i) {
        removeDatabase(databases[i].path);
        removeManifest(databases[i].path);
    }
}

} // namespace quire::BackupRotation
