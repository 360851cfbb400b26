// The icons of the program. The views name them by what they mean; which
// drawing stands for a name is decided where the build embeds them
// (Symbols/CMakeLists.txt).
//
// Thread: interface thread (pictures are kept between calls).

#pragma once

#include <QColor>
#include <QImage>
#include <QString>

namespace quire::SymbolSet {

// A square picture of `pixels` by `pixels` in `color`; null for an empty name,
// and with a warning for one that the build did not embed.
QImage picture(const QString &name, const QColor &color, int pixels);

} // namespace quire::SymbolSet
