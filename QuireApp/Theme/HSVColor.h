// A colour by hue, saturation and value: the coordinates of a colour wheel and
// of the slider below it.
//
// Thread: plain values and pure functions, any thread.

#pragma once

#include "records/CustomAccentColor.h"

#include <QPointF>

namespace quire {

struct HSVColor
{
    double hue = 0; // degrees from 0 to below 360: red, green at 120, blue at 240
    double saturation = 0; // from 0, a grey, to 1
    double value = 0; // from 0, black, to 1

    // Turns the hue into its range, and brings the others into theirs; a number
    // that is not finite becomes 0.
    static HSVColor normalized(double hue, double saturation, double value);

    // A grey has no hue, and black no saturation either: they take those of
    // `before`, so that a colour that is moved through them finds back.
    static HSVColor of(const CustomAccentColor &color, const HSVColor &before);
    static HSVColor of(const CustomAccentColor &color); // they are red

    CustomAccentColor rgb() const;

    // Where the colour lies on a wheel of radius 1 about the origin: red on the
    // right, the hues counter-clockwise, greys in the middle. y points down.
    QPointF wheelPlace() const;

    // The colour at that place with the same value; what lies beyond the rim
    // counts as on it, and the middle keeps the hue.
    HSVColor movedTo(const QPointF &wheelPlace) const;

    bool operator==(const HSVColor &) const = default;
};

} // namespace quire
