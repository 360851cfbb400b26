#include "files/DurableFile.h"

#include "files/Descriptor.h"
#include "files/FileError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIODevice>
#include <QUuid>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quire::DurableFile {

namespace {

// Removes the temporary file unless it was renamed.
class Temporary
{
public:
    explicit Temporary(const QString &path)
        : m_path(QFile::encodeName(path))
    {
    }
    ~Temporary()
    {
        if (!m_kept) {
            ::unlink(m_path.constData());
        }
    }
    Temporary(const Temporary &) = delete;
    Temporary &operator=(const Temporary &) = delete;

    const char *path() const { return m_path.constData(); }
    void keep() { m_kept = true; }

private:
    QByteArray m_path;
    bool m_kept = false;
};

[[noreturn]] void fail(const QString &path)
{
    throw FileError(QStringLiteral("write the file"), path, errno);
}

[[noreturn]] void failReading(const QString &source)
{
    throw FileError(QStringLiteral("read the file"), source, errno);
}

// 0, or the errno of the failure.
int codeOfWritingAll(int descriptor, QByteArrayView bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(descriptor, bytes.data() + written, size_t(bytes.size() - written));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return errno;
        }
        written += count;
    }
    return 0;
}

void writeAll(int descriptor, QByteArrayView bytes, const QString &path)
{
    if (const int code = codeOfWritingAll(descriptor, bytes); code != 0) {
        throw FileError(QStringLiteral("write the file"), path, code);
    }
}

// Gathers short writes; long ones pass by. The first failure is kept, for those
// who write through a library that lets no exception through.
class Stream final : public QIODevice
{
public:
    explicit Stream(int descriptor)
        : m_descriptor(descriptor)
    {
        m_gathered.reserve(gathering);
        open(WriteOnly | Unbuffered);
    }

    bool isSequential() const override { return true; }

    // 0, or the errno of the first failure.
    int finish()
    {
        flush();
        return m_code;
    }

protected:
    qint64 readData(char *, qint64) override { return -1; }

    qint64 writeData(const char *data, qint64 size) override
    {
        if (m_gathered.size() + size > gathering) {
            flush();
        }
        if (size > gathering) {
            write({data, size});
        } else {
            m_gathered.append(data, size);
        }
        return m_code == 0 ? size : -1;
    }

private:
    static constexpr qsizetype gathering = 64 * 1024;

    void write(QByteArrayView bytes)
    {
        if (m_code == 0) {
            m_code = codeOfWritingAll(m_descriptor, bytes);
        }
    }

    void flush()
    {
        write(m_gathered);
        m_gathered.resize(0); // keeps its room
    }

    int m_descriptor;
    int m_code = 0;
    QByteArray m_gathered;
};

// 0, or the errno of the failure.
int codeOfSyncingFolder(const QString &folder)
{
    const Descriptor opened(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some network file systems know no sync of a folder and say EINVAL.
    return opened.number() < 0 || (::fsync(opened.number()) != 0 && errno != EINVAL) ? errno : 0;
}

void copyAll(int from, int to, const QString &source, const QString &path)
{
    QByteArray buffer(1 << 20, Qt::Uninitialized);
    for (;;) {
        const ssize_t count = ::read(from, buffer.data(), size_t(buffer.size()));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            failReading(source);
        }
        if (count == 0) {
            return;
        }
        writeAll(to, QByteArrayView(buffer).first(count), path);
    }
}

// A new file in the place of the one at `path`, with what `fill` writes to the
// descriptor that it is given.
template<typename Fill>
void replace(const QString &path, mode_t mode, Fill fill)
{
    const QFileInfo target(path);
    // Hidden, and with a fresh name: two writers never share one.
    const QString temporaryPath
        = QStringLiteral("%1/.%2.%3.tmp")
              .arg(target.absolutePath(), target.fileName(), QUuid::createUuid().toString(QUuid::WithoutBraces));
    Temporary temporary(temporaryPath);
    Descriptor file(::open(temporary.path(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode));
    if (file.number() < 0) {
        temporary.keep(); // nothing of ours is there
        fail(path);
    }
    // The mask may have taken bits away; it can never have added one.
    if (::fchmod(file.number(), mode) != 0) {
        fail(path);
    }
    fill(file.number());
    if (::fsync(file.number()) != 0 || file.close() != 0) {
        fail(path);
    }
    if (::rename(temporary.path(), QFile::encodeName(path).constData()) != 0) {
        fail(path);
    }
    temporary.keep();
    if (const int code = codeOfSyncingFolder(target.absolutePath()); code != 0) {
        throw UnsyncedFileError(QStringLiteral("write the file"), path, code);
    }
}

// The folders on the way to `path` that are not there yet, the deepest first.
QStringList missingFolders(const QString &path)
{
    QStringList missing;
    for (QString folder = path; !QFileInfo::exists(folder); folder = QFileInfo(folder).path()) {
        missing.append(folder);
    }
    return missing;
}

} // namespace

void write(const QString &path, const QByteArray &bytes, mode_t mode)
{
    replace(path, mode, [&](int descriptor) { writeAll(descriptor, bytes, path); });
}

void writeStreamed(const QString &path, const std::function<void(QIODevice &)> &fill, mode_t mode)
{
    replace(path, mode, [&](int descriptor) {
        Stream stream(descriptor);
        fill(stream);
        if (const int code = stream.finish(); code != 0) {
            throw FileError(QStringLiteral("write the file"), path, code);
        }
    });
}

void copy(const QString &source, const QString &path)
{
    // Without O_NONBLOCK a pipe in the file's place would be waited for for ever.
    const Descriptor from(::open(QFile::encodeName(source).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (from.number() < 0) {
        failReading(source);
    }
    replace(path, 0644, [&](int descriptor) { copyAll(from.number(), descriptor, source, path); });
}

void createFolder(const QString &path)
{
    const QString action = QStringLiteral("create the folder");
    const QStringList missing = missingFolders(QDir::cleanPath(QDir(path).absolutePath()));
    std::error_code error;
    std::filesystem::create_directories(QFile::encodeName(path).toStdString(), error);
    if (error) {
        throw FileError(action, path, error.value());
    }
    for (const QString &folder : missing) {
        // A parent that may be written but not read cannot be synced.
        const int code = codeOfSyncingFolder(QFileInfo(folder).path());
        if (code != 0 && code != EACCES) {
            throw FileError(action, path, code);
        }
    }
}

void syncFolder(const QString &path)
{
    if (const int code = codeOfSyncingFolder(path); code != 0) {
        throw FileError(QStringLiteral("sync the folder"), path, code);
    }
}

void move(const QString &from, const QString &to)
{
    const auto check = [&to](int code) {
        if (code != 0) {
            throw FileError(QStringLiteral("move a file to"), to, code);
        }
    };
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    {
        const Descriptor file(::open(source.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
        check(file.number() < 0 || ::fsync(file.number()) != 0 ? errno : 0);
    }
    int moved = ::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE);
    if (moved != 0 && errno == EINVAL) {
        // A file system that cannot promise it: look first, then rename.
        struct stat status
        {
        };
        check(::lstat(target.constData(), &status) == 0 ? EEXIST : 0);
        moved = ::rename(source.constData(), target.constData());
    }
    check(moved != 0 ? errno : 0);
    if (const int code = codeOfSyncingFolder(QFileInfo(to).absolutePath()); code != 0) {
        ::rename(target.constData(), source.constData()); // or nobody would know which of the two it is
        check(code);
    }
}

void moveOver(const QString &from, const QString &to)
{
    const QString action = QStringLiteral("move a file to");
    if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0) {
        throw FileError(action, to, errno);
    }
    if (const int code = codeOfSyncingFolder(QFileInfo(to).absolutePath()); code != 0) {
        throw UnsyncedFileError(action, to, code);
    }
}

void remove(const QString &path)
{
    const int removed = ::unlink(QFile::encodeName(path).constData());
    if (const int code = removed != 0 ? errno : codeOfSyncingFolder(QFileInfo(path).absolutePath()); code != 0) {
        throw FileError(QStringLiteral("remove the file"), path, code);
    }
}

} // namespace quire::DurableFile
