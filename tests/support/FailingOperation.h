#pragma once

#include "FailingAllocation.h"

namespace test {

/// Runs `operation` with only its `nth` allocation failing, counted from 1. Allocations of the surrounding expectation
/// succeed.
///
///     EXPECT_FAILURE(test::failNth(1, [&] { array.Append(9); }), 1230, "ut_Array", reallocName, "");
template<class Operation>
void failNth(unsigned long nth, Operation&& operation) {
    const FailingAllocation failing(nth);
    operation();
}

} // namespace test
