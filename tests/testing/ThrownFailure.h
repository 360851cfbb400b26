// The failure that an operation ends with, as a value to compare.

#pragma once

#include "records/Failure.h"

#include <gtest/gtest.h>

#include <exception>
#include <optional>
#include <ostream>

namespace quire {

// Lets a failed comparison show what the failure says.
inline void PrintTo(const Failure &failure, std::ostream *out)
{
    *out << failure.what();
}

} // namespace quire

namespace quire::testing {

// What `work` throws, if it is of that type; any other exception passes
// through. Fails the test when nothing is thrown.
template<typename Expected, typename Work>
std::optional<Expected> thrownBy(Work work)
{
    try {
        work();
    } catch (const Expected &failure) {
        return failure;
    }
    ADD_FAILURE() << "nothing was thrown";
    return std::nullopt;
}

// The same for a failure of any type: success when `isExpected` says so of it.
template<typename Work, typename Predicate>
::testing::AssertionResult thrownByIs(Work work, Predicate isExpected)
{
    try {
        work();
    } catch (const std::exception &failure) {
        if (isExpected(failure)) {
            return ::testing::AssertionSuccess();
        }
        return ::testing::AssertionFailure() << failure.what();
    }
    return ::testing::AssertionFailure() << "nothing was thrown";
}

} // namespace quire::testing
