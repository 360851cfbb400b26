// Theme is what every view paints with: the colours derived from the accent,
// those of the sidebar, the font family and the type sizes. One a QML engine;
// the application sets what the reader chose and the views follow.
//
// Thread: interface thread.

#pragma once

#include "QuireApp/Theme/QuireSidebarPalette.h"
#include "QuireApp/Theme/QuireThemePalette.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace quire {

class Theme : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    // Surfaces and marks of the accent.
    Q_PROPERTY(QColor accent READ accent NOTIFY paletteChanged)
    Q_PROPERTY(QColor accentHovered READ accentHovered NOTIFY paletteChanged)
    Q_PROPERTY(QColor accentPressed READ accentPressed NOTIFY paletteChanged)
    Q_PROPERTY(QColor onAccent READ onAccent NOTIFY paletteChanged)
    Q_PROPERTY(QColor onCatalogAccent READ onCatalogAccent NOTIFY paletteChanged)
    Q_PROPERTY(QColor mark READ mark NOTIFY paletteChanged)
    Q_PROPERTY(QColor focusRing READ focusRing NOTIFY paletteChanged)
    Q_PROPERTY(QColor menuHover READ menuHover NOTIFY paletteChanged)
    Q_PROPERTY(QColor window READ window NOTIFY paletteChanged)
    Q_PROPERTY(QColor field READ field NOTIFY paletteChanged)
    Q_PROPERTY(QColor hover READ hover NOTIFY paletteChanged)
    Q_PROPERTY(QColor emptyCover READ emptyCover NOTIFY paletteChanged)
    Q_PROPERTY(QColor pill READ pill NOTIFY paletteChanged)
    Q_PROPERTY(QColor hairline READ hairline NOTIFY paletteChanged)
    Q_PROPERTY(bool isAccentLight READ isAccentLight NOTIFY paletteChanged)
    Q_PROPERTY(QColor card READ card NOTIFY paletteChanged)
    Q_PROPERTY(QColor metricCard READ metricCard NOTIFY paletteChanged)
    Q_PROPERTY(QColor onMetricCard READ onMetricCard NOTIFY paletteChanged)

    // The same whatever the accent.
    Q_PROPERTY(QColor ink READ ink CONSTANT)
    Q_PROPERTY(QColor secondary READ secondary CONSTANT)
    Q_PROPERTY(QColor trough READ trough CONSTANT)
    Q_PROPERTY(QColor scrollBar READ scrollBar CONSTANT)
    Q_PROPERTY(QColor toolTip READ toolTip CONSTANT)

    // The sidebar.
    Q_PROPERTY(QColor sidebarForeground READ sidebarForeground NOTIFY paletteChanged)
    Q_PROPERTY(QColor sidebarMuted READ sidebarMuted NOTIFY paletteChanged)
    Q_PROPERTY(QColor sidebarSearchForeground READ sidebarSearchForeground NOTIFY paletteChanged)
    Q_PROPERTY(QColor sidebarSearchMuted READ sidebarSearchMuted NOTIFY paletteChanged)
    Q_PROPERTY(QColor sidebarSearchFill READ sidebarSearchFill NOTIFY paletteChanged)
    Q_PROPERTY(QColor sidebarBorder READ sidebarBorder NOTIFY paletteChanged)
    Q_PROPERTY(QColor sidebarSelection READ sidebarSelection NOTIFY paletteChanged)
    Q_PROPERTY(QColor sidebarSelectionEdge READ sidebarSelectionEdge NOTIFY paletteChanged)
    Q_PROPERTY(QColor sidebarHover READ sidebarHover NOTIFY paletteChanged)
    Q_PROPERTY(QColor sidebarBase READ sidebarBase NOTIFY paletteChanged)
    Q_PROPERTY(QColor sidebarGradientTop READ sidebarGradientTop NOTIFY paletteChanged)
    Q_PROPERTY(QColor sidebarGradientBottom READ sidebarGradientBottom NOTIFY paletteChanged)
    Q_PROPERTY(QColor sidebarFocusRing READ sidebarFocusRing NOTIFY paletteChanged)

    Q_PROPERTY(QString fontFamily READ fontFamily NOTIFY fontFamilyChanged)

public:
    // No default: the engine prefers a default constructor to create().
    explicit Theme(QObject *parent);

    // Makes `theme` the one that the views of `engine` see. Before they are
    // loaded; theme outlives the engine.
    static void serve(QQmlEngine &engine, Theme &theme);

    // For the QML engine: the theme served, or one of its own with the default
    // colours.
    static Theme *create(QQmlEngine *engine, QJSEngine *scripts);

    // What the reader chose; the views repaint when that changes something.
    void setAppearance(
        const CustomAccentColor &accent, SidebarAppearance sidebarAppearance, InterfaceFontChoice interfaceFont);

    // The accent over white, for the factors that have no name above.
    Q_INVOKABLE QColor accentTint(double factor) const { return tint(factor); }

    // A colour of the theme fainter than it is: opacity from 0 (none of it) to 1.
    Q_INVOKABLE QColor faded(const QColor &color, double opacity) const;

    // Symbols on a surface of any colour, by the rule of prominent buttons.
    Q_INVOKABLE QColor foregroundOn(const QColor &surface) const;

    // See InterfaceFonts::capitalsDrop.
    Q_INVOKABLE int capitalsDrop(const QString &family, int size) const;

    const QuireThemePalette &palette() const { return m_palette; }

    QColor accent() const { return m_palette.accent; }
    QColor accentHovered() const { return ThemePalette::darkened(m_palette.accent, 0.06); }
    QColor accentPressed() const { return ThemePalette::darkened(m_palette.accent, 0.12); }
    QColor onAccent() const { return ThemePalette::foregroundOnAccent(m_palette.rgb); }
    QColor onCatalogAccent() const { return ThemePalette::catalogForegroundOnAccent(m_palette.rgb); }
    // Rings, checks and the edge of a focused field: seen with every accent.
    QColor mark() const { return ThemePalette::markOnLight(m_palette.rgb); }
    QColor focusRing() const;
    QColor menuHover() const;
    QColor window() const { return tint(0.012); }
    QColor field() const { return tint(0.018); }
    QColor hover() const { return tint(0.07); }
    QColor emptyCover() const { return tint(0.09); }
    QColor pill() const { return tint(0.12); }
    // An accent near white, whose tints cannot be told from the paper.
    bool isAccentLight() const { return mark() != accent(); }
    // The edge of fields, buttons and panels: a tint of the accent, or ink where that
    // would leave them without one.
    QColor hairline() const;
    QColor card() const { return tint(0.3); }
    QColor metricCard() const { return tint(0.19); }
    QColor onMetricCard() const;

    QColor ink() const { return ThemePalette::quireInk(); }
    QColor secondary() const;
    QColor trough() const;
    QColor scrollBar() const;
    QColor toolTip() const;

    QColor sidebarForeground() const { return m_sidebar.foreground; }
    QColor sidebarMuted() const { return m_sidebar.muted; }
    QColor sidebarSearchForeground() const { return m_sidebar.searchForeground; }
    QColor sidebarSearchMuted() const { return m_sidebar.searchMuted; }
    QColor sidebarSearchFill() const { return m_sidebar.searchFill; }
    // That of the palette, or one in ink where its tint cannot be told from a light
    // sidebar.
    QColor sidebarBorder() const;
    QColor sidebarSelection() const { return m_sidebar.selection; }
    // Round what is selected, in the same case; transparent otherwise.
    QColor sidebarSelectionEdge() const;
    QColor sidebarHover() const { return m_sidebar.hover; }
    QColor sidebarBase() const { return m_background.base; }
    QColor sidebarGradientTop() const { return m_background.gradientTop; }
    QColor sidebarGradientBottom() const { return m_background.gradientBottom; }
    QColor sidebarFocusRing() const;

    QString fontFamily() const { return m_fontFamily; }

Q_SIGNALS:
    void paletteChanged();
    void fontFamilyChanged();

private:
    QColor tint(double factor) const { return ThemePalette::accentTint(m_palette.rgb, factor); }
    bool hidesTintsInSidebar() const;

    SidebarAppearance m_appearance = SidebarAppearance::Snow;
    QuireThemePalette m_palette;
    QuireSidebarPalette m_sidebar;
    SidebarBackground m_background;
    QString m_fontFamily;
};

} // namespace quire
