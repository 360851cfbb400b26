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

// The version that a program needs to know in order to read the file.
constexpr std::size_t readVersionAt = 19;
constexpr char readVersionOfWriteAhead = 2;

struct Beginning
{
    Content content = Content::Unknown;
    std::array<char, readVersionAt + 1> bytes{}; // zeros beyond the end of the file
};

Beginning beginningOf(const QString &path)
{
    // Opening a pipe that nobody writes to would otherwise wait for ever.
    const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.number() < 0) {
        return {.content = errno == ENOENT ? Content::Missing : Content::Unknown};
    }
    Beginning beginning;
    struct stat status = {};
    if (::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)
        || ::pread(file.number(), beginning.bytes.data(), beginning.bytes.size(), 0) < 0) {
        return {};
    }
    const bool isDatabase
        = status.st_size >= smallestPage && std::string_view(beginning.bytes.data(), magic.size()) == magic;
    beginning.content = isDatabase ? Content::Database : Content::NoDatabase;
    return beginning;
}

} // namespace

Content contentOf(const QString &path)
{
    return beginningOf(path).content;
}

bool writesAhead(const QString &path)
{
    const Beginning beginning = beginningOf(path);
    return beginning.content == Content::Database && beginning.bytes[readVersionAt] == readVersionOfWriteAhead;
}

} // namespace quire::LibraryFile
