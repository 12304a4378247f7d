#include "internal/ut_Deadline.h"

#include <algorithm>
#include <limits>

#include "ut_DateTime.h"

namespace utility {

namespace {

constexpr unsigned long long microsecondsPerSecond = 1000000;

time_t presentSecond() {
    timespec now = {};
    DateTime::ClockTime(&now);
    return now.tv_sec;
}

time_t later(time_t second, long long seconds) {
    const long long last = std::numeric_limits<time_t>::max();
    return static_cast<time_t>(second + std::clamp<long long>(seconds, -second, last - second));
}

} // namespace

timespec deadlineAfterSeconds(long seconds) {
    timespec deadline = {};
    deadline.tv_sec = later(presentSecond(), seconds);
    return deadline;
}

timespec deadlineAfterMicroseconds(unsigned long long microseconds) {
    timespec deadline = {};
    deadline.tv_sec = later(presentSecond(), static_cast<long long>(microseconds / microsecondsPerSecond));
    deadline.tv_nsec = static_cast<long>(microseconds % microsecondsPerSecond * 1000);
    return deadline;
}

} // namespace utility
