#include "QuireApp/Items/ColorWheelPicture.h"
#include "QuireApp/Theme/HexColor.h"
#include "QuireApp/Theme/HSVColor.h"
#include "records/AccentPalette.h"

#include <QColor>

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>

namespace quire {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

void expectSame(const CustomAccentColor &color, const CustomAccentColor &wanted, double within = 1e-12)
{
    EXPECT_NEAR(color.red, wanted.red, within);
    EXPECT_NEAR(color.green, wanted.green, within);
    EXPECT_NEAR(color.blue, wanted.blue, within);
}

TEST(HSVColor, ThePureAndTheMixedColoursStandSixtyDegreesApart)
{
    const QList<CustomAccentColor> around{{1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1}, {1, 0, 1}};
    for (int i = 0; i < around.size(); ++i) {
        const HSVColor color = HSVColor::of(around.at(i));
        EXPECT_EQ(color, (HSVColor{i * 60.0, 1, 1})) << i;
        EXPECT_EQ(color.rgb(), around.at(i)) << i;
    }
}

TEST(HSVColor, EveryColourComesBackAsItWas)
{
    for (const CustomAccentColor &color :
        {AccentPalette::snow, AccentPalette::fjord, AccentPalette::pine, AccentPalette::cabin}) {
        expectSame(HSVColor::of(color).rgb(), color);
    }
    std::mt19937 random(1);
    std::uniform_real_distribution<double> share(0, 1);
    for (int i = 0; i < 2000; ++i) {
        const CustomAccentColor color{share(random), share(random), share(random)};
        expectSame(HSVColor::of(color).rgb(), color);
    }
}

TEST(HSVColor, TheNumbersAreThoseOfTheToolkit)
{
    std::mt19937 random(2);
    std::uniform_int_distribution<int> step(0, 255);
    for (int i = 0; i < 500; ++i) {
        const QColor color(step(random), step(random), step(random));
        const HSVColor ours = HSVColor::of({color.redF(), color.greenF(), color.blueF()});
        if (color.hsvHueF() >= 0) {
            EXPECT_NEAR(ours.hue, color.hsvHueF() * 360, 0.02) << qPrintable(color.name());
        }
        EXPECT_NEAR(ours.saturation, color.hsvSaturationF(), 1e-4) << qPrintable(color.name());
        EXPECT_NEAR(ours.value, color.valueF(), 1e-4) << qPrintable(color.name());
    }
}

TEST(HSVColor, AGreyKeepsTheHueAndBlackTheSaturationOfTheColourBefore)
{
    const HSVColor before{200, 0.5, 0.75};
    EXPECT_EQ(HSVColor::of({0.5, 0.5, 0.5}, before), (HSVColor{200, 0, 0.5}));
    EXPECT_EQ(HSVColor::of({0, 0, 0}, before), (HSVColor{200, 0.5, 0}));
    EXPECT_EQ(HSVColor::of({1, 1, 1}), (HSVColor{0, 0, 1}));
}

TEST(HSVColor, WhatIsOutOfRangeIsBroughtIntoIt)
{
    EXPECT_EQ(HSVColor::normalized(-90, -1, 2), (HSVColor{270, 0, 1}));
    EXPECT_EQ(HSVColor::normalized(360, 0.5, 0.5), (HSVColor{0, 0.5, 0.5}));
    EXPECT_EQ(HSVColor::normalized(-1e-18, 1, 1), (HSVColor{0, 1, 1}));
    EXPECT_EQ(HSVColor::normalized(notANumber, infinity, -infinity), (HSVColor{0, 0, 0}));
    EXPECT_EQ(HSVColor::of({notANumber, 1.5, -1}), (HSVColor{120, 1, 1}));
}

TEST(HSVColor, RedIsOnTheRightOfTheWheelAndTheHuesGoCounterClockwise)
{
    const auto expectAt = [](double hue, double saturation, QPointF place) {
        const QPointF found = HSVColor{hue, saturation, 1}.wheelPlace();
        EXPECT_NEAR(found.x(), place.x(), 1e-12) << hue;
        EXPECT_NEAR(found.y(), place.y(), 1e-12) << hue;
    };
    expectAt(0, 1, {1, 0});
    expectAt(90, 1, {0, -1});
    expectAt(180, 0.5, {-0.5, 0});
    expectAt(270, 0.25, {0, 0.25});
    expectAt(123, 0, {0, 0});
}

TEST(HSVColor, APlaceOnTheWheelIsTheColourThatLiesThere)
{
    const HSVColor color{45, 0.5, 0.3};
    for (double hue = 1; hue < 360; hue += 7) {
        for (const double saturation : {0.01, 0.4, 1.0}) {
            const HSVColor moved = color.movedTo(HSVColor{hue, saturation, 1}.wheelPlace());
            EXPECT_NEAR(moved.hue, hue, 1e-9);
            EXPECT_NEAR(moved.saturation, saturation, 1e-12);
            EXPECT_EQ(moved.value, 0.3);
        }
    }
}

TEST(HSVColor, BeyondTheRimIsOnItAndTheMiddleKeepsTheHue)
{
    const HSVColor color{45, 0.5, 0.3};
    EXPECT_EQ(color.movedTo({0, -7}), (HSVColor{90, 1, 0.3}));
    EXPECT_EQ(color.movedTo({0, 0}), (HSVColor{45, 0, 0.3}));
    EXPECT_EQ(color.movedTo({notANumber, 0}), (HSVColor{45, 0, 0.3}));
}

TEST(HexColor, AColourIsWrittenInSixCapitalDigits)
{
    EXPECT_EQ(HexColor::text(AccentPalette::fjord), QStringLiteral("#426F83"));
    EXPECT_EQ(HexColor::text({0, 0, 0}), QStringLiteral("#000000"));
    EXPECT_EQ(HexColor::text({1, 1, 1}), QStringLiteral("#FFFFFF"));
    EXPECT_EQ(HexColor::text({0.5, 1.5 / 255, 1.4 / 255}), QStringLiteral("#800201"));
    EXPECT_EQ(HexColor::text({2, -1, notANumber}), QStringLiteral("#FF0000"));
}

TEST(HexColor, SixDigitsAndThreeAreReadWithOrWithoutTheSignAndInAnyCase)
{
    for (const QString &text : {QStringLiteral("#426F83"), QStringLiteral("426f83"), QStringLiteral(" #426f83\n")}) {
        EXPECT_EQ(HexColor::parse(text), AccentPalette::fjord) << qPrintable(text);
    }
    EXPECT_EQ(HexColor::parse(u"#fc0"), (CustomAccentColor{1, 0.8, 0}));
    EXPECT_EQ(HexColor::parse(u"000"), (CustomAccentColor{0, 0, 0}));
}

TEST(HexColor, AnythingElseIsNoColour)
{
    for (const QString &text : {QString(), QStringLiteral("#"), QStringLiteral("red"), QStringLiteral("#12"),
             QStringLiteral("#1234"), QStringLiteral("#12345"), QStringLiteral("#1234567"), QStringLiteral("#12345678"),
             QStringLiteral("##123456"), QStringLiteral("#12 456"), QStringLiteral("+12345"), QStringLiteral("-1-2-3"),
             QStringLiteral("0x1234"), QStringLiteral("#１２３")}) {
        EXPECT_EQ(HexColor::parse(text), std::nullopt) << qPrintable(text);
    }
}

TEST(ColorWheelPicture, EachPixelIsTheColourOfItsPlaceAndTheCornersAreClear)
{
    const QImage wheel = colorWheel(201);
    EXPECT_EQ(wheel.size(), QSize(201, 201));
    EXPECT_EQ(wheel.pixel(100, 100), qRgb(255, 255, 255));
    EXPECT_EQ(wheel.pixel(0, 0), qRgba(0, 0, 0, 0));
    EXPECT_EQ(wheel.pixel(200, 0), qRgba(0, 0, 0, 0));
    for (const QPoint place : {QPoint(190, 100), QPoint(100, 20), QPoint(40, 130), QPoint(120, 170)}) {
        const HSVColor color = HSVColor{0, 0, 1}.movedTo({(place.x() - 100) / 100.5, (place.y() - 100) / 100.5});
        EXPECT_EQ(QColor(wheel.pixel(place)).name(QColor::HexRgb).toUpper(), HexColor::text(color.rgb()));
    }
}

TEST(ColorWheelPicture, TheRimIsSmooth)
{
    const QImage wheel = colorWheel(60);
    int halfClear = 0;
    for (int x = 0; x < 60; ++x) {
        const int alpha = qAlpha(wheel.pixel(x, 8));
        halfClear += alpha > 0 && alpha < 255 ? 1 : 0;
    }
    EXPECT_GE(halfClear, 2);
}

TEST(ColorWheelPicture, WithoutRoomThereIsNone)
{
    EXPECT_TRUE(colorWheel(0).isNull());
}

} // namespace

} // namespace quire
