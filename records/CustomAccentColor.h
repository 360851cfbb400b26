#pragma once

#include <QtGlobal>

namespace quire {

// A colour chosen by the reader: sRGB, each component from 0 to 1.
struct CustomAccentColor
{
    double red = 0;
    double green = 0;
    double blue = 0;

    // Brings each component into range: not finite or at most 0 becomes 0,
    // above 1 becomes 1. Stored numbers do not pass through here.
    static CustomAccentColor clamped(double red, double green, double blue);

    bool operator==(const CustomAccentColor &) const = default;
};

size_t qHash(const CustomAccentColor &color, size_t seed = 0);

} // namespace quire
