#pragma once

#include "ut_Export.h"

#include <cstdint>

namespace utility {

/// Gets time stamps, in microseconds since 1970-01-01 00:00:00 UTC, and formats them and their differences as clock
/// times.
///
/// Stateless. Any thread may call it, but not while another thread changes the time zone. No operation fails; a text
/// that does not fit is truncated and NUL-terminated.
///
///     char text[20];
///     const int64_t start = 1500000000000000;
///     const int64_t end = start + 3723000001;
///     utility::TimeMeasure::printDuration(end - start, text, sizeof text);   // text is "01:02:03.000001"
class VXUT_EXPORT TimeMeasure {
public:
    /// Returns the current time of the real-time clock.
    static int64_t getTimestamp();
    /// Returns the whole seconds of `ts`, rounded toward zero and clamped to the range of `long`.
    static long getSeconds(int64_t ts);
    /// Returns the microseconds after the whole seconds: 0 to 999,999, or −999,999 to 0 if `ts` is negative.
    static long getSubSeconds(int64_t ts);
    /// Returns the time stamp of `sec` seconds and `usec` microseconds, clamped to 64 bits.
    static int64_t timeStampFromParts(long sec, long usec);

    /// Writes a duration of `ts` microseconds as hours, minutes, seconds and microseconds to `buf` and returns `buf`:
    /// "25:00:00.000000". Hours are not limited to 24. In a negative duration, each part other than 0 has a sign. Does
    /// nothing if `buf` is null or `size` is below 1.
    /// - `size`: size of `buf` in bytes, of which at most 20 are used
    static char* printDuration(int64_t ts, char* buf, int size);
    /// Writes a duration as `printDuration` does, but truncated to milliseconds: "25:00:00.000".
    static char* printDurationMillisec(int64_t ts, char* buf, int size);

    /// Writes the local time of day of `ts` to `buf` of `size` bytes and returns `buf`: "09:07:03.000250". The text is
    /// empty if the platform cannot represent the time. Does nothing if `buf` is null or `size` is below 1.
    static char* printTimestamp(int64_t ts, char* buf, int size);
    /// Writes the local time of day as `printTimestamp` does, but truncated to milliseconds: "09:07:03.000".
    static char* printTimestampMillisec(int64_t ts, char* buf, int size);
};

} // namespace utility
