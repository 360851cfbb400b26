// Reads the titles out of a private copy of the Audible application's database.
// The file is another program's, and may be damaged or made to do harm: what it
// takes of memory, disk and time is bounded, whatever it holds.
//
// Thread: any, one at a time; blocks on the disk.

#pragma once

#include "records/AudibleLibraryItem.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <chrono>
#include <stop_token>

namespace quire::AudibleLibraryReader {

// Far above the largest library of any reader.
struct Limits
{
    int valueBytes = 4 << 20; // one text of one title
    qint64 textBytes = 256LL << 20; // all texts of all titles
    std::chrono::seconds work{120}; // of a processor
};

// The titles in the order of their purchase. database: absolute path of the copy,
// which is opened as any database and may change. audibleWeb: where the pages of
// titles are.
// Throws DatabaseError when it cannot be read, ServiceError message when its check
// fails or it is beyond the limits, and Cancelled once `stop` is requested.
QList<AudibleLibraryItem> read(
    const QString &database, const QUrl &audibleWeb, const std::stop_token &stop, const Limits &limits = {});

} // namespace quire::AudibleLibraryReader
