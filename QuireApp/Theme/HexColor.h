// Colours as the web writes them: "#426F83".
//
// Thread: pure functions, any thread.

#pragma once

#include "records/CustomAccentColor.h"

#include <QString>
#include <QStringView>

#include <optional>

namespace quire::HexColor {

// Six capital digits behind a number sign; the nearest of the 256 steps of each
// component.
QString text(const CustomAccentColor &color);

// Six digits, or three that are each meant twice; the number sign and blanks
// around are optional. Nothing for any other text, eight digits with an opacity
// among them.
std::optional<CustomAccentColor> parse(QStringView text);

} // namespace quire::HexColor
