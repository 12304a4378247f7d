#include "ut_TimeMeasure.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <limits>

#include "ut_DateTime.h"

namespace utility {

namespace {

constexpr long microsecondsPerSecond = 1000000;
constexpr long microsecondsPerMillisecond = 1000;
constexpr long nanosecondsPerMicrosecond = 1000;
constexpr int durationLimit = 20;

long clampToLong(int64_t value) {
    constexpr int64_t least = std::numeric_limits<long>::min();
    constexpr int64_t most = std::numeric_limits<long>::max();
    return static_cast<long>(std::clamp(value, least, most));
}

void print(char* buf, int size, const char* format, ...) VXUT_PRINTF(3, 4);

void print(char* buf, int size, const char* format, ...) {
    if (buf == nullptr || size < 1)
        return;
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(buf, static_cast<std::size_t>(size), format, arguments);
    va_end(arguments);
}

struct ClockFields {
    long long hours;
    long minutes;
    long seconds;
    long microseconds;

    explicit ClockFields(int64_t ts)
        : hours(ts / microsecondsPerSecond / 3600),
          minutes(static_cast<long>(ts / microsecondsPerSecond / 60 % 60)),
          seconds(static_cast<long>(ts / microsecondsPerSecond % 60)),
          microseconds(static_cast<long>(ts % microsecondsPerSecond)) {}
};

// Splits `ts` into the local time of day and microseconds, rounding the seconds down. Returns false if the platform
// cannot represent the time.
bool timeOfDay(int64_t ts, tm* fields, long* microseconds) {
    int64_t seconds = ts / microsecondsPerSecond;
    *microseconds = static_cast<long>(ts % microsecondsPerSecond);
    if (*microseconds < 0) {
        *microseconds += microsecondsPerSecond;
        --seconds;
    }
    return clampToLong(seconds) == seconds && DateTime(seconds).toTM(fields) != nullptr;
}

} // namespace

int64_t TimeMeasure::getTimestamp() {
    timespec now = {};
    DateTime::ClockTime(&now);
    return timeStampFromParts(now.tv_sec, now.tv_nsec / nanosecondsPerMicrosecond);
}

long TimeMeasure::getSeconds(int64_t ts) {
    return clampToLong(ts / microsecondsPerSecond);
}

long TimeMeasure::getSubSeconds(int64_t ts) {
    return static_cast<long>(ts % microsecondsPerSecond);
}

int64_t TimeMeasure::timeStampFromParts(long sec, long usec) {
    int64_t product = 0;
    int64_t sum = 0;
    if (!__builtin_mul_overflow(static_cast<int64_t>(sec), int64_t{microsecondsPerSecond}, &product) &&
        !__builtin_add_overflow(product, static_cast<int64_t>(usec), &sum))
        return sum;
    return sec < 0 ? std::numeric_limits<int64_t>::min() : std::numeric_limits<int64_t>::max();
}

char* TimeMeasure::printDuration(int64_t ts, char* buf, int size) {
    const ClockFields fields(ts);
    print(buf, std::min(size, durationLimit), "%02lld:%02ld:%02ld.%06ld", fields.hours, fields.minutes, fields.seconds,
          fields.microseconds);
    return buf;
}

char* TimeMeasure::printDurationMillisec(int64_t ts, char* buf, int size) {
    const ClockFields fields(ts);
    print(buf, std::min(size, durationLimit), "%02lld:%02ld:%02ld.%03ld", fields.hours, fields.minutes, fields.seconds,
          fields.microseconds / microsecondsPerMillisecond);
    return buf;
}

char* TimeMeasure::printTimestamp(int64_t ts, char* buf, int size) {
    tm fields = {};
    long microseconds = 0;
    print(buf, size, "%s", "");
    if (!timeOfDay(ts, &fields, &microseconds))
        return buf;
    print(buf, size, "%02d:%02d:%02d.%06ld", fields.tm_hour, fields.tm_min, fields.tm_sec, microseconds);
    return buf;
}

char* TimeMeasure::printTimestampMillisec(int64_t ts, char* buf, int size) {
    tm fields = {};
    long microseconds = 0;
    print(buf, size, "%s", "");
    if (!timeOfDay(ts, &fields, &microseconds))
        return buf;
    print(buf, size, "%02d:%02d:%02d.%03ld", fields.tm_hour, fields.tm_min, fields.tm_sec,
          microseconds / microsecondsPerMillisecond);
    return buf;
}

} // namespace utility
