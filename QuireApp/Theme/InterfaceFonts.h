// The families behind the reader's choice of font, and the free faces that
// stand in for those that are not installed.
//
// Thread: interface thread, once an application object exists.

#pragma once

#include "records/Enumerations.h"

#include <QFont>
#include <QString>
#include <QStringList>

namespace quire {

// A size in logical pixels and a weight, applied to whatever the reader chose.
struct QuireFontModifier
{
    int size = 13;
    QFont::Weight weight = QFont::Normal;

    QFont font(InterfaceFontChoice choice) const;
};

namespace InterfaceFonts {

// The family asked for. For every choice but System that is its label.
QString family(InterfaceFontChoice choice);

// The free faces that stand in for a choice, the best one first; empty for
// System.
QStringList substitutes(InterfaceFontChoice choice);

// What a line of text wants above it, in whole logical pixels, for its capitals
// to stand in its middle; negative where it wants that much below. Faces differ
// by several pixels in where their line leaves room. size: logical pixels.
int capitalsDrop(const QString &family, int size);

// Tells the toolkit of all substitutes. Called once, before the first text.
void installSubstitutes();

} // namespace InterfaceFonts

} // namespace quire
