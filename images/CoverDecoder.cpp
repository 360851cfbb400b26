#include "images/CoverDecoder.h"

#include <QBuffer>
#include <QImageReader>

namespace quire::CoverDecoder {

namespace {

constexpr qint64 allocationLimit = 128 * 1024 * 1024; // bytes
constexpr qint64 bytesPerPixel = 4;

bool fitsInMemory(const QSize &size)
{
    return !size.isEmpty() && qint64(size.width()) * size.height() * bytesPerPixel <= allocationLimit;
}

} // namespace

QByteArray format(const QByteArray &bytes)
{
    if (bytes.startsWith("\x89PNG\r\n\x1a\n")) {
        return QByteArrayLiteral("png");
    }
    if (bytes.startsWith("\xff\xd8\xff")) {
        return QByteArrayLiteral("jpeg");
    }
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a")) {
        return QByteArrayLiteral("gif");
    }
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP") {
        return QByteArrayLiteral("webp");
    }
    if (bytes.startsWith("BM")) {
        return QByteArrayLiteral("bmp");
    }
    return {};
}

QImage thumbnail(const QByteArray &bytes)
{
    const QByteArray known = format(bytes);
    if (known.isEmpty()) {
        return {};
    }
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, known);
    reader.setAutoDetectImageFormat(false); // no other decoder looks at the bytes
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!fitsInMemory(size)) {
        return {};
    }
    if (std::max(size.width(), size.height()) > longestSide) {
        // A page of one by ten thousand pixels keeps a pixel of width.
        const QSize scaled = size.scaled(longestSide, longestSide, Qt::KeepAspectRatio);
        reader.setScaledSize(scaled.expandedTo({1, 1}));
    }
    const QImage picture = reader.read();
    return picture.convertToFormat(
        picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
}

bool isUsableImage(const QByteArray &bytes)
{
    return !thumbnail(bytes).isNull();
}

} // namespace quire::CoverDecoder
