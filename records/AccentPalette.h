// The Nordic palette: the four colours that accents and sidebars are made of.
//
// Thread: plain values.

#pragma once

#include "records/CustomAccentColor.h"
#include "records/Enumerations.h"

namespace quire::AccentPalette {

inline constexpr CustomAccentColor snow{247 / 255.0, 247 / 255.0, 242 / 255.0};
inline constexpr CustomAccentColor fjord{66 / 255.0, 111 / 255.0, 131 / 255.0};
inline constexpr CustomAccentColor pine{38 / 255.0, 79 / 255.0, 71 / 255.0};
inline constexpr CustomAccentColor cabin{203 / 255.0, 93 / 255.0, 82 / 255.0};

} // namespace quire::AccentPalette
