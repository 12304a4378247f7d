#pragma once

#include "FailingAllocation.h"

namespace test {

/// Runs `operation` with its `nth` allocation failing, counted from 1, and with no other: what the caller expects of it
/// is put together outside.
///
///     EXPECT_FAILURE(test::failNth(1, [&] { array.Append(9); }), 1230, "ut_Array", REALLOC, "");
template<class Operation>
void failNth(unsigned long nth, Operation&& operation) {
    const FailingAllocation failing(nth);
    operation();
}

} // namespace test
