#include "faults/LockedLibrary.h"

#include "testing/ChildProcess.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <stdexcept>

#include <fcntl.h>
#include <sys/stat.h>

namespace quire::testing {

namespace {

using Wall = std::chrono::system_clock;

void date(const QString &path, std::chrono::seconds age)
{
    const timespec times[2]
        = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT}, {.tv_sec = Wall::to_time_t(Wall::now() - age), .tv_nsec = 0}};
    if (::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) != 0) {
        throw std::runtime_error("there is nothing to date");
    }
}

} // namespace

void LockedLibrary::putLock(std::chrono::seconds age) const
{
    QDir().mkpath(m_lock);
    date(m_lock, age);
}

void LockedLibrary::putRecord(const QByteArray &bytes, std::chrono::seconds age) const
{
    QDir().mkpath(m_lock);
    QFile file(m_record);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        throw std::runtime_error("the record cannot be written");
    }
    file.close();
    date(m_record, age);
}

void LockedLibrary::dateRecord(std::chrono::seconds age) const
{
    date(m_record, age);
}

std::optional<std::chrono::seconds> LockedLibrary::recordAge() const
{
    struct stat status = {};
    if (::stat(QFile::encodeName(m_record).constData(), &status) != 0) {
        return std::nullopt;
    }
    return std::chrono::floor<std::chrono::seconds>(Wall::now() - Wall::from_time_t(status.st_mtim.tv_sec));
}

std::optional<QUuid> LockedLibrary::holder() const
{
    QFile file(m_record);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QJsonObject record = QJsonDocument::fromJson(file.readAll()).object();
    const QUuid token = QUuid::fromString(record[u"token"].toString());
    return token.isNull() ? std::nullopt : std::optional(token);
}

bool LockedLibrary::clear() const
{
    const bool isClean = QDir(m_locks).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    QDir(m_locks).removeRecursively();
    return isClean;
}

pid_t endedProcess()
{
    ChildProcess child(QStringLiteral("/bin/true"), {});
    child.waitUntilEnded();
    return child.processID();
}

} // namespace quire::testing
