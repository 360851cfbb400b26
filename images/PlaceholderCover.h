// The cover of a title that has none: an open book over a soft gradient, and
// the title under it. The picture depends on the title alone.
//
// Thread: any, once a QGuiApplication exists; it takes some milliseconds.

#pragma once

#include "records/CoverBytes.h"

#include <QImage>
#include <QString>

#include <optional>

namespace quire::PlaceholderCover {

// 600 by 900 pixels, opaque. A title that does not fit ends in an ellipsis; an
// empty one leaves the book alone.
QImage draw(const QString &title);

// The same as PNG; nothing when it cannot be encoded.
std::optional<CoverBytes> png(const QString &title);

} // namespace quire::PlaceholderCover
