#include "QuireApp/QuireApp/MainWindow.h"

#include "core/QuireLaunchCache.h"
#include "persistence/AppDirectories.h"
#include "QuireApp/QuireApp/QuireApplication.h"
#include "QuireApp/Theme/QuireThemePalette.h"
#include "QuireApp/Theme/Theme.h"
#include "testing/Await.h"

#include <QCoreApplication>
#include <QImage>
#include <QQuickItem>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace quire {

namespace {

const CustomAccentColor ink{0.1, 0.1, 0.15};

QColor over(const QColor &color, const QColor &ground)
{
    const float share = color.alphaF();
    const auto mix = [share](float above, float below) { return above * share + below * (1 - share); };
    return QColor::fromRgbF(
        mix(color.redF(), ground.redF()), mix(color.greenF(), ground.greenF()), mix(color.blueF(), ground.blueF()));
}

// Shows the window, and waits until it has its size.
QImage pictureOf(MainWindow &window, const QSize &size)
{
    window.show();
    window.resize(size);
    EXPECT_TRUE(testing::eventually([&] { return window.contentItem()->size() == size; }));
    return window.grabWindow();
}

bool isAlike(const QColor &one, const QColor &other)
{
    return std::abs(one.red() - other.red()) <= 2 && std::abs(one.green() - other.green()) <= 2
        && std::abs(one.blue() - other.blue()) <= 2;
}

class MainWindowWith : public ::testing::TestWithParam<SidebarAppearance>
{
};

} // namespace

TEST_P(MainWindowWith, BareSurfacesOfItsAppearanceIsThereBeforeAnyView)
{
    Theme theme(nullptr);
    theme.setAppearance(ink, GetParam(), InterfaceFontChoice::Georgia);
    MainWindow window(theme);
    const QImage picture = pictureOf(window, {1180, 860});
    ASSERT_EQ(picture.size(), QSize(1180, 860));
    const auto at = [&picture](int x, int y) { return picture.pixelColor(x, y); };

    const QColor base = over(theme.sidebarBase(), theme.window());
    EXPECT_TRUE(isAlike(at(600, 15), theme.window())) << "the menu bar";
    EXPECT_TRUE(isAlike(at(600, 29), over(theme.hairline(), theme.window()))) << "the line below it";
    EXPECT_TRUE(isAlike(at(100, 31), over(theme.sidebarGradientTop(), base))) << "the sidebar's top";
    EXPECT_TRUE(isAlike(at(100, 858), over(theme.sidebarGradientBottom(), base))) << "its bottom";
    EXPECT_TRUE(isAlike(at(217, 31), over(theme.sidebarBorder(), at(100, 31)))) << "its edge";
    EXPECT_TRUE(isAlike(at(218, 400), theme.window())) << "what lies beside it";
}

INSTANTIATE_TEST_SUITE_P(EachAppearance, MainWindowWith, ::testing::ValuesIn(allSidebarAppearances));

TEST(MainWindow, ItComesUpWholeOnAScreenThatIsSmallerAndAsUsualOnALargerOne)
{
    EXPECT_EQ(MainWindow::firstSize({1920, 1053}), QSize(1180, 860));
    EXPECT_EQ(MainWindow::firstSize({1180, 900}), QSize(1180, 860));
    EXPECT_EQ(MainWindow::firstSize({1366, 768}), QSize(1180, 728));
    EXPECT_EQ(MainWindow::firstSize({1000, 1000}), QSize(1000, 860));
    EXPECT_EQ(MainWindow::firstSize({640, 480}), QSize(920, 700)) << "never smaller than it is whole";
    EXPECT_EQ(MainWindow::firstSize({1920, 1053}, {1500, 1000}), QSize(1500, 1000)) << "as it was left";
    EXPECT_EQ(MainWindow::firstSize({1366, 768}, {1500, 1000}), QSize(1366, 728)) << "on a larger screen";
    EXPECT_EQ(MainWindow::firstSize({1366, 768}, {1, 1000000}), QSize(920, 728)) << "or by somebody's hand";
    const Theme theme(nullptr);
    const MainWindow window(theme);
    EXPECT_EQ(window.size(), MainWindow::firstSize(window.screen()->availableSize()));
    EXPECT_EQ(window.minimumSize(), QSize(920, 700));
}

TEST(MainWindow, ItTellsTheSizeThatItHasWhereItDoesNotFillTheScreen)
{
    const Theme theme(nullptr);
    MainWindow window(theme, {.size = {920, 710}, .isMaximized = true});
    window.present();
    ASSERT_TRUE(testing::eventually([&] { return window.windowStates() == Qt::WindowMaximized; }));
    EXPECT_EQ(window.shape(), (WindowShape{.size = {920, 710}, .isMaximized = true}));
    window.showNormal();
    window.resize(940, 720);
    ASSERT_TRUE(testing::eventually([&] { return window.shape().size == QSize(940, 720); }));
    EXPECT_FALSE(window.shape().isMaximized);
    QTest::qWait(300); // until that size is the one before the next
    window.showMaximized();
    ASSERT_TRUE(testing::eventually([&] { return window.shape().isMaximized; }));
    QTest::qWait(300);
    EXPECT_NE(window.size(), QSize(940, 720));
    EXPECT_EQ(window.shape().size, QSize(940, 720));
    window.close();
    EXPECT_EQ(window.shape(), (WindowShape{.size = {940, 720}, .isMaximized = true}));
}

TEST(MainWindow, ItsSurfacesFollowItsSize)
{
    Theme theme(nullptr);
    theme.setAppearance(ink, SidebarAppearance::Fjord, InterfaceFontChoice::Georgia);
    MainWindow window(theme);
    pictureOf(window, {1180, 860});
    const QImage picture = pictureOf(window, {1300, 1000});
    ASSERT_EQ(picture.size(), QSize(1300, 1000));
    EXPECT_TRUE(isAlike(picture.pixelColor(100, 995), over(theme.sidebarGradientBottom(), theme.sidebarBase())));
}

TEST(MainWindow, ViewsTakeThePlaceOfItsSurfaces)
{
    Theme theme(nullptr);
    theme.setAppearance(ink, SidebarAppearance::Fjord, InterfaceFontChoice::Georgia);
    MainWindow window(theme);
    QQuickItem views;
    pictureOf(window, {1180, 860});
    window.showViews(views);
    EXPECT_EQ(views.window(), &window);
    EXPECT_TRUE(isAlike(pictureOf(window, {1180, 860}).pixelColor(100, 400), theme.window()));
}

TEST(MainWindow, WhatFollowsTheFirstFrameIsDoneOnce)
{
    const Theme theme(nullptr);
    MainWindow window(theme);
    int frames = 0;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&frames] { ++frames; });
    int done = 0;
    int framesBefore = -1;
    window.afterFirstFrame([&] {
        ++done;
        framesBefore = frames;
    });
    window.show();
    EXPECT_EQ(done, 0);
    ASSERT_TRUE(testing::eventually([&] { return done > 0; }));
    EXPECT_GE(framesBefore, 1);
    window.update();
    ASSERT_TRUE(testing::eventually([&] { return frames > framesBefore; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(done, 1);
}

TEST(MainWindow, AWindowThatIsNeverSeenDoesNotHoldUpTheProgram)
{
    const Theme theme(nullptr);
    MainWindow window(theme);
    bool isDone = false;
    window.afterFirstFrame([&] { isDone = true; });
    EXPECT_TRUE(testing::eventually([&] { return isDone; }));
    EXPECT_FALSE(window.isVisible());
}

TEST(MainWindow, TheLookIsThatOfTheLastRun)
{
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    Theme theme(nullptr);
    QuireApplication::restoreLook(theme);
    EXPECT_EQ(theme.accent(), QuireThemePalette().accent) << "a first run";

    QuireLaunchCache(AppDirectories::supportDirectory())
        .save({.sidebarAppearance = SidebarAppearance::Fjord,
                  .interfaceFont = InterfaceFontChoice::Georgia,
                  .usesCustomAccentColor = true,
                  .customAccentColor = ink},
            std::nullopt);
    QuireApplication::restoreLook(theme);
    Theme chosen(nullptr);
    chosen.setAppearance(ink, SidebarAppearance::Fjord, InterfaceFontChoice::Georgia);
    EXPECT_EQ(theme.accent(), chosen.accent());
    EXPECT_EQ(theme.sidebarBase(), chosen.sidebarBase());
    EXPECT_EQ(theme.fontFamily(), chosen.fontFamily());
}

} // namespace quire
