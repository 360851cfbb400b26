#include "reliability/QuireHostIdentity.h"

#include <QCryptographicHash>
#include <QFile>
#include <QSysInfo>

namespace quire {

namespace {

bool isAlphanumeric(char32_t character)
{
    return QChar::isLetterOrNumber(character) || QChar::isMark(character);
}

// The reader's own name for the machine, as systemd keeps it.
std::optional<QString> computerName()
{
    constexpr QByteArrayView key = "PRETTY_HOSTNAME=";
    QFile file(QStringLiteral("/etc/machine-info"));
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    while (!file.atEnd()) {
        QByteArray line = file.readLine().trimmed();
        if (!line.startsWith(key)) {
            continue;
        }
        line.remove(0, key.size());
        if (line.size() > 1 && (line.front() == '"' || line.front() == '\'') && line.back() == line.front()) {
            line = line.sliced(1, line.size() - 2);
        }
        return QString::fromUtf8(line);
    }
    return std::nullopt;
}

} // namespace

const QuireHostIdentity &QuireHostIdentity::ofThisMachine()
{
    static const QuireHostIdentity identity
        = make(QSysInfo::machineUniqueId(), QSysInfo::machineHostName(), computerName());
    return identity;
}

QuireHostIdentity QuireHostIdentity::make(
    const QByteArray &machineID, const QString &hostName, const std::optional<QString> &computerName)
{
    QuireHostIdentity identity;
    identity.hostName = hostName;
    if (machineID.isEmpty()) {
        identity.current = QStringLiteral("host:") + hostName.toLower();
    } else {
        const QByteArray digest = QCryptographicHash::hash(machineID, QCryptographicHash::Sha256);
        identity.current = QStringLiteral("platform:") + QString::fromLatin1(digest.toHex());
    }
    identity.legacyKeys = {legacyKey(hostName), legacyKey(computerName.value_or(QString()))};
    identity.legacyKeys.remove(QString()); // would recognise every record without a name
    return identity;
}

QString QuireHostIdentity::legacyKey(const QString &name)
{
    QString lowered = name.toLower();
    if (lowered.endsWith(u".local")) {
        lowered.chop(6);
    }
    QString key;
    for (const char32_t character : lowered.toUcs4()) {
        if (isAlphanumeric(character)) {
            key += QChar::fromUcs4(character);
        }
    }
    return key;
}

} // namespace quire
