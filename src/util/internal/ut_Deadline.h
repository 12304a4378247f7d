#pragma once

#include <ctime>

// The absolute times at which timed waits end. Internal.

namespace utility {

/// Returns the current time plus `seconds`, truncated to a whole second. Saturates at the ends of `time_t`.
timespec deadlineAfterSeconds(long seconds);

/// Returns the current whole second plus `microseconds` / 1000000, with the sub-second part of `microseconds`.
timespec deadlineAfterMicroseconds(unsigned long long microseconds);

} // namespace utility
