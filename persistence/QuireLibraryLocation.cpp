#include "persistence/QuireLibraryLocation.h"

#include "files/DurableFile.h"
#include "files/FolderPath.h"
#include "files/SmallFile.h"
#include "persistence/AppDirectories.h"
#include "persistence/database/DatabaseError.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

namespace quire::QuireLibraryLocation {

namespace {

constexpr QStringView pathKey = u"path";

// A text that the system would cut short or rewrite names another folder than
// the one that was chosen.
bool canBePath(const QString &text)
{
    return !text.contains(QChar::Null) && text.isValidUtf16();
}

std::optional<QString> recordedPath(const QString &recordURL)
{
    const auto bytes = SmallFile::read(recordURL);
    if (!bytes) {
        return std::nullopt;
    }
    const QJsonValue path = QJsonDocument::fromJson(*bytes).object()[pathKey];
    return path.isString() && canBePath(path.toString()) ? std::optional(path.toString()) : std::nullopt;
}

} // namespace

QString recordURL()
{
    return AppDirectories::supportDirectory() + QStringLiteral("/Library Location.json");
}

std::optional<QString> recordedDirectory(const QString &recordURL)
{
    const QString folder = FolderPath::expandingTilde(recordedPath(recordURL).value_or(QString()));
    return folder.startsWith(u'/') ? std::optional(QDir::cleanPath(folder)) : std::nullopt;
}

QString configuredDirectory()
{
    return recordedDirectory(recordURL()).value_or(AppDirectories::supportDirectory());
}

void save(const QString &folder, const QString &recordURL)
{
    const QString path = standardized(folder);
    DurableFile::createFolder(QFileInfo(recordURL).path());
    const QJsonObject record{{pathKey.toString(), path}};
    DurableFile::write(recordURL, QJsonDocument(record).toJson(QJsonDocument::Compact));
}

QString standardized(const QString &folder)
{
    if (!folder.startsWith(u'/') || !canBePath(folder)) {
        throw DatabaseError(DatabaseError::Kind::InvalidLibraryLocation,
            QStringLiteral("Choose an absolute folder for the Quire library."));
    }
    return QDir::cleanPath(folder);
}

} // namespace quire::QuireLibraryLocation
