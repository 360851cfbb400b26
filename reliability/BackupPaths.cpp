#include "reliability/BackupPaths.h"

#include "records/DateParser.h"

namespace quire::BackupPaths {

QString name(Instant moment)
{
    // Colons are not for file names everywhere a folder may be copied to.
    return namePrefix.toString() + DateParser::iso8601(moment).replace(u':', u'-') + nameSuffix.toString();
}

QString manifest(const QString &backup)
{
    return backup + manifestSuffix.toString();
}

QString marker(const QString &backup)
{
    return backup + markerSuffix.toString();
}

} // namespace quire::BackupPaths
