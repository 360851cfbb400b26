#include "QuireApp/Theme/HexColor.h"
#include "QuireApp/ViewModels/CustomColorPanelPresenter.h"
#include "records/AccentPalette.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quire {

namespace {

class CustomColorPanelPresenterTest : public ::testing::Test
{
protected:
    // Opens the panel; what it passes on goes to `passed`.
    void show(const CustomAccentColor &color)
    {
        panel.show(color, [this](const CustomAccentColor &chosen) { passed.append(HexColor::text(chosen)); });
    }

    CustomColorPanelPresenter panel;
    QStringList passed;
};

TEST_F(CustomColorPanelPresenterTest, OpeningShowsTheColourAndTellsNobody)
{
    const QSignalSpy presented(&panel, &CustomColorPanelPresenter::presented);
    EXPECT_FALSE(panel.isShown());

    show(AccentPalette::fjord);

    EXPECT_TRUE(panel.isShown());
    EXPECT_EQ(presented.size(), 1);
    EXPECT_EQ(panel.hex(), QStringLiteral("#426F83"));
    EXPECT_EQ(panel.color(), QColor::fromRgb(66, 111, 131));
    EXPECT_EQ(panel.wheelWords(), QStringLiteral("Hue 198°, saturation 50%"));
    EXPECT_EQ(panel.brightness(), 51);
    EXPECT_TRUE(passed.isEmpty());
}

TEST_F(CustomColorPanelPresenterTest, AskedForAgainItComesToTheFrontWithTheNewColourAndTheNewReader)
{
    show(AccentPalette::fjord);
    const QSignalSpy presented(&panel, &CustomColorPanelPresenter::presented);
    const QSignalSpy shown(&panel, &CustomColorPanelPresenter::isShownChanged);
    QStringList others;
    panel.show(
        AccentPalette::pine, [&others](const CustomAccentColor &color) { others.append(HexColor::text(color)); });

    EXPECT_EQ(presented.size(), 1);
    EXPECT_EQ(shown.size(), 0);
    EXPECT_EQ(panel.hex(), QStringLiteral("#264F47"));
    EXPECT_TRUE(panel.enterHex(QStringLiteral("#112233")));
    EXPECT_TRUE(passed.isEmpty());
    EXPECT_EQ(others, QStringList{QStringLiteral("#112233")});
}

TEST_F(CustomColorPanelPresenterTest, EveryChangeIsPassedOnOnce)
{
    show({1, 0, 0});

    panel.pickOnWheel({0, -1});
    panel.setValue(0.5);
    panel.setSaturation(50);
    panel.setHue(0);
    panel.setBrightness(100);
    panel.enterHex(QStringLiteral("fc0"));

    EXPECT_EQ(passed,
        (QStringList{QStringLiteral("#80FF00"), QStringLiteral("#408000"), QStringLiteral("#608040"),
            QStringLiteral("#804040"), QStringLiteral("#FF8080"), QStringLiteral("#FFCC00")}));
    EXPECT_EQ(panel.hex(), QStringLiteral("#FFCC00"));
}

TEST_F(CustomColorPanelPresenterTest, WhatChangesNothingIsNotPassedOn)
{
    show(AccentPalette::fjord);
    const QSignalSpy changed(&panel, &CustomColorPanelPresenter::colorChanged);

    panel.setHue(panel.hue());
    panel.setSaturation(panel.saturation());
    panel.setBrightness(panel.brightness());
    panel.setValue(panel.value());
    panel.enterHex(panel.hex());

    EXPECT_TRUE(passed.isEmpty());
    EXPECT_EQ(changed.size(), 0);
}

TEST_F(CustomColorPanelPresenterTest, TheDigitsOfAFinerColourDoNotCoarsenIt)
{
    CustomAccentColor last;
    panel.show({0.3339, 0.5, 0.6666}, [&last](const CustomAccentColor &color) { last = color; });

    panel.enterHex(panel.hex());
    EXPECT_EQ(last, CustomAccentColor());
    panel.setValue(0.7);
    EXPECT_NEAR(last.red, 0.3339 * 0.7 / 0.6666, 1e-12);
}

TEST_F(CustomColorPanelPresenterTest, WhatIsNoColourLeavesTheOneThatIsShown)
{
    show(AccentPalette::fjord);

    EXPECT_FALSE(panel.enterHex(QStringLiteral("sea")));
    EXPECT_FALSE(panel.enterHex(QStringLiteral("#42")));

    EXPECT_EQ(panel.hex(), QStringLiteral("#426F83"));
    EXPECT_TRUE(passed.isEmpty());
}

TEST_F(CustomColorPanelPresenterTest, SixDigitsAreWhole)
{
    EXPECT_TRUE(panel.isWholeHex(QStringLiteral("#426f83")));
    EXPECT_TRUE(panel.isWholeHex(QStringLiteral(" 426f83 ")));
    EXPECT_FALSE(panel.isWholeHex(QStringLiteral("#426")));
    EXPECT_FALSE(panel.isWholeHex(QStringLiteral("#426f8")));
    EXPECT_FALSE(panel.isWholeHex(QStringLiteral("#42 f83")));
}

TEST_F(CustomColorPanelPresenterTest, BlackAndGreyRememberWhereTheyCameFrom)
{
    show({0, 0, 1});

    panel.setBrightness(0);
    EXPECT_EQ(panel.hex(), QStringLiteral("#000000"));
    panel.setBrightness(100);
    EXPECT_EQ(panel.hex(), QStringLiteral("#0000FF"));
    panel.setSaturation(0);
    EXPECT_EQ(panel.hex(), QStringLiteral("#FFFFFF"));
    panel.setSaturation(100);
    EXPECT_EQ(panel.hex(), QStringLiteral("#0000FF"));
    panel.enterHex(QStringLiteral("#808080"));
    panel.setSaturation(100);
    EXPECT_EQ(panel.hex(), QStringLiteral("#000080"));
}

TEST_F(CustomColorPanelPresenterTest, AHueThatBlackIsGivenIsKeptAndNotPassedOn)
{
    show({0, 0, 0});

    panel.setSaturation(100);
    panel.setHue(120);
    EXPECT_TRUE(passed.isEmpty());
    EXPECT_EQ(panel.brightest(), QColor::fromRgb(0, 255, 0));
    panel.setBrightness(100);

    EXPECT_EQ(passed, QStringList{QStringLiteral("#00FF00")});
}

TEST_F(CustomColorPanelPresenterTest, TheColourIsMovedOverTheWheelAndStopsAtItsRim)
{
    show({1, 1, 1});
    for (int i = 0; i < 5; ++i) {
        panel.moveOnWheel(0.1, 0);
    }
    EXPECT_EQ(panel.hex(), QStringLiteral("#FF8080"));
    for (int i = 0; i < 20; ++i) {
        panel.moveOnWheel(0.1, 0);
    }
    EXPECT_EQ(panel.hex(), QStringLiteral("#FF0000"));
    EXPECT_EQ(panel.wheelPlace(), QPointF(1, 0));
}

TEST_F(CustomColorPanelPresenterTest, OnceDetachedNobodyIsCalled)
{
    show(AccentPalette::fjord);
    const QSignalSpy shown(&panel, &CustomColorPanelPresenter::isShownChanged);

    panel.detach();
    panel.detach();
    panel.setBrightness(100);
    panel.pickOnWheel({0.5, 0.5});
    panel.enterHex(QStringLiteral("#000000"));

    EXPECT_FALSE(panel.isShown());
    EXPECT_EQ(shown.size(), 1);
    EXPECT_TRUE(passed.isEmpty());
}

TEST_F(CustomColorPanelPresenterTest, WhoeverIsCalledMayDetachAndAskAgain)
{
    int calls = 0;
    const QString held = QStringLiteral("held by the one who is called");
    panel.show(AccentPalette::fjord, [this, &calls, held](const CustomAccentColor &) {
        ++calls;
        panel.detach();
        EXPECT_EQ(held, QStringLiteral("held by the one who is called"));
        show(AccentPalette::pine);
    });

    panel.setBrightness(100);
    panel.setBrightness(0);

    EXPECT_EQ(calls, 1);
    EXPECT_EQ(passed, QStringList{QStringLiteral("#000000")});
}

} // namespace

} // namespace quire
