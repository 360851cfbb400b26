#include "EncodedImages.h"

#include <QBuffer>
#include <QtEndian>

#include <avif/avif.h>
#include <gtest/gtest.h>

#include <array>

namespace quire::testing {

namespace {

template<typename Number>
QByteArray bigEndian(Number number)
{
    QByteArray bytes(sizeof(Number), '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

quint32 checksum(const QByteArray &bytes)
{
    quint32 sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum & 1) != 0 ? (sum >> 1) ^ 0xEDB88320U : sum >> 1;
        }
    }
    return ~sum;
}

QByteArray pngChunk(const QByteArray &name, const QByteArray &content)
{
    return bigEndian(quint32(content.size())) + name + content + bigEndian(checksum(name + content));
}

// A TIFF structure with the one field.
QByteArray exif(int orientation)
{
    QByteArray bytes("MM\0*", 4);
    bytes += bigEndian(quint32(8)) + bigEndian(quint16(1));
    bytes += bigEndian(quint16(0x0112)) + bigEndian(quint16(3)) + bigEndian(quint32(1));
    bytes += bigEndian(quint16(orientation)) + bigEndian(quint16(0)) + bigEndian(quint32(0));
    return bytes;
}

constexpr qsizetype pngHead = 8 + 25; // signature and first chunk

} // namespace

QImage plainImage(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    return image;
}

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    const bool isPng = qstrcmp(format, "png") == 0; // means how tightly it is packed there
    EXPECT_TRUE(image.save(&buffer, format, isPng ? -1 : 100)) << format;
    return bytes;
}

QByteArray encodedAvif(const QImage &image, const AvifProperties &properties)
{
    const QImage rgba = image.convertToFormat(QImage::Format_RGBA8888);
    avifImage *picture = avifImageCreate(uint32_t(rgba.width()), uint32_t(rgba.height()), 8, AVIF_PIXEL_FORMAT_YUV444);
    if (properties.quarterTurns) {
        picture->transformFlags |= AVIF_TRANSFORM_IROT;
        picture->irot.angle = uint8_t(*properties.quarterTurns);
    }
    if (properties.mirrorMode) {
        picture->transformFlags |= AVIF_TRANSFORM_IMIR;
        picture->imir.mode = uint8_t(*properties.mirrorMode);
    }
    const QByteArray profile = image.colorSpace().isValid() ? image.colorSpace().iccProfile() : QByteArray();
    if (!profile.isEmpty()) {
        avifImageSetProfileICC(picture, reinterpret_cast<const uint8_t *>(profile.constData()), size_t(profile.size()));
    }
    avifRGBImage rgb;
    avifRGBImageSetDefaults(&rgb, picture);
    rgb.format = AVIF_RGB_FORMAT_RGBA;
    rgb.pixels = const_cast<uchar *>(rgba.constBits());
    rgb.rowBytes = uint32_t(rgba.bytesPerLine());
    EXPECT_EQ(avifImageRGBToYUV(picture, &rgb), AVIF_RESULT_OK);

    avifEncoder *encoder = avifEncoderCreate();
    encoder->speed = AVIF_SPEED_FASTEST;
    encoder->minQuantizer = 0;
    encoder->maxQuantizer = 10;
    avifRWData output = AVIF_DATA_EMPTY;
    EXPECT_EQ(avifEncoderWrite(encoder, picture, &output), AVIF_RESULT_OK);
    QByteArray bytes(reinterpret_cast<const char *>(output.data), qsizetype(output.size));
    avifRWDataFree(&output);
    avifEncoderDestroy(encoder);
    avifImageDestroy(picture);
    return bytes;
}

QByteArray withPngChunk(const QByteArray &png, const QByteArray &name, const QByteArray &content)
{
    return png.left(pngHead) + pngChunk(name, content) + png.mid(pngHead);
}

QByteArray withPngSize(const QByteArray &png, quint32 width, quint32 height)
{
    constexpr qsizetype depthAt = 24;
    constexpr qsizetype headContentEnd = 29;
    const QByteArray content = bigEndian(width) + bigEndian(height) + png.mid(depthAt, headContentEnd - depthAt);
    return png.left(8) + pngChunk("IHDR", content) + png.mid(pngHead);
}

QByteArray paddedPng(const QByteArray &png, qsizetype length)
{
    constexpr qsizetype chunkFrame = 12;
    return withPngChunk(png, "quIR", QByteArray(length - png.size() - chunkFrame, 'q'));
}

QByteArray withOrientation(const QByteArray &bytes, const char *format, int orientation)
{
    const QByteArray content = exif(orientation);
    if (qstrcmp(format, "png") == 0) {
        return withPngChunk(bytes, "eXIf", content);
    }
    if (qstrcmp(format, "jpeg") == 0) {
        const QByteArray segment = QByteArray("Exif\0\0", 6) + content;
        return bytes.left(2) + QByteArray("\xff\xe1", 2) + bigEndian(quint16(segment.size() + 2)) + segment
            + bytes.mid(2);
    }
    QByteArray webp = bytes + QByteArray("EXIF") + QByteArray(4, '\0') + content; // of even length
    qToLittleEndian(quint32(content.size()), webp.data() + bytes.size() + 4);
    qToLittleEndian(quint32(webp.size() - 8), webp.data() + 4);
    return webp;
}

} // namespace quire::testing
