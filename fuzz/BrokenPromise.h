// What a fuzz target throws at a promise that a reader did not keep. The fuzzer
// takes it for a crash, and a test for what it waits for or does not.

#pragma once

#include <stdexcept>

namespace quire::fuzz {

class BrokenPromise final : public std::logic_error
{
public:
    using std::logic_error::logic_error;
};

// what: that is the case when it does not hold.
inline void require(bool holds, const char *what)
{
    if (!holds) {
        throw BrokenPromise(what);
    }
}

} // namespace quire::fuzz
