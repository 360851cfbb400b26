#include "files/FolderPath.h"

#include "records/Text.h"

#include <QDir>

namespace quire::FolderPath {

QString expandingTilde(const QString &path)
{
    if (path == u"~" || path.startsWith(u"~/")) {
        return QDir::homePath() + path.mid(1);
    }
    return path;
}

QString normalizedPublishPath(const QString &path)
{
    if (Text::trimmed(path).isEmpty()) {
        return {};
    }
    return QDir::cleanPath(expandingTilde(path));
}

} // namespace quire::FolderPath
