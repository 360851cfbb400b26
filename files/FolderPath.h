// Folders as a reader types them: with a tilde for the home folder, blanks
// around them, and dots within.
//
// Thread: any.

#pragma once

#include <QString>

namespace quire::FolderPath {

// `path` with a leading "~" or "~/" replaced by the home folder; anything else
// stays as it is.
QString expandingTilde(const QString &path);

// The plain path of a publishing folder: empty for a blank text, otherwise
// with the tilde expanded and dots and doubled slashes resolved. A relative
// path stays relative.
QString normalizedPublishPath(const QString &path);

// The absolute `folder` without dots and with its symbolic links followed, as
// far as it exists: two names of one folder become equal. Looks at the disk.
QString resolvingLinks(const QString &folder);

} // namespace quire::FolderPath
