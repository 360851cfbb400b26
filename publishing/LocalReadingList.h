// The reading list as a file in a folder that the reader chose, which others may
// be reading at any moment.
//
// Thread: any; blocks on the disk.

#pragma once

#include <QByteArray>
#include <QString>

namespace quire::LocalReadingList {

// Puts `markdown` into "quire.md" in `folder`, which is created when it is not
// there: whoever opens the file sees the old list or the new one. The answer is
// the file's absolute path. Throws FileError, the old file as it was and nothing
// of ours beside it. What a killed program left beside the list goes with the next
// one, once it is a day old.
QString write(const QString &folder, const QByteArray &markdown);

} // namespace quire::LocalReadingList
