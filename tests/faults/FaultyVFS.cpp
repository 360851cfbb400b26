#include "faults/FaultyVFS.h"

#include "faults/FaultyDisk.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <new>

namespace quire::testing {

namespace {

using Stroke = FaultyDisk::Stroke;

sqlite3_vfs *systemVFS = nullptr;

// SQLite allocates `szOsFile` bytes for it; the system's file lies behind it.
struct FaultyFile
{
    sqlite3_file base;
    QString *path; // null when the file is not watched
    int number;
    bool syncsFolder; // the next sync makes the file's name durable as well

    sqlite3_file *real() { return reinterpret_cast<sqlite3_file *>(this + 1); }
};

FaultyFile *faulty(sqlite3_file *file)
{
    return reinterpret_cast<FaultyFile *>(file);
}

sqlite3_file *real(sqlite3_file *file)
{
    return faulty(file)->real();
}

FaultyDisk &disk()
{
    return FaultyDisk::instance();
}

std::optional<Stroke> next(sqlite3_file *file, const char *call)
{
    const FaultyFile *const self = faulty(file);
    return self->path ? disk().next(call, *self->path) : std::nullopt;
}

int close(sqlite3_file *file)
{
    FaultyFile *const self = faulty(file);
    delete self->path;
    self->path = nullptr;
    return self->real()->pMethods ? self->real()->pMethods->xClose(self->real()) : SQLITE_OK;
}

int read(sqlite3_file *file, void *bytes, int size, sqlite3_int64 offset)
{
    if (next(file, "read")) {
        return SQLITE_IOERR_READ;
    }
    return real(file)->pMethods->xRead(real(file), bytes, size, offset);
}

int write(sqlite3_file *file, const void *bytes, int size, sqlite3_int64 offset)
{
    FaultyFile *const self = faulty(file);
    const auto stroke = next(file, "write");
    const int written = stroke ? size / 2 : size;
    const int code = real(file)->pMethods->xWrite(real(file), bytes, written, offset);
    if (code == SQLITE_OK && self->path) {
        disk().wrote(self->number, offset, static_cast<const char *>(bytes), written);
    }
    if (stroke) {
        return stroke == Stroke::FailAsFull ? SQLITE_FULL : SQLITE_IOERR_WRITE;
    }
    return code;
}

int truncate(sqlite3_file *file, sqlite3_int64 size)
{
    if (next(file, "truncate")) {
        return SQLITE_IOERR_TRUNCATE;
    }
    const int code = real(file)->pMethods->xTruncate(real(file), size);
    if (code == SQLITE_OK && faulty(file)->path) {
        disk().truncated(faulty(file)->number, size);
    }
    return code;
}

int sync(sqlite3_file *file, int flags)
{
    FaultyFile *const self = faulty(file);
    if (next(file, "sync")) {
        return SQLITE_IOERR_FSYNC;
    }
    const int code = real(file)->pMethods->xSync(real(file), flags);
    if (code == SQLITE_OK && self->path) {
        disk().synced(self->number);
        if (std::exchange(self->syncsFolder, false)) {
            disk().syncedFolder(QFileInfo(*self->path).path());
        }
    }
    return code;
}

int fileSize(sqlite3_file *file, sqlite3_int64 *size)
{
    if (next(file, "size")) {
        return SQLITE_IOERR_FSTAT;
    }
    return real(file)->pMethods->xFileSize(real(file), size);
}

int lock(sqlite3_file *file, int level)
{
    if (next(file, "lock")) {
        return SQLITE_IOERR_LOCK;
    }
    return real(file)->pMethods->xLock(real(file), level);
}

int unlock(sqlite3_file *file, int level)
{
    return real(file)->pMethods->xUnlock(real(file), level);
}

int checkReservedLock(sqlite3_file *file, int *result)
{
    if (next(file, "lock")) {
        return SQLITE_IOERR_CHECKRESERVEDLOCK;
    }
    return real(file)->pMethods->xCheckReservedLock(real(file), result);
}

int fileControl(sqlite3_file *file, int operation, void *argument)
{
    return real(file)->pMethods->xFileControl(real(file), operation, argument);
}

int sectorSize(sqlite3_file *file)
{
    return real(file)->pMethods->xSectorSize(real(file));
}

int deviceCharacteristics(sqlite3_file *file)
{
    return real(file)->pMethods->xDeviceCharacteristics(real(file));
}

int shmMap(sqlite3_file *file, int page, int size, int extend, void volatile **memory)
{
    if (next(file, "map")) {
        return SQLITE_IOERR_SHMMAP;
    }
    return real(file)->pMethods->xShmMap(real(file), page, size, extend, memory);
}

int shmLock(sqlite3_file *file, int offset, int count, int flags)
{
    // Giving a lock back cannot fail.
    if ((flags & SQLITE_SHM_LOCK) != 0 && next(file, "shared lock")) {
        return SQLITE_IOERR_SHMLOCK;
    }
    return real(file)->pMethods->xShmLock(real(file), offset, count, flags);
}

void shmBarrier(sqlite3_file *file)
{
    real(file)->pMethods->xShmBarrier(real(file));
}

int shmUnmap(sqlite3_file *file, int deleteFlag)
{
    return real(file)->pMethods->xShmUnmap(real(file), deleteFlag);
}

// Version 2: with shared memory, without mapped files, which Quire has off.
constexpr sqlite3_io_methods methods{2, close, read, write, truncate, sync, fileSize, lock, unlock, checkReservedLock,
    fileControl, sectorSize, deviceCharacteristics, shmMap, shmLock, shmBarrier, shmUnmap, nullptr, nullptr};

int open(sqlite3_vfs *, const char *name, sqlite3_file *file, int flags, int *outFlags)
{
    auto *const self = new (file) FaultyFile{{nullptr}, nullptr, -1, false};
    self->real()->pMethods = nullptr;
    const QString path = name ? QFile::decodeName(name) : QString();
    const bool watched = name && disk().watches(path);
    if (watched && disk().next("open", path)) {
        return SQLITE_CANTOPEN;
    }
    const int code = systemVFS->xOpen(systemVFS, name, self->real(), flags, outFlags);
    if (self->real()->pMethods) {
        self->base.pMethods = &methods;
    }
    if (code == SQLITE_OK && watched) {
        const bool creates = (flags & SQLITE_OPEN_CREATE) != 0;
        self->path = new QString(path);
        self->number = disk().opened(path, creates);
        // As the system's VFS does for journals that it may have created.
        self->syncsFolder
            = creates && (flags & (SQLITE_OPEN_MAIN_JOURNAL | SQLITE_OPEN_SUPER_JOURNAL | SQLITE_OPEN_WAL)) != 0;
    }
    return code;
}

int remove(sqlite3_vfs *, const char *name, int syncFolder)
{
    const QString path = QFile::decodeName(name);
    const bool watched = disk().watches(path);
    if (watched && disk().next("delete", path)) {
        return SQLITE_IOERR_DELETE;
    }
    const int code = systemVFS->xDelete(systemVFS, name, syncFolder);
    if (code == SQLITE_OK && watched) {
        disk().deleted(path);
        if (syncFolder) {
            disk().syncedFolder(QFileInfo(path).path());
        }
    }
    return code;
}

int access(sqlite3_vfs *, const char *name, int flags, int *result)
{
    const QString path = QFile::decodeName(name);
    if (disk().watches(path) && disk().next("access", path)) {
        return SQLITE_IOERR_ACCESS;
    }
    return systemVFS->xAccess(systemVFS, name, flags, result);
}

} // namespace

bool registerFaultyVFS()
{
    systemVFS = sqlite3_vfs_find(nullptr);
    static sqlite3_vfs vfs = *systemVFS; // what is not replaced is the system's own
    vfs.pNext = nullptr;
    vfs.zName = "quire-faulty";
    vfs.szOsFile = int(sizeof(FaultyFile)) + systemVFS->szOsFile;
    vfs.xOpen = open;
    vfs.xDelete = remove;
    vfs.xAccess = access;
    return sqlite3_vfs_register(&vfs, 1) == SQLITE_OK;
}

} // namespace quire::testing
