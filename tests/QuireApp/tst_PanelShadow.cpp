#include "QuireApp/Items/PanelShadow.h"

#include <gtest/gtest.h>

namespace quire {

namespace {

constexpr int radius = 13;
constexpr int blur = 20;

TEST(PanelShadow, ALargePanelIsDrawnFromItsCornersAlone)
{
    const QSize panel = shadowPanel({900, 400}, radius, blur);
    EXPECT_EQ(panel, QSize(2 * (radius + blur) + 1, 2 * (radius + blur) + 1));
}

TEST(PanelShadow, ALowPanelIsDrawnAtItsOwnHeight)
{
    // A toast is lower than the corners of its shadow are together.
    const QSize panel = shadowPanel({192, 40}, radius, blur);
    EXPECT_EQ(panel.height(), 40);
    EXPECT_EQ(shadowPicture(panel, radius, blur, 0, 1).height(), 40 + 2 * blur);
}

TEST(PanelShadow, ALowPanelsShadowFadesUpwardsAndDownwardsAlike)
{
    const QImage picture = shadowPicture(shadowPanel({192, 40}, radius, blur), radius, blur, 0, 1);
    const int middle = picture.width() / 2;
    int before = 0;
    for (int y = 0; y <= blur; ++y) {
        const int above = qAlpha(picture.pixel(middle, y));
        EXPECT_EQ(above, qAlpha(picture.pixel(middle, picture.height() - 1 - y))) << y;
        EXPECT_GE(above, before) << y;
        before = above;
    }
    EXPECT_GT(before, 0);
    EXPECT_EQ(qAlpha(picture.pixel(middle, picture.height() / 2)), 0) << "what the panel covers is left out";
}

} // namespace

} // namespace quire
