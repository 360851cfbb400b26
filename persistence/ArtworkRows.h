// The cover columns of both tables: which titles lack a cover, and the writes
// that give them one.
//
// Thread: the store's executor. Failures: DatabaseError; nothing has changed.

#pragma once

#include "persistence/LibraryStore.h"
#include "records/ArtworkRequest.h"
#include "records/CoverBytes.h"
#include "records/Url.h"

#include <QList>
#include <QString>

#include <optional>

namespace quire {

class SQLiteDatabase;

namespace ArtworkRows {

ArtworkCoverage coverage(const SQLiteDatabase &database);

// Books first. A title with an offline placeholder is among them only while it
// has a URL that could give something better.
QList<ArtworkRequest> requestsNeedingCache(const SQLiteDatabase &database);

// Replaces whatever cover the audiobook has.
void replaceAudiobookCover(SQLiteDatabase &database, qint64 id, const Url &url, const CoverBytes &artwork);

// artwork: absent leaves the title without a cover. source: a URL's text,
// "manual" or "generated:placeholder". Touches no date.
void store(SQLiteDatabase &database, const std::optional<CoverBytes> &artwork, const ArtworkRequest &request,
    const QString &source);

} // namespace ArtworkRows

} // namespace quire
