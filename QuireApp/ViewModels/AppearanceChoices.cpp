#include "QuireApp/ViewModels/AppearanceChoices.h"

#include "QuireApp/Theme/InterfaceFonts.h"
#include "records/Enumerations.h"

namespace quire::AppearanceChoices {

namespace {

QString title(SidebarAppearance appearance)
{
    switch (appearance) {
    case SidebarAppearance::Snow:
        return QStringLiteral("Snow");
    case SidebarAppearance::Fjord:
        return QStringLiteral("Fjord");
    case SidebarAppearance::Pine:
        return QStringLiteral("Pine");
    case SidebarAppearance::Cabin:
        return QStringLiteral("Cabin");
    case SidebarAppearance::Glass:
        return QStringLiteral("Glass");
    }
    Q_UNREACHABLE();
}

QString title(AccentColorChoice accent)
{
    switch (accent) {
    case AccentColorChoice::Snow:
        return QStringLiteral("Snow");
    case AccentColorChoice::Fjord:
        return QStringLiteral("Fjord");
    case AccentColorChoice::Pine:
        return QStringLiteral("Pine");
    case AccentColorChoice::Cabin:
        return QStringLiteral("Cabin");
    }
    Q_UNREACHABLE();
}

} // namespace

QList<Choice> sidebars()
{
    QList<Choice> choices;
    for (const SidebarAppearance appearance : allSidebarAppearances) {
        choices.append({rawValue(appearance), title(appearance), QString()});
    }
    return choices;
}

QList<Choice> fonts()
{
    QList<Choice> choices;
    for (const InterfaceFontChoice font : allInterfaceFontChoices) {
        choices.append({rawValue(font), label(font), QString(), InterfaceFonts::family(font)});
    }
    return choices;
}

QList<Choice> accents()
{
    QList<Choice> choices;
    for (const AccentColorChoice accent : allAccentColorChoices) {
        choices.append({rawValue(accent), title(accent), QString()});
    }
    return choices;
}

} // namespace quire::AppearanceChoices
