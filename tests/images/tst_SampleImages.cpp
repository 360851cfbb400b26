// Pictures as they are met, and what becomes of each. Built only when a folder
// of them is named.

#include "images/CoverDecoder.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

using namespace quire;

namespace {

QImage thumbnail(const QString &name)
{
    QFile file(QStringLiteral(QUIRE_SAMPLE_DATA "/images/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qUtf8Printable(file.fileName());
    return CoverDecoder::thumbnail(file.readAll());
}

// The mean distance of two pictures of one size, by channel.
double distance(const QImage &a, const QImage &b)
{
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor one = a.pixelColor(x, y);
            const QColor other = b.pixelColor(x, y);
            sum += std::abs(one.red() - other.red()) + std::abs(one.green() - other.green())
                + std::abs(one.blue() - other.blue());
        }
    }
    return sum / (3.0 * a.width() * a.height());
}

} // namespace

TEST(SampleImages, EveryCoverDecodes)
{
    const QDir folder(QStringLiteral(QUIRE_SAMPLE_DATA "/images/covers"));
    const QStringList names = folder.entryList(QDir::Files);
    EXPECT_EQ(names.size(), 8);
    for (const QString &name : names) {
        const QImage picture = thumbnail(QStringLiteral("covers/") + name);
        EXPECT_GE(std::min(picture.width(), picture.height()), 389) << qUtf8Printable(name);
        EXPECT_LE(std::max(picture.width(), picture.height()), 640) << qUtf8Printable(name);
    }
}

TEST(SampleImages, OnePictureLooksTheSameInEveryFormatAndOrientation)
{
    const QImage portrait = thumbnail(QStringLiteral("pillow/hopper.png"));
    ASSERT_EQ(portrait.size(), QSize(128, 128));
    for (const char *name : {"hopper.jpg", "hopper.webp", "hopper.bmp", "hopper.gif", "avif_hopper.avif",
             "avif_hopper-missing-pixi.avif", "hopper_orientation_2.jpg", "hopper_orientation_6.jpg",
             "hopper_orientation_8.jpg", "hopper_orientation_6.webp"}) {
        const QImage other = thumbnail(QStringLiteral("pillow/") + QString::fromLatin1(name));
        ASSERT_EQ(other.size(), portrait.size()) << name;
        EXPECT_LT(distance(portrait, other), 14) << name;
    }
    const QImage turned = thumbnail(QStringLiteral("pillow/avif_rot1mir0.avif"));
    const QImage turnedBack = thumbnail(QStringLiteral("pillow/avif_rot3mir0.avif"));
    ASSERT_EQ(turned.size(), turnedBack.size());
    EXPECT_LT(distance(turned, turnedBack), 14);
}

TEST(SampleImages, PrintingInksComeOutAsTheColoursTheyMake)
{
    EXPECT_LT(distance(thumbnail(QStringLiteral("pillow/pil_sample_rgb.jpg")),
                  thumbnail(QStringLiteral("pillow/pil_sample_cmyk.jpg"))),
        14);
}

TEST(SampleImages, WhatIsBrokenOrNotAllowedGivesNone)
{
    for (const char *name :
        {"zero_width.gif", "broken.png", "apng_syntax_num_frames_zero.png", "hopper.ico", "hopper.tif"}) {
        EXPECT_TRUE(thumbnail(QStringLiteral("pillow/") + QString::fromLatin1(name)).isNull()) << name;
    }
}
