#pragma once

#include <ctime>
#include <type_traits>

#include "ut_Export.h"

namespace utility {

class PutStream;

/// A calendar time stamp with a resolution of one second, shown in local time in several fixed forms.
///
/// A plain value: seconds since 1970-01-01 00:00:00 UTC. It owns nothing and refers to nothing.
/// Different objects may be used by different threads at once; a thread that changes the time zone must be alone.
/// A date that the platform cannot express throws code 3591 with "Invalid Date". The platform reports that with −1, so
/// 1969-12-31 23:59:59 UTC counts as invalid wherever a date is composed. Arithmetic stops at the ends of `time_t`.
///
///     char text[32];
///     const utility::DateTime start("2024-03-05 09:07:03");
///     start.AddDays(1).ToShortBuf(text, sizeof text);   // text is "3/06/2024 09:07:03"
class VXUT_EXPORT DateTime {
public:
    enum Weekday : int { Sunday = 0, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday };
    enum Month : int {
        January = 0,
        February,
        March,
        April,
        May,
        June,
        July,
        August,
        September,
        October,
        November,
        December
    };

    /// Days in each month of a year that is no leap year.
    static const int m_monthDays[12];
    static const char* const m_weekdayNames[7];
    static const char* const m_shortWeekdayNames[7];
    static const char* const m_monthNames[12];
    static const char* const m_shortMonthNames[12];
    /// "No Error", "Invalid Time Zone" and "Invalid Date": the messages of failures.
    static const char* const DT_ErrorMessages[3];

    /// `t` seconds since the epoch.
    explicit DateTime(long t);
    /// The same for every other integer, so that a plain 0 is a number of seconds and no null pointer.
    template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    explicit DateTime(Integer t) : DateTime(static_cast<long>(t)) {}

    /// The present time of the system's real-time clock, which goes to `time`; null does nothing.
    static void ClockTime(timespec* time);

private:
    time_t m_time;
};

} // namespace utility
