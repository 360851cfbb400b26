#include "persistence/AppDirectories.h"

#include "records/Text.h"

#include <QDir>
#include <QStandardPaths>

namespace quire::AppDirectories {

QString supportDirectory()
{
    const auto configured = Text::nonEmptyValue(QStringLiteral(QUIRE_SUPPORT_DIRECTORY));
    return QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/")
        + configured.value_or(QStringLiteral("Quire")));
}

} // namespace quire::AppDirectories
