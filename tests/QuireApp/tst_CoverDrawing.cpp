#include "QuireApp/Covers/CoverDrawing.h"

#include <gtest/gtest.h>

namespace quire {

namespace {

QImage plain(int width, int height, const QColor &color = Qt::red)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

CoverDrawing::Request card(CoverSpineMode mode = CoverSpineMode::None)
{
    return {.frame = {142, 218}, .spineMode = mode, .cornerRadius = 6};
}

TEST(CoverSpine, ASquareCoverHasNoneUnderPortraitOnlyAndATwoByThreeCoverHasOne)
{
    EXPECT_FALSE(CoverDrawing::showsSpine({500, 500}, CoverSpineMode::PortraitOnly));
    EXPECT_TRUE(CoverDrawing::showsSpine({400, 600}, CoverSpineMode::PortraitOnly));
}

TEST(CoverSpine, TheLimitItselfGivesNone)
{
    EXPECT_FALSE(CoverDrawing::showsSpine({86, 100}, CoverSpineMode::PortraitOnly));
    EXPECT_TRUE(CoverDrawing::showsSpine({859, 1000}, CoverSpineMode::PortraitOnly));
}

TEST(CoverSpine, AlwaysAndNoneLookAtNoProportionButAPictureWithoutHeightHasNone)
{
    EXPECT_TRUE(CoverDrawing::showsSpine({500, 500}, CoverSpineMode::Always));
    EXPECT_FALSE(CoverDrawing::showsSpine({400, 600}, CoverSpineMode::None));
    EXPECT_FALSE(CoverDrawing::showsSpine({400, 0}, CoverSpineMode::Always));
}

TEST(CoverSpine, ItsWidthFollowsTheDrawnWidthWithinLimits)
{
    EXPECT_DOUBLE_EQ(BookSpineOverlay::width(54), 6);
    EXPECT_DOUBLE_EQ(BookSpineOverlay::width(100), 7.5);
    EXPECT_DOUBLE_EQ(BookSpineOverlay::width(190), 11);
}

TEST(CoverSpine, ItDarkensTheLeftEdgeOfTheDrawnCoverAlone)
{
    const QImage drawn = CoverDrawing::draw(plain(400, 600), card(CoverSpineMode::Always));
    EXPECT_LT(drawn.pixelColor(1, 100).red(), 200);
    EXPECT_EQ(drawn.pixelColor(40, 100), QColor(Qt::red));
    EXPECT_EQ(drawn.pixelColor(drawn.width() - 2, 100), QColor(Qt::red));
}

TEST(CoverDrawing, APictureIsFittedWithoutCroppingAndCentred)
{
    EXPECT_EQ(CoverDrawing::place({500, 500}, {142, 218}, CoverContentMode::Fit), QRectF(0, 38, 142, 142));
    EXPECT_EQ(CoverDrawing::place({100, 400}, {142, 218}, CoverContentMode::Fit), QRectF(43.75, 0, 54.5, 218));
    EXPECT_EQ(CoverDrawing::place({500, 500}, {142, 218}, CoverContentMode::Fill), QRectF(0, 0, 142, 218));
}

TEST(CoverDrawing, FillCutsTheSidesAndKeepsTheMiddle)
{
    QImage wide = plain(300, 100, Qt::blue);
    for (int y = 0; y < 100; ++y) {
        for (int x = 100; x < 200; ++x) {
            wide.setPixelColor(x, y, Qt::red);
        }
    }
    const QImage drawn = CoverDrawing::draw(wide, {.frame = {80, 80}, .contentMode = CoverContentMode::Fill});
    EXPECT_EQ(drawn.size(), QSize(80, 80));
    EXPECT_EQ(drawn.pixelColor(5, 40), QColor(Qt::red));
    EXPECT_EQ(drawn.pixelColor(75, 40), QColor(Qt::red));
}

TEST(CoverDrawing, CornersAreRoundedInThePicture)
{
    const QImage drawn = CoverDrawing::draw(plain(400, 600), card());
    EXPECT_EQ(drawn.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(drawn.pixelColor(drawn.width() - 1, drawn.height() - 1).alpha(), 0);
    EXPECT_EQ(drawn.pixelColor(drawn.width() / 2, 0).alpha(), 255);
}

TEST(CoverDrawing, ThePixelsAreThoseOfTheScreen)
{
    CoverDrawing::Request request = card();
    request.devicePixelRatio = 2;
    EXPECT_EQ(CoverDrawing::draw(plain(400, 600), request).size(), QSize(284, 426));
}

TEST(CoverDrawing, NoPictureGivesNoPicture)
{
    EXPECT_TRUE(CoverDrawing::draw({}, card()).isNull());
}

} // namespace

} // namespace quire
