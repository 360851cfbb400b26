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

TEST(InterfaceFonts, EveryNamedFamilyHasAFreeStandIn)
{
    InterfaceFonts::installSubstitutes();
    for (const auto choice :
        {InterfaceFontChoice::AvenirNext, InterfaceFontChoice::HelveticaNeue, InterfaceFontChoice::Charter,
            InterfaceFontChoice::Georgia, InterfaceFontChoice::Baskerville, InterfaceFontChoice::GillSans,
            InterfaceFontChoice::Futura, InterfaceFontChoice::Optima, InterfaceFontChoice::Palatino}) {
        const QStringList names = InterfaceFonts::substitutes(choice);
        EXPECT_FALSE(names.isEmpty()) << qPrintable(label(choice));
        QStringList known; // the toolkit keeps them in lower case
        for (const QString &name : names) {
            known.append(name.toLower());
        }
        EXPECT_EQ(QFont::substitutes(label(choice)), known) << qPrintable(label(choice));
    }
}

} // namespace

} // namespace quire
