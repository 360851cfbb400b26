#include "QuireApp/Theme/Theme.h"

#include "QuireApp/Theme/InterfaceFonts.h"

#include <QQmlEngine>
#include <QVariant>

namespace quire {

namespace {

constexpr auto servedTheme = "quireTheme";

QColor withOpacity(QColor color, double opacity)
{
    color.setAlphaF(float(opacity));
    return color;
}

} // namespace

Theme::Theme(QObject *parent)
    : QObject(parent)
    , m_background(sidebarBackground(m_appearance, m_palette.rgb))
    , m_fontFamily(InterfaceFonts::family(InterfaceFontChoice::AvenirNext))
{
}

void Theme::serve(QQmlEngine &engine, Theme &theme)
{
    QJSEngine::setObjectOwnership(&theme, QJSEngine::CppOwnership);
    engine.setProperty(servedTheme, QVariant::fromValue(&theme));
}

Theme *Theme::create(QQmlEngine *engine, QJSEngine *)
{
    auto *theme = engine->property(servedTheme).value<Theme *>();
    return theme ? theme : new Theme(engine);
}

void Theme::setAppearance(
    const CustomAccentColor &accent, SidebarAppearance sidebarAppearance, InterfaceFontChoice interfaceFont)
{
    const QuireThemePalette palette = ThemePalette::palette(accent);
    const QuireSidebarPalette sidebar = sidebarPalette(sidebarAppearance, accent);
    const SidebarBackground background = sidebarBackground(sidebarAppearance, accent);
    if (palette != m_palette || sidebar != m_sidebar || background != m_background) {
        m_palette = palette;
        m_sidebar = sidebar;
        m_background = background;
        m_appearance = sidebarAppearance;
        Q_EMIT paletteChanged();
    }
    const QString family = InterfaceFonts::family(interfaceFont);
    if (family != m_fontFamily) {
        m_fontFamily = family;
        Q_EMIT fontFamilyChanged();
    }
}

QColor Theme::foregroundOn(const QColor &surface) const
{
    return ThemePalette::foregroundOnAccent(ThemePalette::customAccentColor(surface));
}

int Theme::capitalsDrop(const QString &family, int size) const
{
    return InterfaceFonts::capitalsDrop(family, size);
}

QColor Theme::focusRing() const
{
    return withOpacity(mark(), 0.75);
}

QColor Theme::menuHover() const
{
    return withOpacity(mark(), 0.14);
}

QColor Theme::onMetricCard() const
{
    return foregroundOn(metricCard());
}

QColor Theme::hairline() const
{
    return isAccentLight() ? withOpacity(ink(), 0.14) : tint(0.24);
}

QColor Theme::faded(const QColor &color, double opacity) const
{
    return withOpacity(color, color.alphaF() * opacity);
}

QColor Theme::secondary() const
{
    return withOpacity(ink(), 0.6);
}

QColor Theme::trough() const
{
    return withOpacity(ink(), 0.05);
}

QColor Theme::scrollBar() const
{
    return withOpacity(ink(), 0.25);
}

QColor Theme::toolTip() const
{
    return withOpacity(ink(), 0.92);
}

bool Theme::hidesTintsInSidebar() const
{
    return isAccentLight() && !usesDarkForeground(m_appearance);
}

QColor Theme::sidebarBorder() const
{
    return hidesTintsInSidebar() ? hairline() : m_sidebar.border;
}

QColor Theme::sidebarSelectionEdge() const
{
    return hidesTintsInSidebar() ? hairline() : QColor(Qt::transparent);
}

QColor Theme::sidebarFocusRing() const
{
    return usesDarkForeground(m_appearance) ? withOpacity(Qt::white, 0.75) : focusRing();
}

} // namespace quire
