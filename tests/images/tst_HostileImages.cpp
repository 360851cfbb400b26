// Pictures that were made, or have come, to do harm: each ends soon, within
// little memory, and mostly as no picture.

#include "EncodedImages.h"
#include "images/CoverDecoder.h"
#include "testing/ResourceUse.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QtEndian>

#include <gtest/gtest.h>

using namespace quire;
using quire::testing::encoded;
using quire::testing::encodedAvif;
using quire::testing::plainImage;

namespace {

constexpr qint64 longest = 3000 * quire::testing::patience; // milliseconds of the processor
constexpr qint64 mostMemory = 256; // MB

// The picture, after it was tested that it took little to tell.
QImage decodedCheaply(const QByteArray &bytes)
{
    const quire::testing::ResourceUse use;
    QImage picture = CoverDecoder::thumbnail(bytes);
    EXPECT_LT(use.processorMilliseconds(), longest);
    if (!quire::testing::isInstrumented) {
        EXPECT_LT(use.peakMegabytes(), mostMemory);
    }
    return picture;
}

bool isRefused(const QByteArray &bytes)
{
    return decodedCheaply(bytes).isNull();
}

QByteArray bmp(qint32 width, qint32 height)
{
    QByteArray bytes = encoded(plainImage(8, 8), "bmp");
    qToLittleEndian(width, bytes.data() + 18);
    qToLittleEndian(height, bytes.data() + 22);
    return bytes;
}

QByteArray gif(quint16 width, quint16 height)
{
    QByteArray bytes = QByteArray::fromBase64("R0lGODlhAQABAIAAAP8AAAAAACwAAAAAAQABAAACAkQBADs=");
    for (const qsizetype at : {6, 24}) { // of the screen and of the one picture on it
        qToLittleEndian(width, bytes.data() + at);
        qToLittleEndian(height, bytes.data() + at + 2);
    }
    return bytes;
}

// The size stands in the first frame segment.
QByteArray jpeg(quint16 width, quint16 height)
{
    QByteArray bytes = encoded(plainImage(8, 8), "jpeg");
    const qsizetype frame = bytes.indexOf("\xff\xc0");
    qToBigEndian(height, bytes.data() + frame + 5);
    qToBigEndian(width, bytes.data() + frame + 7);
    return bytes;
}

QByteArray progressiveJpeg(int width, int height)
{
    const QImage image = plainImage(width, height);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(true);
    EXPECT_TRUE(writer.write(image));
    return bytes;
}

// The picture that it is made of is gone when it is handed out.
QByteArray plainFile(int width, int height, const char *format)
{
    return encoded(plainImage(width, height), format);
}

QList<QByteArray> oneOfEach()
{
    const QImage picture = plainImage(300, 400);
    return {encoded(picture, "png"), encoded(picture, "jpeg"), encoded(picture, "bmp"), encoded(picture, "webp"),
        encodedAvif(picture), progressiveJpeg(300, 400), gif(300, 400)};
}

} // namespace

TEST(HostileImages, WhatIsNoPictureOrOfAnotherKindIsRefused)
{
    const QByteArray drawing = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>";
    QImage picture = plainImage(16, 16);
    for (const QByteArray &bytes : {QByteArray(), QByteArray("no picture"), QByteArray("\x89PNG\r\n\x1a\n and no more"),
             QByteArray("\xff\xd8\xff\xe0"), QByteArray("GIF89a"), QByteArray("BM"), QByteArray("RIFF\4\0\0\0WEBP", 12),
             QByteArray("\0\0\0\x14"
                        "ftypavif\0\0\0\0avif",
                 20),
             drawing, QByteArray("\x1f\x8b\x08"), QByteArray("<!DOCTYPE html><html></html>"), QByteArray("%PDF-1.4"),
             encoded(picture, "ico"), encoded(picture, "tiff"), encoded(picture, "xpm"), encoded(picture, "ppm")}) {
        EXPECT_TRUE(isRefused(bytes)) << bytes.left(16).toHex().constData();
    }
}

TEST(HostileImages, APictureWithoutWidthOrHeightIsRefused)
{
    const QByteArray png = encoded(plainImage(8, 8), "png");
    for (const QByteArray &bytes : {gif(0, 8), gif(8, 0), bmp(0, 8), bmp(8, 0), jpeg(0, 8),
             quire::testing::withPngSize(png, 0, 8), quire::testing::withPngSize(png, 8, 0)}) {
        EXPECT_TRUE(isRefused(bytes));
    }
}

TEST(HostileImages, ASideOf65535PixelsIsNoTrouble)
{
    EXPECT_EQ(decodedCheaply(encoded(plainImage(65535, 1), "png")).size(), QSize(640, 1));
    EXPECT_EQ(decodedCheaply(encoded(plainImage(1, 65535), "png")).size(), QSize(1, 640));
    EXPECT_EQ(decodedCheaply(encoded(plainImage(65535, 4), "bmp")).size(), QSize(640, 1));
    EXPECT_EQ(decodedCheaply(encoded(plainImage(65500, 4), "jpeg")).size(), QSize(640, 1)); // its writers go no further
    decodedCheaply(jpeg(65535, 1));
    decodedCheaply(gif(65535, 1));
    const QByteArray png = encoded(plainImage(8, 8), "png");
    for (const QByteArray &bytes :
        {gif(65535, 65535), bmp(65535, 65535), jpeg(65535, 65535), quire::testing::withPngSize(png, 65535, 65535)}) {
        EXPECT_TRUE(isRefused(bytes));
    }
}

TEST(HostileImages, ASizeThatWouldNotFitInMemoryIsRefusedBeforeThePixels)
{
    EXPECT_TRUE(isRefused(bmp(30000, 30000)));
    EXPECT_TRUE(isRefused(bmp(-30000, -30000)));
    EXPECT_TRUE(isRefused(quire::testing::withPngSize(encoded(plainImage(8, 8), "png"), 30000, 30000)));
    EXPECT_TRUE(isRefused(quire::testing::withPngSize(encoded(plainImage(8, 8), "png"), 0x7FFFFFFF, 0x7FFFFFFF)));
    EXPECT_TRUE(isRefused(plainFile(6000, 5800, "png"))); // a bomb: 100 KB that become 139 MB
}

TEST(HostileImages, ADecoderThatLooksAtNoSizeIsCaught)
{
    if (quire::testing::isInstrumented) {
        GTEST_SKIP() << "memory is not measured here";
    }
    QByteArray bomb = plainFile(9000, 9000, "png");
    EXPECT_LT(bomb.size(), 2'000'000);
    {
        const int limit = QImageReader::allocationLimit();
        QImageReader::setAllocationLimit(0);
        QBuffer buffer(&bomb);
        const quire::testing::ResourceUse use;
        EXPECT_FALSE(QImageReader(&buffer).read().isNull());
        EXPECT_GT(use.peakMegabytes(), mostMemory);
        QImageReader::setAllocationLimit(limit);
    }
    EXPECT_TRUE(isRefused(bomb));
}

TEST(HostileImages, TheLargestPictureThatIsAllowedStaysWithinItsMemory)
{
    EXPECT_EQ(decodedCheaply(plainFile(5792, 5792, "png")).size(), QSize(640, 640)); // 128 MiB of pixels
    EXPECT_EQ(decodedCheaply(plainFile(5792, 5792, "jpeg")).size(), QSize(640, 640));
    EXPECT_EQ(decodedCheaply(plainFile(2500, 2600, "bmp")).size(), QSize(615, 640));
    EXPECT_EQ(decodedCheaply(plainFile(3700, 3700, "webp")).size(), QSize(640, 640));
    EXPECT_TRUE(isRefused(plainFile(5000, 5000, "webp"))); // takes three times as much while it decodes
    EXPECT_EQ(decodedCheaply(progressiveJpeg(4000, 4000)).size(), QSize(640, 640));
    EXPECT_TRUE(isRefused(progressiveJpeg(5792, 5792)));
    const QByteArray avif = encodedAvif(plainImage(3000, 3000));
    EXPECT_EQ(decodedCheaply(avif).size(), QSize(640, 640));
}

TEST(HostileImages, TextThatUnfoldsInAPngIsNotUnfolded)
{
    QByteArray packed = qCompress(QByteArray(300'000'000, 'x'), 9).mid(4);
    const QByteArray text = QByteArray("Comment\0\0", 9) + packed;
    const QByteArray profile = QByteArray("Profile\0\0", 9) + packed;
    packed.clear();
    const QByteArray png = encoded(plainImage(8, 8), "png");
    EXPECT_EQ(decodedCheaply(quire::testing::withPngChunk(png, "zTXt", text)).size(), QSize(8, 8));
    EXPECT_EQ(decodedCheaply(quire::testing::withPngChunk(png, "iCCP", profile)).size(), QSize(8, 8));
}

TEST(HostileImages, AJpegThatGoesOverItsPictureAgainAndAgainIsRefused)
{
    const QByteArray honest = progressiveJpeg(2000, 2000);
    EXPECT_FALSE(decodedCheaply(honest).isNull());
    const qsizetype lastScan = honest.lastIndexOf("\xff\xda");
    const QByteArray scan = honest.mid(lastScan, honest.size() - 2 - lastScan);
    EXPECT_TRUE(isRefused(honest.left(lastScan) + scan.repeated(3000) + honest.right(2)));
}

TEST(HostileImages, CutPicturesEndAtOnce)
{
    for (const QByteArray &bytes : oneOfEach()) {
        for (int part = 0; part < 32; ++part) {
            decodedCheaply(bytes.left(bytes.size() * part / 32));
        }
    }
    EXPECT_TRUE(isRefused(encoded(plainImage(300, 400), "png").left(60)));
}

TEST(HostileImages, DamagedPicturesEndAtOnce)
{
    quint32 state = 20261121;
    const auto random = [&state](qsizetype below) {
        state = state * 1664525 + 1013904223;
        return qsizetype(state >> 8) % below;
    };
    for (const QByteArray &bytes : oneOfEach()) {
        for (int round = 0; round < 60; ++round) {
            QByteArray damaged = bytes;
            for (int hit = 0; hit < 4; ++hit) {
                damaged[random(std::min<qsizetype>(damaged.size(), 400))] = char(random(256));
            }
            decodedCheaply(damaged);
        }
    }
}

TEST(HostileImages, APictureOfTwentyMillionBytesIsAPicture)
{
    const QByteArray bytes = quire::testing::paddedPng(encoded(plainImage(300, 400), "png"), 20'000'000);
    ASSERT_EQ(bytes.size(), 20'000'000);
    EXPECT_EQ(decodedCheaply(bytes).size(), QSize(300, 400));
}
