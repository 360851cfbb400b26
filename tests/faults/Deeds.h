// What a store does, each deed as one that can be done again and again to the
// same library: the matter of every test of faults. A new operation of the store
// that writes gets its line here, and is tried with every fault from then on.
//
// Thread: the test's.

#pragma once

#include "faults/FaultBench.h"

#include <QStringList>

#include <functional>
#include <vector>

namespace quire::testing {

struct Deed
{
    enum class Kind {
        Edit, // of an open library; one transaction
        Work, // of an open library; several transactions, each of which it may rest after
        Opening, // of a closed library; rests between the schema's versions
        Refusal, // an opening that must not come to pass; done when it was refused
    };

    const char *name;
    Kind kind;
    FolderImage start; // the folder before it, closed
    std::function<void(LibraryStore &)> run; // throws what the store fails with
    // What is wrong once nothing hinders any more; absent: that the library is of
    // no further use.
    std::function<QStringList(FaultBench &)> aftermath = {};
    const char *row = "R03"; // of the scoreboard, for a call to the disk that fails in it
};

// A closed library with some of everything in it, made at `place`; no two are of
// one identity.
FolderImage filledLibrary(Place place);

// Every deed there is, over a library at `place`.
std::vector<Deed> allDeeds(Place place);

// The edits and imports of a sitting, each of which differs from the others:
// number `step` of a row that begins at filledLibrary() and has no end.
void doStep(LibraryStore &store, int step);

} // namespace quire::testing
