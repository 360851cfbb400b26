#include "images/StandInFonts.h"

#include <QFont>

#include <gtest/gtest.h>

namespace quire {

namespace {

TEST(StandInFonts, EveryNamedFamilyHasAFreeStandIn)
{
    StandInFonts::installAll();
    for (const auto choice :
        {InterfaceFontChoice::AvenirNext, InterfaceFontChoice::HelveticaNeue, InterfaceFontChoice::Charter,
            InterfaceFontChoice::Georgia, InterfaceFontChoice::Baskerville, InterfaceFontChoice::GillSans,
            InterfaceFontChoice::Futura, InterfaceFontChoice::Optima, InterfaceFontChoice::Palatino}) {
        const QStringList names = StandInFonts::of(choice);
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
