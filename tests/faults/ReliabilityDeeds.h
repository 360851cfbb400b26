// The deeds that guard the library rather than change it: its backup, its
// opening over what a crash or another machine left behind, and the openings that
// must be refused. Each with its own look at the aftermath.
//
// Thread: the test's.

#pragma once

#include "faults/Deeds.h"

namespace quire::testing {

// filled: a closed library that was made at `place`.
void addReliabilityDeeds(std::vector<Deed> &deeds, Place place, const FolderImage &filled);

} // namespace quire::testing
