// What decoding a JPEG would cost, which the toolkit's reader does not tell.
//
// Thread: pure, any thread.

#pragma once

#include <QByteArray>
#include <QSize>

#include <optional>

namespace quire {

struct JpegHeader
{
    QSize size; // in pixels
    int components = 0; // 1 grey, 3 colour, 4 printing inks
    bool isProgressive = false; // all coefficients are held until the end
    int scans = 0; // passes over the picture

    // Nothing when the bytes hold no frame.
    static std::optional<JpegHeader> read(const QByteArray &bytes);
};

} // namespace quire
