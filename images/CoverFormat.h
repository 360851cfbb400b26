// The formats that a cover may come in. What a server calls it, and what its
// name ends in, is not asked.
//
// Thread: pure, any thread.

#pragma once

#include <QByteArray>

#include <optional>

namespace quire {

enum class CoverFormat {
    Png,
    Jpeg,
    Gif,
    WebP,
    Avif,
    Bmp,
};

// Told by how the bytes begin; nothing for anything else.
std::optional<CoverFormat> coverFormat(const QByteArray &bytes);

} // namespace quire
