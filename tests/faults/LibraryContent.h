// What a library holds, as far as a reader could tell: every row of every table
// and the schema's version, without what differs between two runs of one deed
// (moments told by SQL's clock, random identifiers and tokens).
//
// Thread: a plain value.

#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace quire::testing {

struct LibraryContent
{
    qint64 version = 0;
    QMap<QString, QStringList> rows; // by table; tables without rows are left out
    QMap<QString, QString> secrets; // of the credential file

    // Opens the library in `folder` on its own and reads it; a missing file holds
    // nothing. localStateFolder: where its secrets are. Recovers what a crash left, as every opening does. Throws
    // DatabaseError when it cannot be read or its integrity check finds
    // something.
    static LibraryContent read(const QString &folder, const QString &localStateFolder);

    bool operator==(const LibraryContent &) const = default;

    // Some words on how this differs from `other`, for a finding.
    QString difference(const LibraryContent &other) const;
};

} // namespace quire::testing
