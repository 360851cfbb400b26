// The free faces that stand in for the families that the interface names but a
// machine seldom has.
//
// Thread: installAll() on the interface thread; the rest any.

#pragma once

#include "records/Enumerations.h"

#include <QStringList>

namespace quire::StandInFonts {

// The faces that stand in for a choice, the best one first; empty for System.
QStringList of(InterfaceFontChoice choice);

// The first that this machine has of the family that a choice names and its
// stand-ins; empty when it has none of them, and for System. Needs a
// QGuiApplication.
QString installedFamily(InterfaceFontChoice choice);

// Tells the toolkit of all of them. Called once, before the first text.
void installAll();

} // namespace quire::StandInFonts
