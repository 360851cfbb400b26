// The moves of a library, from each kind of place to each other: a copy into a
// new folder, and the adoption of what a folder holds.
//
// Thread: the test's.

#pragma once

#include "faults/Deeds.h"

namespace quire::testing {

// Adds them to `deeds`, for a library at `place`: none in a chosen folder, whose
// store keeps no record. filled: filledLibrary(place).
void addMoves(std::vector<Deed> &deeds, Place place, const FolderImage &filled);

// The broken twin for controls: it records the new folder before it copies the
// library there.
Deed carelessMove(const FolderImage &filled);

} // namespace quire::testing
