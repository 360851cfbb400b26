#include "files/FolderPath.h"

#include "records/Text.h"

#include <QDir>
#include <QFile>

#include <filesystem>
#include <system_error>

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

QString resolvingLinks(const QString &folder)
{
    const std::filesystem::path path(QFile::encodeName(folder).toStdString());
    std::error_code error;
    const auto canonical = std::filesystem::weakly_canonical(path, error);
    return QDir::cleanPath(QFile::decodeName((error ? path.lexically_normal() : canonical).c_str()));
}

} // namespace quire::FolderPath
