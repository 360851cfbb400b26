#include "reliability/LeaseEvidence.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <csignal>

#include <sys/stat.h>

namespace quire {

namespace {

std::optional<Instant> modificationDate(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0) {
        return std::nullopt;
    }
    // A file system can hold years that a count of milliseconds cannot.
    constexpr qint64 furthest = 1'000'000'000'000; // seconds, some 31,000 years
    const std::chrono::seconds seconds(std::clamp<qint64>(status.st_mtim.tv_sec, -furthest, furthest));
    const std::chrono::nanoseconds fraction(status.st_mtim.tv_nsec);
    return Instant(seconds + std::chrono::floor<Instant::duration>(fraction));
}

bool isProcessGone(pid_t process)
{
    errno = 0;
    return ::kill(process, 0) == -1 && errno == ESRCH;
}

} // namespace

LeaseEvidence LeaseEvidence::gather(const QString &lockPath, const QString &ownerPath)
{
    return {QuireLibraryLeaseOwner::read(ownerPath), modificationDate(ownerPath), modificationDate(lockPath)};
}

Instant LeaseEvidence::lastSign() const
{
    if (ownerDate) {
        return *ownerDate;
    }
    if (owner) {
        return owner->createdAt;
    }
    return lockDate.value_or(distantPast);
}

bool isAbandoned(const LeaseEvidence &evidence, const std::optional<QString> &ownHostID,
    const QSet<QString> &legacyKeys, Instant now, const LeasePatience &patience)
{
    const Instant::duration age = now - evidence.lastSign();
    if (!evidence.owner) {
        return age > patience.ownerless;
    }
    const QuireLibraryLeaseOwner &owner = *evidence.owner;
    const bool isThisMachine
        = owner.hostID ? owner.hostID == ownHostID : legacyKeys.contains(QuireHostIdentity::legacyKey(owner.hostName));
    if (isThisMachine && isProcessGone(owner.processID)) {
        return true;
    }
    return age > patience.silent;
}

} // namespace quire
