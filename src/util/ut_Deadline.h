#pragma once

#include <ctime>

// The absolute times at which timed waits end. Not for callers of the library.

namespace utility {

/// The whole second `seconds` after the present one: its sub-second part is dropped. A time that the platform cannot
/// express is the nearest that it can.
timespec deadlineAfterSeconds(long seconds);

/// The second `microseconds` / 1000000 after the present one; its sub-second part is that of `microseconds` alone.
timespec deadlineAfterMicroseconds(unsigned long long microseconds);

} // namespace utility
