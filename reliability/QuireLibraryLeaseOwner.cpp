#include "reliability/QuireLibraryLeaseOwner.h"

#include "files/Descriptor.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>

namespace quire {

namespace {

constexpr QStringView tokenKey = u"token";
constexpr QStringView processIDKey = u"processID";
constexpr QStringView hostNameKey = u"hostName";
constexpr QStringView hostIDKey = u"hostID";
constexpr QStringView createdAtKey = u"createdAt";

using Seconds = std::chrono::duration<double>;

constexpr Instant epoch = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);
constexpr Instant distantFuture = std::chrono::sys_days(std::chrono::year(9999) / 12 / 31);

// QUuid is content with less than a whole UUID, and with more.
std::optional<QUuid> uuid(const QString &text)
{
    if (text.size() != 36) {
        return std::nullopt;
    }
    for (qsizetype at = 0; at < text.size(); ++at) {
        const bool isHyphen = at == 8 || at == 13 || at == 18 || at == 23;
        const char16_t character = text[at].unicode();
        const bool isHexadecimal = (character >= u'0' && character <= u'9') || (character >= u'a' && character <= u'f')
            || (character >= u'A' && character <= u'F');
        if (isHyphen ? character != u'-' : !isHexadecimal) {
            return std::nullopt;
        }
    }
    return QUuid::fromString(text);
}

std::optional<qint32> integer(double number)
{
    if (std::trunc(number) != number || number < std::numeric_limits<qint32>::min()
        || number > std::numeric_limits<qint32>::max()) {
        return std::nullopt;
    }
    return qint32(number);
}

Instant moment(double secondsSinceEpoch)
{
    const Seconds seconds(
        std::clamp(secondsSinceEpoch, Seconds(distantPast - epoch).count(), Seconds(distantFuture - epoch).count()));
    return epoch + std::chrono::round<Instant::duration>(seconds);
}

} // namespace

QByteArray QuireLibraryLeaseOwner::encoded() const
{
    QJsonObject object;
    object[tokenKey] = token.toString(QUuid::WithoutBraces).toUpper();
    object[processIDKey] = processID;
    object[hostNameKey] = hostName;
    if (hostID) {
        object[hostIDKey] = *hostID;
    }
    object[createdAtKey] = Seconds(createdAt - epoch).count();
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<QuireLibraryLeaseOwner> QuireLibraryLeaseOwner::decoded(const QByteArray &bytes)
{
    const QJsonObject object = QJsonDocument::fromJson(bytes).object();
    const QJsonValue processID = object[processIDKey];
    const QJsonValue hostName = object[hostNameKey];
    const QJsonValue hostID = object[hostIDKey];
    const QJsonValue createdAt = object[createdAtKey];
    if (!processID.isDouble() || !hostName.isString() || !createdAt.isDouble()
        || !(hostID.isString() || hostID.isNull() || hostID.isUndefined())) {
        return std::nullopt;
    }
    const auto token = uuid(object[tokenKey].toString());
    const auto process = integer(processID.toDouble());
    if (!token || !process) {
        return std::nullopt;
    }
    return QuireLibraryLeaseOwner{*token, *process, hostName.toString(),
        hostID.isString() ? std::optional(hostID.toString()) : std::nullopt, moment(createdAt.toDouble())};
}

std::optional<QuireLibraryLeaseOwner> QuireLibraryLeaseOwner::read(const QString &path)
{
    // Without O_NONBLOCK a pipe in the file's place would hold us for ever.
    const Descriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    return file.number() < 0 ? std::nullopt : read(file.number());
}

std::optional<QuireLibraryLeaseOwner> QuireLibraryLeaseOwner::read(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > maximumSize) {
        return std::nullopt;
    }
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return decoded(file.read(maximumSize));
}

} // namespace quire
