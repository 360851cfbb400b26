#include "reliability/QuireCloudLineage.h"

#include "files/DurableFile.h"
#include "files/SmallFile.h"
#include "records/JsonInteger.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

namespace quire {

namespace {

constexpr QStringView libraryUUIDKey = u"libraryUUID";
constexpr QStringView generationKey = u"generation";
constexpr QStringView lineageTokenKey = u"lineageToken";
constexpr QStringView recordedAtKey = u"recordedAt";

std::optional<QuireCloudLineage> decode(const QByteArray &bytes)
{
    const QJsonObject object = QJsonDocument::fromJson(bytes).object();
    const auto generation = wholeNumber(object[generationKey]);
    if (!generation || !object[libraryUUIDKey].isString() || !object[lineageTokenKey].isString()
        || !object[recordedAtKey].isString()) {
        return std::nullopt;
    }
    return QuireCloudLineage{object[libraryUUIDKey].toString(), *generation, object[lineageTokenKey].toString(),
        object[recordedAtKey].toString()};
}

QByteArray encode(const QuireCloudLineage &lineage)
{
    QJsonObject object; // sorted by key
    object[libraryUUIDKey] = lineage.libraryUUID;
    object[generationKey] = lineage.generation;
    object[lineageTokenKey] = lineage.lineageToken;
    object[recordedAtKey] = lineage.recordedAt;
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

} // namespace

LineageFinding compare(const QuireCloudLineage &current, const QuireCloudLineage &remembered)
{
    if (current.libraryUUID != remembered.libraryUUID) {
        return LineageFinding::OtherLibrary;
    }
    if (current.generation < remembered.generation) {
        return LineageFinding::RolledBack;
    }
    if (current.generation > remembered.generation) {
        return LineageFinding::MovedOn;
    }
    return current.lineageToken == remembered.lineageToken ? LineageFinding::Unchanged : LineageFinding::Diverged;
}

QuireCloudLineageStore::QuireCloudLineageStore(QString directory)
    : m_directory(std::move(directory))
{
}

QString QuireCloudLineageStore::recordURL(const QString &databaseURL) const
{
    const QByteArray name = QCryptographicHash::hash(QDir::cleanPath(databaseURL).toUtf8(), QCryptographicHash::Sha256);
    return QStringLiteral("%1/%2.json").arg(m_directory, QString::fromLatin1(name.toHex()));
}

void QuireCloudLineageStore::save(const QuireCloudLineage &lineage, const QString &databaseURL) const
{
    DurableFile::createFolder(m_directory);
    DurableFile::write(recordURL(databaseURL), encode(lineage));
}

std::optional<QuireCloudLineage> QuireCloudLineageStore::read(const QString &databaseURL) const
{
    const auto bytes = SmallFile::readIfThere(recordURL(databaseURL));
    return bytes ? decode(*bytes) : std::nullopt;
}

} // namespace quire
