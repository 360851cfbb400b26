// The turn that a WebP or PNG asks for in its EXIF part, which the toolkit's
// readers of these two leave out.
//
// Thread: pure, any thread.

#pragma once

#include "images/CoverFormat.h"

#include <QByteArray>
#include <QImage>

namespace quire::ExifOrientation {

// 1 to 8 as EXIF numbers them; 1, as it lies, when nothing readable is asked
// for.
int of(const QByteArray &bytes, CoverFormat format);

// The picture as it is to be seen.
QImage applied(const QImage &picture, int orientation);

} // namespace quire::ExifOrientation
