// The families behind the reader's choice of font, and how their letters sit.
//
// Thread: interface thread, once an application object exists.

#pragma once

#include "records/Enumerations.h"

#include <QFont>
#include <QString>

namespace quire {

// A size in logical pixels and a weight, applied to whatever the reader chose.
struct QuireFontModifier
{
    int size = 13;
    QFont::Weight weight = QFont::Normal;

    QFont font(InterfaceFontChoice choice) const;
};

namespace InterfaceFonts {

// Has the desktop's list of fonts read, which the first text would wait for, while
// the views are loaded. The application object exists.
void readAhead();

// The family asked for. For every choice but System that is its label.
QString family(InterfaceFontChoice choice);

// What a line of text wants above it, in whole logical pixels, for its capitals
// to stand in its middle; negative where it wants that much below. Faces differ
// by several pixels in where their line leaves room. size: logical pixels.
int capitalsDrop(const QString &family, int size);

} // namespace InterfaceFonts

} // namespace quire
