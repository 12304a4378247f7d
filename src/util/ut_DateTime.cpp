#include "ut_DateTime.h"

namespace utility {

const int DateTime::m_monthDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
const char* const DateTime::m_weekdayNames[7] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                 "Thursday", "Friday", "Saturday"};
const char* const DateTime::m_shortWeekdayNames[7] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
const char* const DateTime::m_monthNames[12] = {"January", "February", "March",     "April",   "May",      "June",
                                                "July",    "August",   "September", "October", "November", "December"};
const char* const DateTime::m_shortMonthNames[12] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
const char* const DateTime::DT_ErrorMessages[3] = {"No Error", "Invalid Time Zone", "Invalid Date"};

DateTime::DateTime(long t) : m_time(t) {}

void DateTime::ClockTime(timespec* time) {
    if (time != nullptr) clock_gettime(CLOCK_REALTIME, time);
}

} // namespace utility
