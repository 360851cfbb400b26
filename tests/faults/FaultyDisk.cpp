#include "faults/FaultyDisk.h"

#include "faults/FaultyVFS.h"
#include "reliability/QuireFailureInjector.h"

#include <unistd.h>

namespace quire::testing {

FaultyDisk &FaultyDisk::instance()
{
    static FaultyDisk &disk = *new FaultyDisk; // SQLite may call until the end
    static const bool registered = registerFaultyVFS();
    Q_UNUSED(registered);
    return disk;
}

void FaultyDisk::watch(const QString &folder)
{
    const std::lock_guard lock(m_mutex);
    m_folder = folder + QLatin1Char('/');
    m_calls = 0;
    m_nth = 0;
    m_struck.clear();
    m_recording = false;
    m_ignoresSyncs = false;
}

void FaultyDisk::release()
{
    const std::lock_guard lock(m_mutex);
    m_folder.clear();
    m_nth = 0;
    m_recording = false;
}

void FaultyDisk::strike(int nth, Lasting lasting, Stroke stroke)
{
    const std::lock_guard lock(m_mutex);
    m_calls = 0;
    m_struck.clear();
    m_nth = nth;
    m_lasting = lasting;
    m_stroke = stroke;
}

void FaultyDisk::relent()
{
    const std::lock_guard lock(m_mutex);
    m_nth = 0;
}

int FaultyDisk::calls() const
{
    const std::lock_guard lock(m_mutex);
    return m_calls;
}

bool FaultyDisk::hasStruck() const
{
    const std::lock_guard lock(m_mutex);
    return !m_struck.isEmpty();
}

QString FaultyDisk::struckCall() const
{
    const std::lock_guard lock(m_mutex);
    return m_struck;
}

bool FaultyDisk::watches(const QString &path) const
{
    const std::lock_guard lock(m_mutex);
    return !m_folder.isEmpty() && path.startsWith(m_folder);
}

std::optional<FaultyDisk::Stroke> FaultyDisk::next(const char *call, const QString &path)
{
    const std::lock_guard lock(m_mutex);
    ++m_calls;
    const bool struck = m_nth > 0 && (m_lasting == Lasting::Once ? m_calls == m_nth : m_calls >= m_nth);
    if (!struck) {
        return std::nullopt;
    }
    if (m_stroke == Stroke::End) {
        ::_exit(QuireFailureInjector::exitStatus);
    }
    if (m_struck.isEmpty()) {
        m_struck = QStringLiteral("%1 of %2").arg(QLatin1String(call), relative(path));
    }
    return m_stroke;
}

void FaultyDisk::beginRecord()
{
    const std::lock_guard lock(m_mutex);
    m_record = {.before = readFolder(m_folder), .events = {}};
    m_numbers.clear();
    m_nextNumber = 0;
    for (auto file = m_record.before.cbegin(); file != m_record.before.cend(); ++file) {
        m_numbers.insert(file.key(), m_nextNumber++);
    }
    m_recording = true;
}

void FaultyDisk::mark(qint64 done)
{
    const std::lock_guard lock(m_mutex);
    append({.kind = DiskEvent::Kind::Mark, .name = {}, .newName = {}, .offset = done, .bytes = {}});
}

DiskRecord FaultyDisk::takeRecord()
{
    const std::lock_guard lock(m_mutex);
    m_recording = false;
    return std::exchange(m_record, {});
}

void FaultyDisk::ignoreSyncs(bool ignore)
{
    const std::lock_guard lock(m_mutex);
    m_ignoresSyncs = ignore;
}

int FaultyDisk::opened(const QString &path, bool mayCreate)
{
    const std::lock_guard lock(m_mutex);
    const QString name = relative(path);
    if (const auto known = m_numbers.constFind(name); known != m_numbers.cend()) {
        return *known;
    }
    if (!m_recording || !mayCreate) {
        return -1;
    }
    const int file = m_nextNumber++;
    m_numbers.insert(name, file);
    append({.kind = DiskEvent::Kind::Create, .file = file, .name = name, .newName = {}, .bytes = {}});
    return file;
}

void FaultyDisk::wrote(int file, qint64 offset, const char *bytes, qint64 size)
{
    const std::lock_guard lock(m_mutex);
    append({.kind = DiskEvent::Kind::Write,
        .file = file,
        .name = {},
        .newName = {},
        .offset = offset,
        .bytes = m_recording ? QByteArray(bytes, size) : QByteArray()});
}

void FaultyDisk::truncated(int file, qint64 size)
{
    const std::lock_guard lock(m_mutex);
    append({.kind = DiskEvent::Kind::Truncate, .file = file, .name = {}, .newName = {}, .offset = size, .bytes = {}});
}

void FaultyDisk::synced(int file)
{
    const std::lock_guard lock(m_mutex);
    if (!m_ignoresSyncs) {
        append({.kind = DiskEvent::Kind::Sync, .file = file, .name = {}, .newName = {}, .bytes = {}});
    }
}

void FaultyDisk::syncedFolder(const QString &path)
{
    const std::lock_guard lock(m_mutex);
    if (!m_ignoresSyncs) {
        append({.kind = DiskEvent::Kind::SyncFolder, .name = relative(path), .newName = {}, .bytes = {}});
    }
}

void FaultyDisk::deleted(const QString &path)
{
    const std::lock_guard lock(m_mutex);
    const QString name = relative(path);
    m_numbers.remove(name);
    append({.kind = DiskEvent::Kind::Delete, .name = name, .newName = {}, .bytes = {}});
}

void FaultyDisk::renamed(const QString &from, const QString &to)
{
    const std::lock_guard lock(m_mutex);
    const QString name = relative(from);
    if (const auto number = m_numbers.constFind(name); number != m_numbers.cend()) {
        m_numbers.insert(relative(to), *number);
        m_numbers.remove(name);
    }
    append({.kind = DiskEvent::Kind::Rename, .name = name, .newName = relative(to), .bytes = {}});
}

QString FaultyDisk::relative(const QString &path) const
{
    return path.mid(m_folder.size());
}

void FaultyDisk::append(DiskEvent event)
{
    if (m_recording) {
        m_record.events.append(std::move(event));
    }
}

} // namespace quire::testing
