#include "QuireApp/Theme/QuireThemePalette.h"

namespace quire::ThemePalette {

namespace {

constexpr double prominentThreshold = 0.82;
constexpr double catalogThreshold = 0.68; // deliberately not that of prominent buttons

QColor inkOrWhite(const CustomAccentColor &accent, double threshold)
{
    return luminance(accent) > threshold ? quireInk() : QColor(Qt::white);
}

} // namespace

QColor quireInk()
{
    return QColor::fromRgbF(0.18F, 0.15F, 0.15F);
}

CustomAccentColor color(AccentColorChoice choice)
{
    switch (choice) {
    case AccentColorChoice::Snow:
        return AccentPalette::snow;
    case AccentColorChoice::Fjord:
        return AccentPalette::fjord;
    case AccentColorChoice::Pine:
        return AccentPalette::pine;
    case AccentColorChoice::Cabin:
        return AccentPalette::cabin;
    }
    Q_UNREACHABLE();
}

CustomAccentColor accentInForce(
    bool usesCustomAccentColor, const std::optional<CustomAccentColor> &customAccentColor, AccentColorChoice choice)
{
    return usesCustomAccentColor && customAccentColor ? *customAccentColor : color(choice);
}

QuireThemePalette palette(const CustomAccentColor &accent)
{
    return {toColor(accent), accent};
}

QColor toColor(const CustomAccentColor &color)
{
    // Stored numbers may lie outside the range; the toolkit's colours may not.
    const CustomAccentColor safe = CustomAccentColor::clamped(color.red, color.green, color.blue);
    return QColor::fromRgbF(float(safe.red), float(safe.green), float(safe.blue));
}

CustomAccentColor customAccentColor(const QColor &color)
{
    return color.isValid() ? CustomAccentColor::clamped(color.redF(), color.greenF(), color.blueF())
                           : AccentPalette::fjord;
}

QColor accentTint(const CustomAccentColor &accent, double factor)
{
    const auto wash = [factor](double component) { return 1 - (1 - component) * factor; };
    return toColor({wash(accent.red), wash(accent.green), wash(accent.blue)});
}

double luminance(const CustomAccentColor &color)
{
    return 0.2126 * color.red + 0.7152 * color.green + 0.0722 * color.blue;
}

QColor foregroundOnAccent(const CustomAccentColor &accent)
{
    return inkOrWhite(accent, prominentThreshold);
}

QColor catalogForegroundOnAccent(const CustomAccentColor &accent)
{
    return inkOrWhite(accent, catalogThreshold);
}

QColor markOnLight(const CustomAccentColor &accent)
{
    return luminance(accent) > prominentThreshold ? quireInk() : toColor(accent);
}

QColor darkened(const QColor &color, double amount)
{
    const auto keep = float(1 - amount);
    return QColor::fromRgbF(color.redF() * keep, color.greenF() * keep, color.blueF() * keep, color.alphaF());
}

} // namespace quire::ThemePalette
