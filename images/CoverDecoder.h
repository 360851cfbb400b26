// Turns encoded bytes from outside into a small picture. The bytes are hostile
// until proven otherwise: the format is told by content from a fixed list, the
// size is looked at before the pixels, and what would take more than 128 MiB
// for its pixels, or 160 MiB in all while it is decoded, is refused.
//
// Thread: pure, any thread.

#pragma once

#include <QByteArray>
#include <QImage>

namespace quire::CoverDecoder {

// The picture turned as its file asks, its colours in sRGB, at most 640 pixels
// on the long side and never enlarged; null when the bytes are none of the
// formats or do not decode. Of a moving picture it is the first frame.
QImage thumbnail(const QByteArray &bytes);

// Whether the bytes are a picture that can be shown: they are decoded to tell.
bool isUsableImage(const QByteArray &bytes);

} // namespace quire::CoverDecoder
