// AVIF, which the toolkit does not read. A decoder of this room and no plugin
// of the toolkit: only covers are AVIF here, and what decodes untrusted bytes
// stays in one place, with its limits handed in.
//
// Thread: pure, any thread; one thread decodes.

#pragma once

#include <QByteArray>
#include <QImage>

namespace quire::AvifPicture {

// The first picture, cut, turned and mirrored as the file asks, no larger than
// a thumbnail, with its colours as they are stored and QImage::colorSpace
// telling what they mean. Null when it does not decode or has more than
// `maximumPixels`, which is told before any pixel is decoded.
QImage decode(const QByteArray &bytes, qint64 maximumPixels);

} // namespace quire::AvifPicture
