#include "records/CustomAccentColor.h"

#include <QHash>

#include <algorithm>
#include <cmath>

namespace quire {

namespace {

double clampedComponent(double component)
{
    return std::isfinite(component) ? std::clamp(component, 0.0, 1.0) : 0.0;
}

} // namespace

CustomAccentColor CustomAccentColor::clamped(double red, double green, double blue)
{
    return {clampedComponent(red), clampedComponent(green), clampedComponent(blue)};
}

size_t qHash(const CustomAccentColor &color, size_t seed)
{
    return qHashMulti(seed, color.red, color.green, color.blue);
}

} // namespace quire
