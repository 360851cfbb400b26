#include "persistence/QuireCredentialStore.h"

#include "files/DurableFile.h"
#include "files/SmallFile.h"
#include "records/Text.h"

#include <QCborMap>
#include <QCborStreamReader>
#include <QCborValue>
#include <QFile>
#include <QFileInfo>

namespace quire {

namespace {

constexpr mode_t ownerOnly = 0600;

} // namespace

QuireCredentialStore::QuireCredentialStore(QString url)
    : m_url(std::move(url))
{
}

const QSet<QString> &QuireCredentialStore::protectedKeys()
{
    static const QSet<QString> keys{QStringLiteral("goodreadsRssKey"), QStringLiteral("netlifyToken")};
    return keys;
}

QMap<QString, QString> QuireCredentialStore::load() const
{
    QFile file(m_url);
    if (!QFileInfo(m_url).isFile() || file.size() > SmallFile::maximumBytes || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QCborParserError error;
    const QCborValue root = QCborValue::fromCbor(file.readAll(), &error);
    if (error.error != QCborError::NoError || !root.isMap()) {
        return {};
    }
    QMap<QString, QString> secrets;
    const QCborMap map = root.toMap();
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        if (!entry.key().isString() || !entry.value().isString()) {
            return {};
        }
        if (const QString secret = entry.value().toString(); !secret.isEmpty()) {
            secrets.insert(entry.key().toString(), secret);
        }
    }
    return secrets;
}

void QuireCredentialStore::set(const QString &value, const QString &key) const
{
    auto secrets = load();
    if (const QString trimmed = Text::trimmed(value); trimmed.isEmpty()) {
        secrets.remove(key);
    } else {
        secrets.insert(key, trimmed);
    }
    write(secrets);
}

QStringList QuireCredentialStore::migrate(const QMap<QString, QString> &rows) const
{
    QStringList takenOver;
    for (auto row = rows.cbegin(); row != rows.cend(); ++row) {
        const QString value = Text::trimmed(row.value());
        if (value.isEmpty() || !protectedKeys().contains(row.key())) {
            continue;
        }
        if (!load().contains(row.key())) {
            set(value, row.key());
        }
        takenOver.append(row.key());
    }
    return takenOver;
}

void QuireCredentialStore::write(const QMap<QString, QString> &secrets) const
{
    DurableFile::createFolder(QFileInfo(m_url).absolutePath());
    QCborMap map;
    for (auto secret = secrets.cbegin(); secret != secrets.cend(); ++secret) {
        map.insert(secret.key(), secret.value());
    }
    DurableFile::write(m_url, map.toCborValue().toCbor(), ownerOnly);
}

} // namespace quire
