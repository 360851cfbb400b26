// Turns encoded bytes from outside into a small picture. The bytes are hostile
// until proven otherwise: the format is told by content from a fixed list, the
// size is looked at before the pixels, and no picture may take more than
// 128 MiB while it is decoded.
//
// Thread: pure, any thread.

#pragma once

#include <QByteArray>
#include <QImage>

namespace quire::CoverDecoder {

// The longest side of what thumbnail() gives, in pixels.
inline constexpr int longestSide = 640;

// The toolkit's name of the format ("png", "jpeg", "gif", "webp", "bmp"), or
// empty for anything else.
QByteArray format(const QByteArray &bytes);

// The picture turned as its file asks, at most 640 pixels on the long side and
// never enlarged; null when the bytes are none of the formats or do not decode.
QImage thumbnail(const QByteArray &bytes);

// Whether the bytes are a picture that can be shown: they are decoded to tell.
bool isUsableImage(const QByteArray &bytes);

} // namespace quire::CoverDecoder
