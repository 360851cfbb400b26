#include "sources/AudibleLibraryLocation.h"

#include "files/FileError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <tuple>

namespace quire::AudibleLibraryLocation {

namespace {

// Absent dates and sizes come before any other.
auto rank(const FolderEntry &entry)
{
    return std::tuple(entry.modified, entry.size.value_or(0));
}

} // namespace

QString containerFolder()
{
    return QDir::homePath() + QStringLiteral("/Library/Containers/com.audible.iphone/Data/Library/Application Support");
}

bool isLibraryDatabase(const QString &path)
{
    return QFileInfo(QDir::cleanPath(path)).fileName().endsWith(QStringLiteral("-library.sqlite"));
}

std::optional<QString> resolvedAccessURL(const std::optional<QString> &configuredLibraryPath)
{
    if (configuredLibraryPath && configuredLibraryPath->startsWith(u'/') && QFileInfo::exists(*configuredLibraryPath)) {
        return QDir::cleanPath(*configuredLibraryPath);
    }
    return libraryDatabase(containerFolder());
}

std::optional<QString> libraryDatabase(const QString &accessURL)
{
    if (isLibraryDatabase(accessURL)) {
        return accessURL;
    }
    try {
        return bestLibraryDatabase(FolderListing::of(accessURL));
    } catch (const FileError &) {
        return std::nullopt;
    }
}

std::optional<QString> bestLibraryDatabase(const std::vector<FolderEntry> &entries)
{
    std::vector<FolderEntry> libraries = entries;
    std::erase_if(libraries, [](const FolderEntry &entry) {
        const bool isHidden = entry.path.filename().native().starts_with('.');
        return isHidden || entry.isFolder || !isLibraryDatabase(QFile::decodeName(entry.path.c_str()));
    });
    const auto best = std::max_element(libraries.begin(), libraries.end(),
        [](const FolderEntry &a, const FolderEntry &b) { return rank(a) < rank(b); }); // the first of equals
    return best == libraries.end() ? std::nullopt : std::optional(QFile::decodeName(best->path.c_str()));
}

} // namespace quire::AudibleLibraryLocation
