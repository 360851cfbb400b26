#include "reliability/QuireLibraryLeaseOwner.h"

#include "files/SmallFile.h"
#include "records/JsonInteger.h"
#include "records/UUIDText.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>

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
    object[tokenKey] = UUIDText::of(token);
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
    const QJsonValue hostName = object[hostNameKey];
    const QJsonValue hostID = object[hostIDKey];
    const QJsonValue createdAt = object[createdAtKey];
    if (!hostName.isString() || !createdAt.isDouble()
        || !(hostID.isString() || hostID.isNull() || hostID.isUndefined())) {
        return std::nullopt;
    }
    const auto token = UUIDText::parsed(object[tokenKey].toString());
    const auto processID = wholeNumber(object[processIDKey]);
    if (!token || !processID || !std::in_range<qint32>(*processID)) {
        return std::nullopt;
    }
    return QuireLibraryLeaseOwner{*token, qint32(*processID), hostName.toString(),
        hostID.isString() ? std::optional(hostID.toString()) : std::nullopt, moment(createdAt.toDouble())};
}

std::optional<QuireLibraryLeaseOwner> QuireLibraryLeaseOwner::read(const QString &path)
{
    const auto bytes = SmallFile::read(path, maximumSize);
    return bytes ? decoded(*bytes) : std::nullopt;
}

std::optional<QuireLibraryLeaseOwner> QuireLibraryLeaseOwner::read(int descriptor)
{
    const auto bytes = SmallFile::read(descriptor, maximumSize);
    return bytes ? decoded(*bytes) : std::nullopt;
}

} // namespace quire
