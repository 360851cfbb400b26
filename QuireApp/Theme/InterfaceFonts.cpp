#include "QuireApp/Theme/InterfaceFonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QHash>

#include <array>
#include <cmath>
#include <utility>

namespace quire {

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

// A desktop that names no face of its own hands out fontconfig's aliases.
bool isGenericAlias(const QString &family)
{
    return family.isEmpty() || family.compare(QLatin1String("sans serif"), Qt::CaseInsensitive) == 0
        || family.compare(QLatin1String("sans"), Qt::CaseInsensitive) == 0
        || family.compare(QLatin1String("sans-serif"), Qt::CaseInsensitive) == 0;
}

QString systemFamily()
{
    const QString family = QFontDatabase::systemFont(QFontDatabase::GeneralFont).family();
    const QString inter = QStringLiteral("Inter");
    return isGenericAlias(family) && QFontDatabase::hasFamily(inter) ? inter : family;
}

} // namespace

QFont QuireFontModifier::font(InterfaceFontChoice choice) const
{
    QFont font(InterfaceFonts::family(choice));
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

namespace InterfaceFonts {

QString family(InterfaceFontChoice choice)
{
    return choice == InterfaceFontChoice::System ? systemFamily() : label(choice);
}

QStringList substitutes(InterfaceFontChoice choice)
{
    QStringList names;
    for (const Substitution &substitution : substitutions) {
        if (substitution.choice == choice) {
            names.append(QString(substitution.standIn));
        }
    }
    return names;
}

int capitalsDrop(const QString &family, int size)
{
    static QHash<std::pair<QString, int>, int> known; // asked for by every text
    const auto found = known.constFind({family, size});
    if (found != known.cend()) {
        return *found;
    }
    QFont font(family);
    font.setPixelSize(size);
    const QFontMetricsF metrics(font);
    const int line = int(std::ceil(metrics.height()));
    // The base line is drawn on a whole pixel.
    const qreal wanted = line - 2 * std::round(metrics.ascent()) + metrics.capHeight();
    // An even height stands on whole pixels in the middle of an even control.
    const int drop = 2 * int(std::lround((wanted + line) / 2)) - line;
    known.insert({family, size}, drop);
    return drop;
}

void installSubstitutes()
{
    for (const Substitution &substitution : substitutions) {
        QFont::insertSubstitution(label(substitution.choice), QString(substitution.standIn));
    }
}

} // namespace InterfaceFonts

} // namespace quire
