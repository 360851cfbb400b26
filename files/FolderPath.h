// Folders as a reader types them: with a tilde for the home folder, blanks
// around them, and dots within.
//
// Thread: any; looks at no file.

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

} // namespace quire::FolderPath
