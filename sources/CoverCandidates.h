// What the two online searches answer, as candidates for a cover, in order.
//
// Thread: pure functions, any thread. Failures: JSONDecodingError for a body
// that is not JSON of the expected shape.

#pragma once

#include "sources/CoverFinder.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

namespace quire::CoverCandidates {

// Of each result with a title and a picture, in its large portrait form.
QList<PortraitCover> ofAppleBooks(const QByteArray &answer);

// Of each document with a cover number. covers: scheme and authority of the
// covers service.
QList<PortraitCover> ofOpenLibrary(const QByteArray &answer, const QUrl &covers);

} // namespace quire::CoverCandidates
