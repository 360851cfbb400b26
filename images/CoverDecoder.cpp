#include "images/CoverDecoder.h"

#include "images/AvifPicture.h"
#include "images/CoverFormat.h"
#include "images/ExifOrientation.h"
#include "images/JpegHeader.h"
#include "images/ThumbnailSize.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>

namespace quire::CoverDecoder {

namespace {

constexpr qint64 pixelLimit = 128LL * 1024 * 1024; // bytes of the picture itself
constexpr qint64 memoryLimit = 160LL * 1024 * 1024; // bytes that the decoder takes at its worst
constexpr qint64 bytesPerPixel = 4;

// Each pass goes over the whole picture; cameras and editors write a dozen.
constexpr int mostScans = 64;

// Bytes a pixel that decoding takes at its worst, the picture itself included.
qint64 costPerPixel(CoverFormat format)
{
    switch (format) {
    case CoverFormat::Png:
    case CoverFormat::Gif:
    case CoverFormat::Bmp:
    case CoverFormat::Jpeg: // unless it is progressive
        return bytesPerPixel;
    case CoverFormat::WebP:
        return 3 * bytesPerPixel; // the frame, the decoder's own, and the canvas of a moving one
    case CoverFormat::Avif:
        return 12; // deep colours with alpha, and the picture
    }
    Q_UNREACHABLE();
}

// A progressive JPEG holds two bytes for each component of each pixel.
bool fitsInMemory(const JpegHeader &header)
{
    const qint64 pixels = qint64(header.size.width()) * header.size.height();
    return !header.isProgressive || (pixels * header.components * 2 <= memoryLimit && header.scans <= mostScans);
}

bool fitsInMemory(const QSize &size, CoverFormat format)
{
    const qint64 pixels = qint64(size.width()) * size.height();
    return !size.isEmpty() && pixels * bytesPerPixel <= pixelLimit && pixels * costPerPixel(format) <= memoryLimit;
}

QByteArray readerName(CoverFormat format)
{
    switch (format) {
    case CoverFormat::Png:
        return QByteArrayLiteral("png");
    case CoverFormat::Jpeg:
        return QByteArrayLiteral("jpeg");
    case CoverFormat::Gif:
        return QByteArrayLiteral("gif");
    case CoverFormat::WebP:
        return QByteArrayLiteral("webp");
    case CoverFormat::Bmp:
        return QByteArrayLiteral("bmp");
    case CoverFormat::Avif:
        break; // has a decoder of its own
    }
    Q_UNREACHABLE();
}

QImage read(const QByteArray &bytes, CoverFormat format)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, readerName(format));
    reader.setAutoDetectImageFormat(false); // no other decoder looks at the bytes
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!fitsInMemory(size, format)) {
        return {};
    }
    if (ThumbnailSize::of(size) != size) {
        reader.setScaledSize(ThumbnailSize::of(size));
    }
    const bool isTurnedByReader = reader.transformation() != QImageIOHandler::TransformationNone;
    const QImage picture = ThumbnailSize::reduced(reader.read());
    return isTurnedByReader ? picture : ExifOrientation::applied(picture, ExifOrientation::of(bytes, format));
}

QImage readJpeg(const QByteArray &bytes)
{
    const auto header = JpegHeader::read(bytes);
    return header && fitsInMemory(*header) ? read(bytes, CoverFormat::Jpeg) : QImage();
}

QImage decoded(const QByteArray &bytes, CoverFormat format)
{
    switch (format) {
    case CoverFormat::Avif:
        return AvifPicture::decode(bytes, memoryLimit / costPerPixel(format));
    case CoverFormat::Jpeg:
        return readJpeg(bytes);
    default:
        return read(bytes, format);
    }
}

// As every screen is taken to be. Profiles that the toolkit cannot read, those
// of printing inks among them, were left out by the reader.
QImage inStandardColours(const QImage &picture)
{
    QImage result = picture.convertToFormat(
        picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    const QColorSpace standard(QColorSpace::SRgb);
    if (result.colorSpace().isValid() && result.colorSpace() != standard) {
        result.convertToColorSpace(standard);
    }
    result.setColorSpace({}); // one less thing to compare when it is drawn
    return result;
}

} // namespace

QImage thumbnail(const QByteArray &bytes)
{
    const auto format = coverFormat(bytes);
    const QImage picture = format ? decoded(bytes, *format) : QImage();
    return picture.isNull() ? QImage() : inStandardColours(picture);
}

bool isUsableImage(const QByteArray &bytes)
{
    return !thumbnail(bytes).isNull();
}

} // namespace quire::CoverDecoder
