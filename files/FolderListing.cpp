#include "files/FolderListing.h"

#include "files/FileError.h"

#include <QFile>

#include <algorithm>
#include <system_error>

#include <sys/stat.h>

namespace quire {

namespace {

constexpr Instant earliest = std::chrono::sys_days(std::chrono::year(1) / 1 / 1);
constexpr Instant latest = std::chrono::sys_days(std::chrono::year(9999) / 12 / 31);

qint64 secondsOf(Instant instant)
{
    return std::chrono::duration_cast<std::chrono::seconds>(instant.time_since_epoch()).count();
}

FolderEntry entryAt(const std::filesystem::path &path)
{
    FolderEntry entry{path, std::nullopt, std::nullopt, false};
    struct stat status
    {
    };
    if (::lstat(path.c_str(), &status) == 0) {
        entry.modified = FileDate{status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
        entry.size = status.st_size;
        entry.isFolder = S_ISDIR(status.st_mode);
    }
    return entry;
}

} // namespace

Instant FileDate::instant() const
{
    const qint64 within = std::clamp(seconds, secondsOf(earliest), secondsOf(latest));
    const auto fraction = std::chrono::floor<std::chrono::milliseconds>(std::chrono::nanoseconds(nanoseconds));
    return Instant(std::chrono::seconds(within) + fraction);
}

std::vector<FolderEntry> FolderListing::of(const QString &folder)
{
    std::vector<FolderEntry> entries;
    std::error_code error;
    std::filesystem::directory_iterator next(QFile::encodeName(folder).toStdString(), error);
    while (!error && next != std::filesystem::directory_iterator()) {
        entries.push_back(entryAt(next->path()));
        next.increment(error);
    }
    if (error) {
        throw FileError(QStringLiteral("list the folder"), folder, error.value());
    }
    std::sort(entries.begin(), entries.end(),
        [](const FolderEntry &a, const FolderEntry &b) { return a.path.native() < b.path.native(); });
    return entries;
}

} // namespace quire
