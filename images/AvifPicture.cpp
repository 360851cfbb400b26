#include "images/AvifPicture.h"

#include "images/ThumbnailSize.h"

#include <QColorSpace>
#include <QTransform>

#include <avif/avif.h>

#include <algorithm>
#include <memory>

namespace quire::AvifPicture {

namespace {

constexpr uint32_t longestSide = 65535; // pixels

struct Release
{
    void operator()(avifDecoder *decoder) const { avifDecoderDestroy(decoder); }
};
using Decoder = std::unique_ptr<avifDecoder, Release>;

Decoder makeDecoder(qint64 maximumPixels)
{
    Decoder decoder(avifDecoderCreate());
    if (decoder) {
        decoder->maxThreads = 1;
        decoder->ignoreExif = AVIF_TRUE; // a turn is a property of the picture here
        decoder->ignoreXMP = AVIF_TRUE;
        decoder->imageSizeLimit = uint32_t(maximumPixels);
        decoder->imageDimensionLimit = longestSide;
        // Common encoders left these out; nothing hangs on them.
        decoder->strictFlags &= ~avifStrictFlags(AVIF_STRICT_PIXI_REQUIRED | AVIF_STRICT_ALPHA_ISPE_REQUIRED);
    }
    return decoder;
}

QColorSpace colorSpace(const avifImage &image)
{
    if (image.icc.size > 0) {
        const QColorSpace profile = QColorSpace::fromIccProfile(
            QByteArray(reinterpret_cast<const char *>(image.icc.data), qsizetype(image.icc.size)));
        return profile.isValid() ? profile : QColorSpace(QColorSpace::SRgb);
    }
    return image.colorPrimaries == AVIF_COLOR_PRIMARIES_SMPTE432 ? QColorSpace(QColorSpace::DisplayP3)
                                                                 : QColorSpace(QColorSpace::SRgb);
}

QImage pixels(const avifImage &image)
{
    const bool hasAlpha = image.alphaPlane != nullptr;
    QImage picture(
        int(image.width), int(image.height), hasAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    if (picture.isNull()) {
        return {};
    }
    avifRGBImage rgb;
    avifRGBImageSetDefaults(&rgb, &image);
    rgb.depth = 8;
    rgb.format = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? AVIF_RGB_FORMAT_BGRA : AVIF_RGB_FORMAT_ARGB;
    rgb.alphaPremultiplied = hasAlpha ? AVIF_TRUE : AVIF_FALSE;
    rgb.pixels = picture.bits();
    rgb.rowBytes = uint32_t(picture.bytesPerLine());
    return avifImageYUVToRGB(&image, &rgb) == AVIF_RESULT_OK ? picture : QImage();
}

// The part that the file asks to be shown.
QImage cut(const QImage &picture, const avifImage &image)
{
    if ((image.transformFlags & AVIF_TRANSFORM_CLAP) == 0) {
        return picture;
    }
    avifDiagnostics diagnostics{};
    avifCropRect part{};
    const bool isValid = avifCropRectConvertCleanApertureBox(
        &part, &image.clap, image.width, image.height, image.yuvFormat, &diagnostics);
    return isValid ? picture.copy(int(part.x), int(part.y), int(part.width), int(part.height)) : picture;
}

// Turned counterclockwise by quarters, then mirrored, in that order.
QImage turned(const QImage &picture, const avifImage &image)
{
    QImage result = picture;
    if ((image.transformFlags & AVIF_TRANSFORM_IROT) != 0 && image.irot.angle != 0) {
        result = result.transformed(QTransform().rotate(-90.0 * image.irot.angle));
    }
    if ((image.transformFlags & AVIF_TRANSFORM_IMIR) != 0) {
        const bool topToBottom = image.imir.mode == 0;
        result = result.mirrored(!topToBottom, topToBottom);
    }
    return result;
}

} // namespace

QImage decode(const QByteArray &bytes, qint64 maximumPixels)
{
    const Decoder decoder = makeDecoder(maximumPixels);
    if (!decoder
        || avifDecoderSetIOMemory(
               decoder.get(), reinterpret_cast<const uint8_t *>(bytes.constData()), size_t(bytes.size()))
            != AVIF_RESULT_OK
        || avifDecoderParse(decoder.get()) != AVIF_RESULT_OK) {
        return {};
    }
    const auto announced = qint64(decoder->image->width) * decoder->image->height;
    if (announced < 1 || announced > maximumPixels || avifDecoderNextImage(decoder.get()) != AVIF_RESULT_OK) {
        return {};
    }
    const avifImage &image = *decoder->image;
    QImage picture = turned(ThumbnailSize::reduced(cut(pixels(image), image)), image);
    picture.setColorSpace(colorSpace(image));
    return picture;
}

} // namespace quire::AvifPicture
