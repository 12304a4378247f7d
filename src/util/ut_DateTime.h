#pragma once

#include "ut_Export.h"

#include <ctime>
#include <limits>
#include <type_traits>

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
    template<typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    explicit DateTime(Integer t) : DateTime(toSeconds(t)) {}
    /// A local date and time, month 1 to 12. Fields outside their ranges carry over into the next larger ones; the
    /// platform decides on daylight saving. Throws code 3591.
    DateTime(int year, int month, int day, int hour, int minute, int second);
    /// The same at midnight.
    DateTime(int year, int month, int day);
    /// The local time in `fields`, which is brought into its ranges as `mktime` does and not kept. Throws code 3591,
    /// also for null.
    explicit DateTime(tm* fields);
    /// Reads a local time. A text with a '-' anywhere in it is year, month (1 to 12), day, hour, minute and second, as
    /// `ToISOBuf` writes them; any other is weekday, month name, day, hour, minute, second and year, as `ctime` does:
    /// "Tue Mar 5 09:07:03 2024". Of the texts written here only that of `ToISOBuf` is meant to be read back.
    /// Blanks, tabs, ':' and, in the first form, '-' separate the fields; only the first 128 bytes are read. A field
    /// that does not begin with a number counts as 0, and numbers outside their ranges carry over. The weekday is
    /// ignored. Null and a text without any field give the epoch. Another count of fields, an unknown month name and
    /// a date that the platform cannot express throw code 3591.
    /// The fields are only counted: 'T' joins two of them, and a time zone is not read. So "2024-03-05T09:07:03Z" has
    /// five fields and throws, but "2024-03-05T09:07:03+02:00" has six and gives 07:03:00. Before parsing other
    /// ISO 8601 texts, replace the 'T' with a blank and remove the zone.
    explicit DateTime(const char* text);
    /// The same as that constructor.
    static DateTime Parse(const char* text);
    /// Reads exactly what `ToRFC822Buf` writes, the names in any case, as UTC; so the instant before the epoch gives
    /// `Invalid()` back. Null and the empty text give the epoch. Any other text, a date that does not exist, a weekday
    /// that is another day's, and a date that the platform cannot express throw code 3591.
    static DateTime fromRFC822(const char* text);
    /// The invalid date: the value −1, shown as the empty text.
    static DateTime Invalid();

    /// The present time in whole seconds.
    static DateTime Now();
    /// The same on the clock with this id; a clock that the platform refuses is `Invalid()`.
    static DateTime Now(int clock);
    /// The present time of the system's real-time clock, which goes to `time`; null does nothing.
    static void ClockTime(timespec* time);
    /// The date of `date` with the time of day of `time`, both local. Throws code 3591.
    static DateTime Merge(DateTime date, DateTime time);

    /// Fills `fields`, which is the caller's, with the local time as `localtime_r` does. Returns `fields`, or null when
    /// it is null or the platform cannot express the time: then all fields are 0.
    tm* toTM(tm* fields) const;

    /// Move by plain seconds: a day added across a change to or from daylight saving moves the hour of the local time.
    /// The result stops at the first and last value of `time_t`.
    DateTime AddSeconds(long n) const;
    DateTime AddMinutes(long n) const;
    DateTime AddHours(long n) const;
    DateTime AddDays(long n) const;
    DateTime AddWeeks(long n) const;
    /// Move the month or the year of the local time. A day that the month does not have carries over: 31 January plus
    /// one month is 3 March, or 2 March in a leap year. `Invalid()` where the platform cannot express the result.
    DateTime AddMonths(long n) const;
    DateTime AddYears(long n) const;

    /// From this to `other`, positive when `other` is the later one: whole units, cut towards zero and clamped to 32
    /// bits.
    int SecondsSpan(const DateTime& other) const;
    int MinutesSpan(const DateTime& other) const;
    int HoursSpan(const DateTime& other) const;
    int DaysSpan(const DateTime& other) const;
    int WeeksSpan(const DateTime& other) const;
    /// The same by the local calendar, whatever the days: from 31 January to 1 February is one month.
    int MonthsSpan(const DateTime& other) const;
    int YearsSpan(const DateTime& other) const;
    /// Seconds from `other` to this: negative when this is earlier, clamped to the range of `long`.
    long CompareTo(const DateTime& other) const;
    bool Equals(const DateTime& other) const;
    /// `a` minus `b` in seconds, clamped to the range of `long`.
    static long DiffTime(const DateTime& a, const DateTime& b);

    /// Every fourth year, without a rule for centuries: callers count 1900 and 2100 as leap years.
    static bool isLeapYear(int year);
    /// Days of a month from 0 to 11; 0 for any other month.
    static int DaysInMonth(int year, int month);
    /// 366 or 365.
    static int DaysInYear(int year);

    /// The English name; null outside the enumeration.
    static const char* WeekdayName(Weekday weekday);
    static const char* ShortWeekdayName(Weekday weekday);
    static const char* MonthName(Month month);
    static const char* ShortMonthName(Month month);
    /// Find a full or short English name without regard to case; −1 for any other text and for null.
    static Weekday WeekdayFromName(const char* name);
    static Month MonthFromName(const char* name);

    /// The local time by parts, the day of the year from 0. All are 0 where the platform cannot express the time.
    int getYear() const;
    Month getMonth() const;
    int getDayOfMonth() const;
    Weekday getDayOfWeek() const;
    int getDayOfYear() const;
    int getHour() const;
    int getMinute() const;
    int getSecond() const;
    /// Whether daylight saving time is in force.
    bool isDST() const;
    /// The same day at midnight; `Invalid()` where the platform cannot express it.
    DateTime getDate() const;
    /// The first second of the next minute; `Invalid()` if it is past the end of `time_t` or the platform cannot
    /// express this time.
    DateTime getNextMinute() const;
    /// The next day at midnight; `Invalid()` where the platform cannot express it.
    DateTime getNextDay() const;
    /// The seconds since the epoch.
    time_t getTime() const {
        return m_time;
    }
    /// False for `Invalid()` only.
    bool getEpochValid() const;

    /// Write a text into the caller's `buf` of `size` bytes, cut to fit with its terminator, and return `buf`. A size
    /// below 1 or a null `buf` takes nothing. `Invalid()`, and a time that the platform cannot express, is the empty
    /// text. None throws. "Tuesday March 5, 2024, 09:07:03":
    char* ToBuf(char* buf, int size) const;
    /// "2024-03-05 09:07:03"
    char* ToISOBuf(char* buf, int size) const;
    /// "Tue, 05 Mar 2024 09:07:03 GMT", in UTC, with English names in every locale. `Invalid()` is written like any
    /// other time: callers see the last second of 1969.
    char* ToRFC822Buf(char* buf, int size) const;
    /// "3/05/2024 09:07:03"
    char* ToShortBuf(char* buf, int size) const;
    /// "3/05/2024"
    char* ToShortDateBuf(char* buf, int size) const;
    /// "2024-03-05"
    char* ToISODateBuf(char* buf, int size) const;
    /// "09:07:03"
    char* ToShortTimeBuf(char* buf, int size) const;

    /// Write the same texts to `out`. What does not fit is cut and throws code 1239, or with the stream's no-throw flag
    /// is cut and logged, as in `PutStream::PutV`.
    void ToBuffer(PutStream& out) const;
    void ToISOBuffer(PutStream& out) const;
    void ToRFC822Buffer(PutStream& out) const;
    void ToShortBuffer(PutStream& out) const;
    void ToShortDateBuffer(PutStream& out) const;
    void ToISODateBuffer(PutStream& out) const;
    void ToShortTimeBuffer(PutStream& out) const;

    /// Logs each of the `fields` at level 3; null logs nothing.
    static void dumpTM(tm* fields);

private:
    template<typename Integer>
    static long toSeconds(Integer t) {
        constexpr long earliest = std::numeric_limits<long>::min();
        constexpr long latest = std::numeric_limits<long>::max();
        if constexpr (std::is_signed_v<Integer>) {
            if (static_cast<long long>(t) < earliest)
                return earliest;
        }
        return t > 0 && static_cast<unsigned long long>(t) > latest ? latest : static_cast<long>(t);
    }

    time_t m_time;
};

} // namespace utility
