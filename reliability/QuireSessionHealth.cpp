#include "reliability/QuireSessionHealth.h"

#include "files/DurableFile.h"
#include "files/SmallFile.h"
#include "records/DateParser.h"
#include "records/UUIDText.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace quire {

namespace {

constexpr QStringView sessionIDKey = u"sessionID";
constexpr QStringView openedAtKey = u"openedAt";
constexpr QStringView closedAtKey = u"closedAt";
constexpr QStringView cleanKey = u"clean";

std::optional<QuireSessionRecord> decode(const QByteArray &bytes)
{
    const QJsonObject object = QJsonDocument::fromJson(bytes).object();
    const auto sessionID = UUIDText::parsed(object[sessionIDKey].toString());
    const QJsonValue closedAt = object[closedAtKey];
    if (!sessionID || !object[openedAtKey].isString() || !object[cleanKey].isBool()
        || !(closedAt.isString() || closedAt.isNull() || closedAt.isUndefined())) {
        return std::nullopt;
    }
    return QuireSessionRecord{*sessionID, object[openedAtKey].toString(),
        closedAt.isString() ? std::optional(closedAt.toString()) : std::nullopt, object[cleanKey].toBool()};
}

QByteArray encode(const QuireSessionRecord &record)
{
    QJsonObject object; // sorted by key
    object[sessionIDKey] = UUIDText::of(record.sessionID);
    object[openedAtKey] = record.openedAt;
    if (record.closedAt) {
        object[closedAtKey] = *record.closedAt;
    }
    object[cleanKey] = record.clean;
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

} // namespace

QuireSessionHealth::QuireSessionHealth(QString path)
    : m_path(std::move(path))
{
}

std::optional<QuireSessionRecord> QuireSessionHealth::read() const
{
    const auto bytes = SmallFile::read(m_path);
    return bytes ? decode(*bytes) : std::nullopt;
}

void QuireSessionHealth::write(const QuireSessionRecord &record) const
{
    DurableFile::createFolder(QFileInfo(m_path).path());
    DurableFile::write(m_path, encode(record));
}

void QuireSessionHealth::markClean(Instant now) const
{
    const QString moment = DateParser::iso8601(now);
    QuireSessionRecord record = read().value_or(QuireSessionRecord{QUuid::createUuid(), moment, {}, false});
    record.closedAt = moment;
    record.clean = true;
    write(record);
}

} // namespace quire
