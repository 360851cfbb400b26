// The accent as numbers and the rule that derives every surface from it.
//
// Thread: plain values and pure functions, any thread.

#pragma once

#include "records/AccentPalette.h"

#include <QColor>

#include <optional>

namespace quire {

// The accent as the toolkit holds it and as numbers; Fjord until a reader
// chooses. Make one with ThemePalette::palette.
struct QuireThemePalette
{
    QColor accent = QColor::fromRgbF(
        float(AccentPalette::fjord.red), float(AccentPalette::fjord.green), float(AccentPalette::fjord.blue));
    CustomAccentColor rgb = AccentPalette::fjord;

    bool operator==(const QuireThemePalette &) const = default;
};

namespace ThemePalette {

// Text and symbols on light surfaces.
QColor quireInk();

// The Nordic colour of that name.
CustomAccentColor color(AccentColorChoice choice);

// The custom colour when it is wanted and there is one, otherwise the choice.
CustomAccentColor accentInForce(
    bool usesCustomAccentColor, const std::optional<CustomAccentColor> &customAccentColor, AccentColorChoice choice);

QuireThemePalette palette(const CustomAccentColor &accent);

QColor toColor(const CustomAccentColor &color);

// A colour of the toolkit, of whatever model, in sRGB, each component brought into
// range; Fjord for one that is none (QColor::isValid()).
CustomAccentColor customAccentColor(const QColor &color);

// A wash of the accent over white; factor from 0 (white) to 1 (the accent).
QColor accentTint(const CustomAccentColor &accent, double factor);

// From 0 to 1, of the components as they stand.
double luminance(const CustomAccentColor &color);

// Text and symbols on a prominent button: ink above luminance 0.82, else white.
QColor foregroundOnAccent(const CustomAccentColor &accent);

// The same for the prominent button of the catalogue, whose threshold is 0.68.
QColor catalogForegroundOnAccent(const CustomAccentColor &accent);

// A line or mark on a light surface that must be seen with every accent, such
// as the edge of a focused field: ink above luminance 0.82, else the accent.
QColor markOnLight(const CustomAccentColor &accent);

// `color` mixed with black; amount from 0 to 1.
QColor darkened(const QColor &color, double amount);

} // namespace ThemePalette

} // namespace quire
