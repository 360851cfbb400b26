#include "persistence/LibraryFile.h"

#include "files/Descriptor.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>

namespace quire::LibraryFile {

namespace {

constexpr std::string_view magic("SQLite format 3\0", 16);
constexpr off_t smallestPage = 512;

} // namespace

Content contentOf(const QString &path)
{
    // Opening a pipe that nobody writes to would otherwise wait for ever.
    const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.number() < 0) {
        return errno == ENOENT ? Content::Missing : Content::Unknown;
    }
    struct stat status = {};
    if (::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return Content::Unknown;
    }
    std::array<char, magic.size()> beginning{};
    const ssize_t count = ::pread(file.number(), beginning.data(), beginning.size(), 0);
    if (count < 0) {
        return Content::Unknown;
    }
    const bool isDatabase
        = status.st_size >= smallestPage && std::string_view(beginning.data(), size_t(count)) == magic;
    return isDatabase ? Content::Database : Content::NoDatabase;
}

} // namespace quire::LibraryFile
