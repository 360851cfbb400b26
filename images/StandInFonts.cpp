#include "images/StandInFonts.h"

#include <QFont>
#include <QFontDatabase>

#include <array>

namespace quire::StandInFonts {

namespace {

struct Substitution
{
    InterfaceFontChoice choice;
    QLatin1String standIn;
};

// Avenir Next is the default and so makes the program's face: of the free ones
// Lato keeps its round, open letters at 11 to 14 pixels.
constexpr std::array substitutions{
    Substitution{InterfaceFontChoice::AvenirNext, QLatin1String("Lato")},
    Substitution{InterfaceFontChoice::AvenirNext, QLatin1String("Inter")},
    Substitution{InterfaceFontChoice::HelveticaNeue, QLatin1String("TeX Gyre Heros")},
    Substitution{InterfaceFontChoice::Charter, QLatin1String("Charis SIL")},
    Substitution{InterfaceFontChoice::Georgia, QLatin1String("Noto Serif")},
    Substitution{InterfaceFontChoice::Baskerville, QLatin1String("Baskervald ADF Std")},
    Substitution{InterfaceFontChoice::GillSans, QLatin1String("Gillius ADF")},
    Substitution{InterfaceFontChoice::Futura, QLatin1String("League Spartan")},
    Substitution{InterfaceFontChoice::Optima, QLatin1String("Linux Biolinum O")},
    Substitution{InterfaceFontChoice::Palatino, QLatin1String("TeX Gyre Pagella")},
};

} // namespace

QStringList of(InterfaceFontChoice choice)
{
    QStringList names;
    for (const Substitution &substitution : substitutions) {
        if (substitution.choice == choice) {
            names.append(QString(substitution.standIn));
        }
    }
    return names;
}

QString installedFamily(InterfaceFontChoice choice)
{
    if (choice == InterfaceFontChoice::System) {
        return {};
    }
    const QStringList families = QStringList{label(choice)} + of(choice);
    for (const QString &family : families) {
        if (QFontDatabase::hasFamily(family)) {
            return family;
        }
    }
    return {};
}

void installAll()
{
    for (const Substitution &substitution : substitutions) {
        QFont::insertSubstitution(label(substitution.choice), QString(substitution.standIn));
    }
}

} // namespace quire::StandInFonts
