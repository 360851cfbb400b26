#include "QuireApp/Theme/InterfaceFonts.h"

#include <gtest/gtest.h>

namespace quire {

namespace {

TEST(InterfaceFonts, AChoiceAsksForTheFamilyOfItsLabel)
{
    EXPECT_EQ(InterfaceFonts::family(InterfaceFontChoice::AvenirNext), QStringLiteral("Avenir Next"));
    EXPECT_EQ(InterfaceFonts::family(InterfaceFontChoice::GillSans), QStringLiteral("Gill Sans"));
    const QFont font = QuireFontModifier{18, QFont::DemiBold}.font(InterfaceFontChoice::Georgia);
    EXPECT_EQ(font.family(), QStringLiteral("Georgia"));
    EXPECT_EQ(font.pixelSize(), 18);
    EXPECT_EQ(font.weight(), QFont::DemiBold);
}

} // namespace

} // namespace quire
