#include "images/CoverDecoder.h"

#include <QBuffer>
#include <QImage>
#include <QtEndian>

#include <gtest/gtest.h>

namespace quire {

namespace {

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format)) << format;
    return bytes;
}

QImage plain(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    return image;
}

TEST(CoverDecoder, EachAllowedFormatIsToldByContentAndDecodes)
{
    for (const char *format : {"png", "jpeg", "bmp", "webp"}) {
        const QByteArray bytes = encoded(plain(40, 60), format);
        EXPECT_EQ(CoverDecoder::format(bytes), QByteArray(format));
        EXPECT_EQ(CoverDecoder::thumbnail(bytes).size(), QSize(40, 60)) << format;
    }
}

TEST(CoverDecoder, TheLongSideIsAtMost640AndNothingIsEnlarged)
{
    EXPECT_EQ(CoverDecoder::thumbnail(encoded(plain(1000, 1600), "jpeg")).size(), QSize(400, 640));
    EXPECT_EQ(CoverDecoder::thumbnail(encoded(plain(1600, 1000), "png")).size(), QSize(640, 400));
    EXPECT_EQ(CoverDecoder::thumbnail(encoded(plain(640, 2), "png")).size(), QSize(640, 2));
    EXPECT_EQ(CoverDecoder::thumbnail(encoded(plain(6000, 2), "png")).size(), QSize(640, 1));
}

TEST(CoverDecoder, WhatIsNoPictureOrNotAllowedGivesNone)
{
    const QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>";
    for (const QByteArray &bytes : {QByteArray("no picture"), QByteArray("\x89PNG\r\n\x1a\n and no more"),
             QByteArray("\xff\xd8\xff\xe0"), QByteArray("GIF89a"), drawing, QByteArray("\x1f\x8b\x08")}) {
        EXPECT_TRUE(CoverDecoder::thumbnail(bytes).isNull()) << bytes.constData();
    }
}

TEST(CoverDecoder, ACutPictureGivesNoneOrItsBeginningButNeverHangs)
{
    const QByteArray whole = encoded(plain(300, 400), "png");
    EXPECT_TRUE(CoverDecoder::thumbnail(whole.left(60)).isNull());
}

TEST(CoverDecoder, ASizeThatWouldNotFitInMemoryIsRefusedBeforeThePixels)
{
    QByteArray bomb = encoded(plain(8, 8), "bmp");
    constexpr qsizetype widthAt = 18;
    constexpr qsizetype heightAt = 22;
    qToLittleEndian<qint32>(30000, bomb.data() + widthAt);
    qToLittleEndian<qint32>(30000, bomb.data() + heightAt);
    EXPECT_TRUE(CoverDecoder::thumbnail(bomb).isNull());
}

} // namespace

} // namespace quire
