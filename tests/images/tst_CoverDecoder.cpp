#include "images/CoverDecoder.h"

#include "EncodedImages.h"
#include "images/CoverFormat.h"

#include <gtest/gtest.h>

#include <array>

namespace quire {

namespace {

using testing::encoded;
using testing::encodedAvif;
using testing::plainImage;
using testing::withOrientation;

// Red where it begins, green at the other end of its first row.
QImage landmarks()
{
    QImage image(60, 40, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            image.setPixelColor(x, y, Qt::red);
            image.setPixelColor(image.width() - 1 - x, y, Qt::green);
        }
    }
    return image;
}

bool isLike(const QColor &a, const QColor &b)
{
    constexpr int tolerance = 24; // of what the lossy formats do to it
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
        && std::abs(a.blue() - b.blue()) <= tolerance;
}

// "TL", "TR", "BL" or "BR": the corner of that colour; empty for none.
QByteArray cornerOf(const QColor &colour, const QImage &image)
{
    constexpr int inset = 4;
    const int right = image.width() - 1 - inset;
    const int bottom = image.height() - 1 - inset;
    const std::array<std::pair<const char *, QPoint>, 4> corners{
        {{"TL", {inset, inset}}, {"TR", {right, inset}}, {"BL", {inset, bottom}}, {"BR", {right, bottom}}}};
    for (const auto &[name, place] : corners) {
        if (image.valid(place) && isLike(image.pixelColor(place), colour)) {
            return name;
        }
    }
    return {};
}

// Where an orientation puts the beginning of the first row, and its end.
struct Turned
{
    const char *beginning;
    const char *end;
};
constexpr std::array<Turned, 8> turns{
    {{"TL", "TR"}, {"TR", "TL"}, {"BR", "BL"}, {"BL", "BR"}, {"TL", "BL"}, {"TR", "BR"}, {"BR", "TR"}, {"BL", "TL"}}};

TEST(CoverDecoder, EachAllowedFormatIsToldByContentAndDecodes)
{
    const std::array<std::pair<const char *, CoverFormat>, 4> formats{{{"png", CoverFormat::Png},
        {"jpeg", CoverFormat::Jpeg}, {"bmp", CoverFormat::Bmp}, {"webp", CoverFormat::WebP}}};
    for (const auto &[name, format] : formats) {
        const QByteArray bytes = encoded(plainImage(40, 60), name);
        EXPECT_EQ(coverFormat(bytes), format) << name;
        EXPECT_EQ(CoverDecoder::thumbnail(bytes).size(), QSize(40, 60)) << name;
        EXPECT_TRUE(isLike(CoverDecoder::thumbnail(bytes).pixelColor(20, 30), Qt::darkCyan)) << name;
        EXPECT_TRUE(CoverDecoder::isUsableImage(bytes)) << name;
    }
    const QByteArray avif = encodedAvif(plainImage(40, 60));
    EXPECT_EQ(coverFormat(avif), CoverFormat::Avif);
    EXPECT_EQ(CoverDecoder::thumbnail(avif).size(), QSize(40, 60));
    EXPECT_TRUE(isLike(CoverDecoder::thumbnail(avif).pixelColor(20, 30), Qt::darkCyan));

    const QByteArray gif = QByteArray::fromBase64("R0lGODlhAQABAIAAAP8AAAAAACwAAAAAAQABAAACAkQBADs=");
    EXPECT_EQ(coverFormat(gif), CoverFormat::Gif);
    EXPECT_EQ(CoverDecoder::thumbnail(gif).size(), QSize(1, 1));
    EXPECT_EQ(CoverDecoder::thumbnail(gif).pixelColor(0, 0), QColor(Qt::red));
}

TEST(CoverDecoder, TheLongSideIsAtMost640AndNothingIsEnlarged)
{
    EXPECT_EQ(CoverDecoder::thumbnail(encoded(plainImage(1000, 1600), "jpeg")).size(), QSize(400, 640));
    EXPECT_EQ(CoverDecoder::thumbnail(encoded(plainImage(1600, 1000), "png")).size(), QSize(640, 400));
    EXPECT_EQ(CoverDecoder::thumbnail(encoded(plainImage(1600, 1000), "webp")).size(), QSize(640, 400));
    EXPECT_EQ(CoverDecoder::thumbnail(encodedAvif(plainImage(1600, 1000))).size(), QSize(640, 400));
    EXPECT_EQ(CoverDecoder::thumbnail(encoded(plainImage(640, 2), "png")).size(), QSize(640, 2));
    EXPECT_EQ(CoverDecoder::thumbnail(encoded(plainImage(6000, 2), "png")).size(), QSize(640, 1));
}

TEST(CoverDecoder, ThePictureIsTurnedAsItsFileAsks)
{
    for (const char *format : {"jpeg", "png", "webp"}) {
        for (int orientation = 1; orientation <= 8; ++orientation) {
            const QImage picture
                = CoverDecoder::thumbnail(withOrientation(encoded(landmarks(), format), format, orientation));
            const Turned &turned = turns.at(size_t(orientation - 1));
            EXPECT_EQ(picture.size(), orientation < 5 ? QSize(60, 40) : QSize(40, 60)) << format << orientation;
            EXPECT_EQ(cornerOf(Qt::red, picture), turned.beginning) << format << orientation;
            EXPECT_EQ(cornerOf(Qt::green, picture), turned.end) << format << orientation;
        }
        const QImage odd = CoverDecoder::thumbnail(withOrientation(encoded(landmarks(), format), format, 9));
        EXPECT_EQ(cornerOf(Qt::red, odd), "TL") << format;
    }
}

TEST(CoverDecoder, AnAvifIsTurnedCounterclockwiseAndThenMirrored)
{
    const auto corners = [](testing::AvifProperties properties) {
        const QImage picture = CoverDecoder::thumbnail(encodedAvif(landmarks(), properties));
        return cornerOf(Qt::red, picture) + cornerOf(Qt::green, picture);
    };
    EXPECT_EQ(corners({}), "TLTR");
    EXPECT_EQ(corners({.quarterTurns = 1, .mirrorMode = {}}), "BLTL");
    EXPECT_EQ(corners({.quarterTurns = 2, .mirrorMode = {}}), "BRBL");
    EXPECT_EQ(corners({.quarterTurns = 3, .mirrorMode = {}}), "TRBR");
    EXPECT_EQ(corners({.quarterTurns = {}, .mirrorMode = 0}), "BLBR");
    EXPECT_EQ(corners({.quarterTurns = {}, .mirrorMode = 1}), "TRTL");
    EXPECT_EQ(corners({.quarterTurns = 1, .mirrorMode = 0}), "TLBL");
    EXPECT_EQ(corners({.quarterTurns = 1, .mirrorMode = 1}), "BRTR");
}

TEST(CoverDecoder, ColoursOfAnotherSpaceBecomeThoseOfTheScreen)
{
    const QColorSpace wide(QColorSpace::DisplayP3);
    QImage stored(40, 60, QImage::Format_RGB32);
    stored.fill(QColor(200, 100, 60));
    stored.setColorSpace(wide);
    const QColor expected = wide.transformationToColorSpace(QColorSpace(QColorSpace::SRgb)).map(QColor(200, 100, 60));
    ASSERT_GT(std::abs(expected.red() - 200), 8); // or the test tells nothing

    const auto isRight = [&](const QByteArray &bytes) {
        const QColor colour = CoverDecoder::thumbnail(bytes).pixelColor(20, 30);
        return std::abs(colour.red() - expected.red()) <= 4 && std::abs(colour.green() - expected.green()) <= 4
            && std::abs(colour.blue() - expected.blue()) <= 4;
    };
    EXPECT_TRUE(isRight(encoded(stored, "png")));
    EXPECT_TRUE(isRight(encoded(stored, "jpeg")));
    EXPECT_TRUE(isRight(encodedAvif(stored)));
}

TEST(CoverDecoder, PrintingInksBecomeTheColoursTheyMake)
{
    // Magenta and yellow on the left half, cyan, magenta and black on the right.
    const QImage picture = CoverDecoder::thumbnail(QByteArray::fromBase64(
        "/9j/7gAOQWRvYmUAZAAAAAAA/9sAQwADAgIDAgIDAwMDBAMDBAUIBQUEBAUKBwcGCAwKDAwLCgsLDQ4SEA0OEQ4LCxAWEBETFBUVFQwP"
        "FxgWFBgSFBUU/8AAFAgAEAAgBEMRAE0RAFkRAEsRAP/EABcAAQEBAQAAAAAAAAAAAAAAAAAJCgj/xAAUEAEAAAAAAAAAAAAAAAAAAAAA"
        "/9oADgRDAE0AWQBLAAA/AKpuPHHiqYAz0qFtCyVgA0LJ6M9KqYAz0qFtCyVgA//Z"));
    ASSERT_EQ(picture.size(), QSize(32, 16));
    const auto expectColour = [&picture](const QPoint &at, const QColor &expected) {
        const QColor colour = picture.pixelColor(at);
        EXPECT_NEAR(colour.red(), expected.red(), 4);
        EXPECT_NEAR(colour.green(), expected.green(), 4);
        EXPECT_NEAR(colour.blue(), expected.blue(), 4);
    };
    expectColour({8, 8}, QColor(255, 55, 55));
    expectColour({24, 8}, QColor(27, 77, 128));
}

TEST(CoverDecoder, WhatShinesThroughStaysSo)
{
    QImage glass(40, 60, QImage::Format_ARGB32);
    glass.fill(QColor(255, 0, 0, 128));
    for (const QByteArray &bytes : {encoded(glass, "png"), encoded(glass, "webp"), encodedAvif(glass)}) {
        const QColor colour = CoverDecoder::thumbnail(bytes).pixelColor(20, 30);
        EXPECT_NEAR(colour.alpha(), 128, 2);
        EXPECT_NEAR(colour.red(), 255, 4);
    }
}

TEST(CoverDecoder, ThumbnailsAreReadyToBeDrawn)
{
    EXPECT_EQ(CoverDecoder::thumbnail(encoded(plainImage(9, 9).convertToFormat(QImage::Format_Mono), "png")).format(),
        QImage::Format_RGB32);
    QImage glass(9, 9, QImage::Format_ARGB32);
    glass.fill(Qt::transparent);
    EXPECT_EQ(CoverDecoder::thumbnail(encoded(glass, "png")).format(), QImage::Format_ARGB32_Premultiplied);
}

} // namespace

} // namespace quire
