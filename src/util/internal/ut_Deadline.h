#pragma once

#include <ctime>

// Computes the absolute times at which timed waits end. Internal.

namespace utility {

/// Returns the current time, truncated to a whole second, plus `seconds`; clamped to the range from 0 to the largest
/// `time_t`.
timespec deadlineAfterSeconds(long seconds);

/// Returns the current time, truncated to a whole second, plus `microseconds`; its seconds are clamped in the same way.
timespec deadlineAfterMicroseconds(unsigned long long microseconds);

} // namespace utility
