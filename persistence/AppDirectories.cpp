#include "persistence/AppDirectories.h"

#include "records/Text.h"

#include <QDir>
#include <QStandardPaths>

namespace quire::AppDirectories {

namespace {

QString inDataDirectory(const QString &name)
{
    return QDir::cleanPath(
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/") + name);
}

} // namespace

QString supportDirectory()
{
    const auto configured = Text::nonEmptyValue(QStringLiteral(QUIRE_SUPPORT_DIRECTORY));
    return inDataDirectory(configured.value_or(QStringLiteral("Quire")));
}

QString legacyBooksSupportDirectory()
{
    return inDataDirectory(QStringLiteral("Books"));
}

QString defaultBackupDirectory()
{
    return supportDirectory() + QStringLiteral("/Database Backups");
}

} // namespace quire::AppDirectories
