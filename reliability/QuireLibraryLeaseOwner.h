// Who holds a library: the record inside its lock, "Owner.json". It travels
// through sync services and may come back torn, old or forged, so that reading
// it gives a whole record or nothing.
//
// Thread: any; reading blocks on the disk.

#pragma once

#include "records/Instant.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <optional>

namespace quire {

struct QuireLibraryLeaseOwner
{
    QUuid token; // fresh for each lease object; the proof of ownership
    qint32 processID = 0;
    QString hostName; // as its machine gives it; shown to the reader
    std::optional<QString> hostID; // QuireHostIdentity::current; older builds wrote none
    Instant createdAt; // when it was taken

    // One JSON object on one line: the token in upper case, `createdAt` in seconds
    // since 2001-01-01 00:00:00 UTC, `hostID` left out when absent.
    QByteArray encoded() const;

    // The record in `bytes`; nothing when they are no JSON object, a key is
    // missing (but for `hostID`, which may also be null) or has another type, the
    // token is no UUID or the process no 32-bit integer. Other keys are passed
    // over. A `createdAt` beyond the years 1 to 9999 becomes the nearer end.
    static std::optional<QuireLibraryLeaseOwner> decoded(const QByteArray &bytes);

    // The record in the file at `path`; nothing on any failure, and when what is
    // there is no plain file or has more than maximumSize bytes. Never waits for
    // another process.
    static std::optional<QuireLibraryLeaseOwner> read(const QString &path);

    // The same from an open file that nobody has read from.
    static std::optional<QuireLibraryLeaseOwner> read(int descriptor);

    // Many times what any record needs.
    static constexpr qsizetype maximumSize = 65'536;

    bool operator==(const QuireLibraryLeaseOwner &) const = default;
};

} // namespace quire
