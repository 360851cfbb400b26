#include "reliability/QuireBackupManifest.h"

#include "files/DurableFile.h"
#include "files/SmallFile.h"
#include "records/JsonInteger.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace quire {

namespace {

constexpr qint64 presentFormat = 1;
constexpr qsizetype digestDigits = 64;

// Many times what a manifest takes. A longer file is something else.
constexpr qint64 longestManifest = 65'536;

constexpr QStringView formatVersionKey = u"formatVersion";
constexpr QStringView createdAtKey = u"createdAt";
constexpr QStringView databaseSHA256Key = u"databaseSHA256";
constexpr QStringView schemaVersionKey = u"schemaVersion";
constexpr QStringView libraryUUIDKey = u"libraryUUID";
constexpr QStringView generationKey = u"generation";
constexpr QStringView bookCountKey = u"bookCount";
constexpr QStringView audiobookCountKey = u"audiobookCount";
constexpr QStringView integrityCheckKey = u"integrityCheck";

// The fields of one object; a single one that is missing or wrong spoils all.
class Reader
{
public:
    explicit Reader(QJsonObject object)
        : m_object(std::move(object))
    {
    }

    QString text(QStringView key)
    {
        const QJsonValue value = m_object[key];
        m_isGood = m_isGood && value.isString();
        return value.toString();
    }

    qint64 integer(QStringView key)
    {
        const auto whole = wholeNumber(m_object[key]);
        m_isGood = m_isGood && whole;
        return whole.value_or(0);
    }

    qint64 count(QStringView key)
    {
        const qint64 whole = integer(key);
        m_isGood = m_isGood && whole >= 0;
        return whole;
    }

    bool isGood() const { return m_isGood; }

private:
    QJsonObject m_object;
    bool m_isGood = true;
};

bool isDigest(const QString &text)
{
    return text.size() == digestDigits && std::all_of(text.begin(), text.end(), [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f');
    });
}

} // namespace

QByteArray QuireBackupManifest::encoded() const
{
    QJsonObject object; // sorted by key
    object[formatVersionKey] = formatVersion;
    object[createdAtKey] = createdAt;
    object[databaseSHA256Key] = databaseSHA256;
    object[schemaVersionKey] = schemaVersion;
    object[libraryUUIDKey] = libraryUUID;
    object[generationKey] = generation;
    object[bookCountKey] = bookCount;
    object[audiobookCountKey] = audiobookCount;
    object[integrityCheckKey] = integrityCheck;
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

std::optional<QuireBackupManifest> QuireBackupManifest::decoded(const QByteArray &bytes)
{
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    Reader fields(document.object());
    const QuireBackupManifest manifest{
        .formatVersion = fields.integer(formatVersionKey),
        .createdAt = fields.text(createdAtKey),
        .databaseSHA256 = fields.text(databaseSHA256Key),
        .schemaVersion = fields.integer(schemaVersionKey),
        .libraryUUID = fields.text(libraryUUIDKey),
        .generation = fields.integer(generationKey),
        .bookCount = fields.count(bookCountKey),
        .audiobookCount = fields.count(audiobookCountKey),
        .integrityCheck = fields.text(integrityCheckKey),
    };
    if (!fields.isGood() || manifest.formatVersion != presentFormat || !isDigest(manifest.databaseSHA256)) {
        return std::nullopt;
    }
    return manifest;
}

std::optional<QuireBackupManifest> QuireBackupManifest::read(const QString &path)
{
    const auto bytes = SmallFile::read(path, longestManifest);
    return bytes ? decoded(*bytes) : std::nullopt;
}

void QuireBackupManifest::write(const QString &path) const
{
    DurableFile::write(path, encoded());
}

} // namespace quire
