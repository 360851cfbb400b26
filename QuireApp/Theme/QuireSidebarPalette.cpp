#include "QuireApp/Theme/QuireSidebarPalette.h"

#include "QuireApp/Theme/QuireThemePalette.h"

namespace quire {

namespace {

QColor withOpacity(QColor color, double opacity)
{
    color.setAlphaF(float(opacity));
    return color;
}

// Nothing behind the window can be blurred here, so the thinnest material is
// the window's own surface, a shade deeper; the white veil lies over it.
QColor glassBase(const CustomAccentColor &accent)
{
    constexpr double material = 0.06;
    constexpr double veil = 0.1;
    return ThemePalette::accentTint(accent, material * (1 - veil));
}

} // namespace

QuireSidebarPalette::QuireSidebarPalette()
    : foreground(ThemePalette::quireInk())
    , muted(withOpacity(ThemePalette::quireInk(), 0.62))
    , searchForeground(ThemePalette::quireInk())
    , searchMuted(withOpacity(ThemePalette::quireInk(), 0.55))
    , searchFill(Qt::white)
    , border(withOpacity(Qt::black, 0.08))
    , selection(withOpacity(Qt::black, 0.06))
    , hover(withOpacity(Qt::black, 0.035))
{
}

QuireSidebarPalette sidebarPalette(SidebarAppearance appearance, const CustomAccentColor &accent)
{
    QuireSidebarPalette palette; // the search text is the same on every surface
    if (usesDarkForeground(appearance)) {
        palette.foreground = Qt::white;
        palette.muted = withOpacity(Qt::white, 0.62);
        palette.searchFill = withOpacity(Qt::white, 0.92);
        palette.border = withOpacity(Qt::black, 0.12);
        palette.selection = withOpacity(Qt::white, 0.16);
        palette.hover = withOpacity(Qt::white, 0.08);
    } else {
        palette.searchFill = ThemePalette::accentTint(accent, 0.018);
        palette.border = withOpacity(ThemePalette::accentTint(accent, 0.24), 0.75);
        palette.selection = ThemePalette::accentTint(accent, 0.24);
        palette.hover = ThemePalette::accentTint(accent, 0.07);
    }
    return palette;
}

SidebarBackground sidebarBackground(SidebarAppearance appearance, const CustomAccentColor &accent)
{
    const auto plain = [](const CustomAccentColor &color) {
        return SidebarBackground{ThemePalette::toColor(color), Qt::transparent, Qt::transparent};
    };
    switch (appearance) {
    case SidebarAppearance::Snow:
        return plain(AccentPalette::snow);
    case SidebarAppearance::Fjord:
        return plain(AccentPalette::fjord);
    case SidebarAppearance::Pine:
        return plain(AccentPalette::pine);
    case SidebarAppearance::Cabin:
        return plain(AccentPalette::cabin);
    case SidebarAppearance::Glass:
        return {glassBase(accent), withOpacity(ThemePalette::toColor(accent), 0.035), withOpacity(Qt::black, 0.02)};
    }
    Q_UNREACHABLE();
}

} // namespace quire
