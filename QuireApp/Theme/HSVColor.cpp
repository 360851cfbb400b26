#include "QuireApp/Theme/HSVColor.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace quire {

namespace {

constexpr double fullTurn = 360;
constexpr double sector = 60; // from one pure or mixed colour to the next
constexpr double radiansPerDegree = std::numbers::pi / 180;

double finite(double number)
{
    return std::isfinite(number) ? number : 0;
}

double turned(double hue)
{
    const double rest = std::fmod(finite(hue), fullTurn);
    const double positive = rest < 0 ? rest + fullTurn : rest;
    return positive < fullTurn ? positive : 0; // a tiny negative number is rounded up to the full turn
}

double share(double number)
{
    return std::clamp(finite(number), 0.0, 1.0);
}

} // namespace

HSVColor HSVColor::normalized(double hue, double saturation, double value)
{
    return {turned(hue), share(saturation), share(value)};
}

HSVColor HSVColor::of(const CustomAccentColor &color, const HSVColor &before)
{
    const auto [red, green, blue] = CustomAccentColor::clamped(color.red, color.green, color.blue);
    const double most = std::max({red, green, blue});
    const double span = most - std::min({red, green, blue});
    if (most <= 0) {
        return {before.hue, before.saturation, 0};
    }
    if (span <= 0) {
        return {before.hue, 0, most};
    }
    double sectors = 0;
    if (most == red) {
        sectors = (green - blue) / span;
    } else if (most == green) {
        sectors = 2 + (blue - red) / span;
    } else {
        sectors = 4 + (red - green) / span;
    }
    return normalized(sectors * sector, span / most, most);
}

HSVColor HSVColor::of(const CustomAccentColor &color)
{
    return of(color, {});
}

CustomAccentColor HSVColor::rgb() const
{
    // Each component stands at `value` for two sectors, at the least for two, and
    // rises or falls between; red leads.
    const auto component = [this](double sectorsBehindRed) {
        const double sectors = std::fmod(hue / sector + sectorsBehindRed, 6);
        const double fallen = std::clamp(std::min(sectors, 4 - sectors), 0.0, 1.0);
        return value * (1 - saturation * fallen);
    };
    return CustomAccentColor::clamped(component(5), component(3), component(1));
}

QPointF HSVColor::wheelPlace() const
{
    const double angle = hue * radiansPerDegree;
    return {saturation * std::cos(angle), -saturation * std::sin(angle)};
}

HSVColor HSVColor::movedTo(const QPointF &wheelPlace) const
{
    const double distance = std::hypot(wheelPlace.x(), wheelPlace.y());
    if (!(distance > 0)) {
        return normalized(hue, 0, value);
    }
    return normalized(std::atan2(-wheelPlace.y(), wheelPlace.x()) / radiansPerDegree, distance, value);
}

} // namespace quire
