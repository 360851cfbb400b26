// Files as tests make them and look at them.
//
// Thread: any.

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace quire::testing {

// Puts a file of these bytes at `path`, over what is there; its folder exists.
void putFile(const QString &path, const QByteArray &bytes);

// What is in the file at `path`; "(unreadable)" when that cannot be told, which no
// test puts into one.
QByteArray bytesOf(const QString &path);

// All that lies in a folder, hidden too, by name.
QStringList namesIn(const QString &folder);

} // namespace quire::testing
