#pragma once

#include "ut_Export.h"

#include <cstdint>

namespace utility {

/// Time stamps in microseconds since 1970-01-01 00:00:00 UTC, and the time between two of them as a clock shows it.
///
/// Keeps nothing and owns nothing. Any thread may use it; a thread that changes the time zone must be alone.
/// Nothing here fails; a text that does not fit is cut.
///
///     char text[20];
///     const int64_t start = 1500000000000000;
///     const int64_t end = start + 3723000001;
///     utility::TimeMeasure::printDuration(end - start, text, sizeof text);   // text is "01:02:03.000001"
class VXUT_EXPORT TimeMeasure {
public:
    /// The present time of the system's real-time clock.
    static int64_t getTimestamp();
    /// The whole seconds of `ts`, cut towards zero and clamped to the range of `long`.
    static long getSeconds(int64_t ts);
    /// The microseconds beyond the whole seconds, negative for a negative `ts`.
    static long getSubSeconds(int64_t ts);
    /// The time stamp of `sec` seconds and `usec` microseconds, clamped to 64 bits.
    static int64_t timeStampFromParts(long sec, long usec);

    /// Write `ts` microseconds as hours, minutes, seconds and parts of a second into the caller's `buf` of `size`
    /// bytes, of which at most 20 are used whatever their number, and return `buf`. The hours go on beyond 24. A
    /// negative duration has a sign at each part that is not 0. A size below 1 or a null `buf` takes nothing.
    /// "25:00:00.000000":
    static char* printDuration(int64_t ts, char* buf, int size);
    /// The same with milliseconds, cut: "25:00:00.000"
    static char* printDurationMillisec(int64_t ts, char* buf, int size);

    /// Write the local time of day of `ts` into the caller's `buf` of `size` bytes and return `buf`. A time that the
    /// platform cannot express is the empty text. A size below 1 or a null `buf` takes nothing. "09:07:03.000250":
    static char* printTimestamp(int64_t ts, char* buf, int size);
    /// The same with milliseconds, cut: "09:07:03.000"
    static char* printTimestampMillisec(int64_t ts, char* buf, int size);
};

} // namespace utility
