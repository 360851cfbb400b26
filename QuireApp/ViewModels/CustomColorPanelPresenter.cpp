#include "QuireApp/ViewModels/CustomColorPanelPresenter.h"

#include "QuireApp/Theme/HexColor.h"
#include "QuireApp/Theme/QuireThemePalette.h"

#include <cmath>
#include <utility>

namespace quire {

namespace {

constexpr int fullTurn = 360;
constexpr double wholePercent = 100;

int percent(double share)
{
    return int(std::lround(share * wholePercent));
}

} // namespace

CustomColorPanelPresenter::CustomColorPanelPresenter(QObject *parent)
    : QObject(parent)
{
}

void CustomColorPanelPresenter::show(const CustomAccentColor &initialColor, Change onChange)
{
    m_onChange = std::move(onChange);
    m_color = initialColor;
    m_shown = HSVColor::of(initialColor, m_shown);
    Q_EMIT colorChanged();
    if (!m_isShown) {
        m_isShown = true;
        Q_EMIT isShownChanged();
    }
    Q_EMIT presented();
}

void CustomColorPanelPresenter::detach()
{
    m_onChange = nullptr;
    if (m_isShown) {
        m_isShown = false;
        Q_EMIT isShownChanged();
    }
}

QColor CustomColorPanelPresenter::color() const
{
    return ThemePalette::toColor(m_color);
}

QColor CustomColorPanelPresenter::brightest() const
{
    return ThemePalette::toColor(HSVColor{m_shown.hue, m_shown.saturation, 1}.rgb());
}

QString CustomColorPanelPresenter::hex() const
{
    return HexColor::text(m_color);
}

QString CustomColorPanelPresenter::wheelWords() const
{
    return QStringLiteral("Hue %1°, saturation %2%").arg(hue()).arg(saturation());
}

int CustomColorPanelPresenter::hue() const
{
    return int(std::lround(m_shown.hue)) % fullTurn;
}

int CustomColorPanelPresenter::saturation() const
{
    return percent(m_shown.saturation);
}

int CustomColorPanelPresenter::brightness() const
{
    return percent(m_shown.value);
}

void CustomColorPanelPresenter::setHue(int degrees)
{
    if (degrees != hue()) {
        choose(HSVColor::normalized(degrees, m_shown.saturation, m_shown.value));
    }
}

void CustomColorPanelPresenter::setSaturation(int percent)
{
    if (percent != saturation()) {
        choose(HSVColor::normalized(m_shown.hue, percent / wholePercent, m_shown.value));
    }
}

void CustomColorPanelPresenter::setBrightness(int percent)
{
    if (percent != brightness()) {
        setValue(percent / wholePercent);
    }
}

void CustomColorPanelPresenter::setValue(double value)
{
    choose(HSVColor::normalized(m_shown.hue, m_shown.saturation, value));
}

void CustomColorPanelPresenter::pickOnWheel(const QPointF &place)
{
    choose(m_shown.movedTo(place));
}

void CustomColorPanelPresenter::moveOnWheel(double right, double down)
{
    pickOnWheel(m_shown.wheelPlace() + QPointF(right, down));
}

bool CustomColorPanelPresenter::enterHex(const QString &text)
{
    const auto color = HexColor::parse(text);
    if (!color) {
        return false;
    }
    if (!isShownHex(text)) { // what is shown may be finer than its text
        choose(*color, HSVColor::of(*color, m_shown));
    }
    return true;
}

bool CustomColorPanelPresenter::isWholeHex(const QString &text) const
{
    constexpr int digits = 6;
    return text.trimmed().size() >= digits && HexColor::parse(text).has_value();
}

bool CustomColorPanelPresenter::isShownHex(const QString &text) const
{
    const auto color = HexColor::parse(text);
    return color && HexColor::text(*color) == hex();
}

void CustomColorPanelPresenter::choose(const HSVColor &shown)
{
    if (shown != m_shown) {
        choose(shown.rgb(), shown);
    }
}

void CustomColorPanelPresenter::choose(const CustomAccentColor &color, const HSVColor &shown)
{
    const bool isOther = color != m_color; // black is black in every hue
    m_color = color;
    m_shown = shown;
    Q_EMIT colorChanged();
    if (isOther && m_onChange) {
        const Change onChange = m_onChange; // which may detach
        onChange(color);
    }
}

} // namespace quire
