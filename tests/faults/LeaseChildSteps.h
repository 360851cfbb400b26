// The steps of a lease that are calls of the system, taken over by the linker:
// what the product calls goes through here first. The environment says how:
//
//   QUIRE_CHILD_DELAY   longest delay before and after a step, in microseconds
//   QUIRE_CHILD_SEED    of the delays
//   QUIRE_CHILD_FLAW    what is broken: "guard" (everybody gets it at once),
//                       "creation" (a lock that is there counts as made),
//                       "liveness" (every process counts as alive),
//                       "token" (the record cannot be read once it was written)
//
// Thread: one.

#pragma once

namespace quire::testing {

// From here on; until then all steps are the system's own.
void enableLeaseSteps();

} // namespace quire::testing
