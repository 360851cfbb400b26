// The road of the program's own files through FaultyDisk: the linker sends the
// calls named in CMakeLists.txt here (--wrap). Only what is linked statically
// goes this way, which is all of Quire and nothing of Qt or SQLite.

#include "faults/FaultyDisk.h"

#include <QFile>
#include <QHash>

#include <cerrno>
#include <cstdarg>
#include <mutex>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using quire::testing::FaultyDisk;

namespace {

using Stroke = FaultyDisk::Stroke;

struct OpenFile
{
    QString path;
    int number = -1; // -1 for a folder
    qint64 offset = 0; // Quire writes its files from the start to the end
};

// The watched files that are open, by descriptor.
class OpenFiles
{
public:
    void insert(int descriptor, const OpenFile &file)
    {
        const std::lock_guard lock(m_mutex);
        m_files.insert(descriptor, file);
    }

    std::optional<OpenFile> find(int descriptor)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_files.constFind(descriptor);
        return found == m_files.cend() ? std::nullopt : std::optional(*found);
    }

    void advance(int descriptor, qint64 bytes)
    {
        const std::lock_guard lock(m_mutex);
        m_files[descriptor].offset += bytes;
    }

    void remove(int descriptor)
    {
        const std::lock_guard lock(m_mutex);
        m_files.remove(descriptor);
    }

private:
    std::mutex m_mutex;
    QHash<int, OpenFile> m_files;
};

OpenFiles &openFiles()
{
    static OpenFiles &files = *new OpenFiles; // asked until the very end
    return files;
}

FaultyDisk &disk()
{
    return FaultyDisk::instance();
}

// The stroke that meets a call on this path, if it is watched and one does.
std::optional<Stroke> next(const char *call, const QString &path)
{
    return disk().watches(path) ? disk().next(call, path) : std::nullopt;
}

int fail(Stroke stroke, int code)
{
    errno = stroke == Stroke::FailAsFull ? ENOSPC : code;
    return -1;
}

// A call that only has a path, and what the record learns when it succeeded.
template<typename Call, typename Note>
int onPath(const char *name, const char *path, Call call, Note note)
{
    const QString decoded = QFile::decodeName(path);
    if (const auto stroke = next(name, decoded)) {
        return fail(*stroke, EIO);
    }
    const int result = call();
    if (result == 0 && disk().watches(decoded)) {
        note(decoded);
    }
    return result;
}

} // namespace

// The linker asks for these names.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

int __real_open(const char *path, int flags, ...);
int __real_close(int descriptor);
ssize_t __real_write(int descriptor, const void *bytes, size_t size);
int __real_fsync(int descriptor);
int __real_fchmod(int descriptor, mode_t mode);
int __real_rename(const char *from, const char *to);
int __real_renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned int flags);
int __real_unlink(const char *path);
int __real_mkdir(const char *path, mode_t mode);
int __real_rmdir(const char *path);

int __wrap_open(const char *path, int flags, ...)
{
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        std::va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    const QString decoded = QFile::decodeName(path);
    if (const auto stroke = next("open", decoded)) {
        return fail(*stroke, EMFILE);
    }
    const int descriptor = __real_open(path, flags, mode);
    // The folder itself is on no path below it, but is opened to be synced.
    const bool isFolder = (flags & O_DIRECTORY) != 0;
    if (descriptor >= 0 && (disk().watches(decoded) || (isFolder && disk().watches(decoded + QLatin1Char('/'))))) {
        const int number = isFolder ? -1 : disk().opened(decoded, (flags & O_CREAT) != 0);
        openFiles().insert(descriptor, {decoded, number, 0});
    }
    return descriptor;
}

int __wrap_close(int descriptor)
{
    // On Linux a descriptor is gone, whatever close says.
    openFiles().remove(descriptor);
    return __real_close(descriptor);
}

ssize_t __wrap_write(int descriptor, const void *bytes, size_t size)
{
    const auto file = openFiles().find(descriptor);
    if (!file) {
        return __real_write(descriptor, bytes, size);
    }
    const auto stroke = disk().next("write", file->path);
    const ssize_t written = __real_write(descriptor, bytes, stroke ? size / 2 : size);
    if (written > 0) {
        disk().wrote(file->number, file->offset, static_cast<const char *>(bytes), written);
        openFiles().advance(descriptor, written);
    }
    return stroke ? fail(*stroke, EIO) : written;
}

int __wrap_fsync(int descriptor)
{
    const auto file = openFiles().find(descriptor);
    if (!file) {
        return __real_fsync(descriptor);
    }
    if (const auto stroke = disk().next("sync", file->path)) {
        return fail(*stroke, EIO);
    }
    const int result = __real_fsync(descriptor);
    if (result == 0 && file->number < 0) {
        disk().syncedFolder(file->path);
    } else if (result == 0) {
        disk().synced(file->number);
    }
    return result;
}

int __wrap_fchmod(int descriptor, mode_t mode)
{
    const auto file = openFiles().find(descriptor);
    if (const auto stroke = file ? disk().next("fchmod", file->path) : std::nullopt) {
        return fail(*stroke, EPERM);
    }
    return __real_fchmod(descriptor, mode);
}

int __wrap_rename(const char *from, const char *to)
{
    return onPath(
        "rename", from, [&] { return __real_rename(from, to); },
        [&](const QString &path) { disk().renamed(path, QFile::decodeName(to)); });
}

int __wrap_renameat2(int fromFolder, const char *from, int toFolder, const char *to, unsigned int flags)
{
    return onPath(
        "rename", from, [&] { return __real_renameat2(fromFolder, from, toFolder, to, flags); },
        [&](const QString &path) { disk().renamed(path, QFile::decodeName(to)); });
}

int __wrap_unlink(const char *path)
{
    return onPath(
        "unlink", path, [&] { return __real_unlink(path); }, [](const QString &name) { disk().deleted(name); });
}

int __wrap_mkdir(const char *path, mode_t mode)
{
    return onPath(
        "mkdir", path, [&] { return __real_mkdir(path, mode); }, [](const QString &) {});
}

int __wrap_rmdir(const char *path)
{
    return onPath(
        "rmdir", path, [&] { return __real_rmdir(path); }, [](const QString &) {});
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
