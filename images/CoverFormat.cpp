#include "images/CoverFormat.h"

#include <avif/avif.h>

namespace quire {

namespace {

bool isAvif(const QByteArray &bytes)
{
    const avifROData data{reinterpret_cast<const uint8_t *>(bytes.constData()), size_t(bytes.size())};
    return bytes.mid(4, 4) == "ftyp" && avifPeekCompatibleFileType(&data);
}

} // namespace

std::optional<CoverFormat> coverFormat(const QByteArray &bytes)
{
    if (bytes.startsWith("\x89PNG\r\n\x1a\n")) {
        return CoverFormat::Png;
    }
    if (bytes.startsWith("\xff\xd8\xff")) {
        return CoverFormat::Jpeg;
    }
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a")) {
        return CoverFormat::Gif;
    }
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP") {
        return CoverFormat::WebP;
    }
    if (bytes.startsWith("BM")) {
        return CoverFormat::Bmp;
    }
    return isAvif(bytes) ? std::optional(CoverFormat::Avif) : std::nullopt;
}

} // namespace quire
