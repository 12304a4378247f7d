#pragma once

#include "ut_Export.h"

#include <ctime>
#include <limits>
#include <type_traits>

namespace utility {

class PutStream;

/// A calendar time stamp with a resolution of one second, formatted in local time.
///
/// A plain value, which owns nothing: the seconds since 1970-01-01 00:00:00 UTC. Threads may use different objects at
/// the same time, but not while one of them changes the time zone. Arithmetic saturates at the limits of `time_t`.
///
/// An invalid date throws code 3591 with "Invalid Date", unless an operation says otherwise. A date is invalid if the
/// platform cannot represent it. The platform reports that as −1, so 1969-12-31 23:59:59 UTC is invalid too.
///
///     char text[32];
///     const utility::DateTime start("2024-03-05 09:07:03");
///     start.AddDays(1).ToShortBuf(text, sizeof text);   // text is "3/06/2024 09:07:03"
class VXUT_EXPORT DateTime {
public:
    /// The days of the week, from 0.
    enum Weekday : int { Sunday = 0, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday };
    /// The months, from 0.
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

    /// The days of each month, in a year that is not a leap year.
    static const int m_monthDays[12];
    /// "Sunday" to "Saturday".
    static const char* const m_weekdayNames[7];
    /// "Sun" to "Sat".
    static const char* const m_shortWeekdayNames[7];
    /// "January" to "December".
    static const char* const m_monthNames[12];
    /// "Jan" to "Dec".
    static const char* const m_shortMonthNames[12];
    /// The error messages: "No Error", "Invalid Time Zone" and "Invalid Date".
    static const char* const DT_ErrorMessages[3];

    /// `t` seconds since the epoch.
    explicit DateTime(long t);
    /// `t` seconds since the epoch, clamped to the range of `long`. Makes a literal 0 a number, not a null pointer.
    template<typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    explicit DateTime(Integer t) : DateTime(toSeconds(t)) {}
    /// A local date and time, with month 1 to 12. Values out of range carry into the next larger field. The platform
    /// decides whether daylight saving applies. Throws code 3591.
    DateTime(int year, int month, int day, int hour, int minute, int second);
    /// Midnight at the start of a local date, with fields as in the constructor with a time. Throws code 3591.
    DateTime(int year, int month, int day);
    /// The local time `fields`, which `mktime` normalizes. Throws code 3591 if `fields` is null or the date is invalid.
    explicit DateTime(tm* fields);
    /// Parses a local time in one of two forms:
    /// - A text with a '-' anywhere has six fields: year, month (1 to 12), day, hour, minute and second, as `ToISOBuf`
    ///   writes them. '-' separates fields too.
    /// - Any other text has seven fields: weekday, month name, day, hour, minute, second and year, as `ctime` writes
    ///   them: "Tue Mar 5 09:07:03 2024". The weekday is ignored.
    ///
    /// Blanks, tabs and ':' separate fields. Only the first 128 bytes are read. A field that does not begin with a
    /// number is 0. Values out of range carry into the next larger field. Null and a text without fields are the epoch.
    /// Throws code 3591 if the number of fields is wrong, the month name is unknown or the date is invalid.
    ///
    /// Only the text of `ToISOBuf` can be parsed back. Other ISO 8601 texts are not supported, because 'T' does not
    /// separate fields and time zones are not parsed: "2024-03-05T09:07:03Z" has five fields and throws, but
    /// "2024-03-05T09:07:03+02:00" has six and gives 07:03:00. Replace the 'T' with a blank and remove the zone first.
    explicit DateTime(const char* text);
    /// The same as `DateTime(text)`.
    static DateTime Parse(const char* text);
    /// Parses exactly the texts that `ToRFC822Buf` writes, in UTC, with names in upper or lower case. Null and the
    /// empty text are the epoch. The last second of 1969 is `Invalid()`. Throws code 3591 for any other text, a date
    /// that does not exist, a wrong weekday, and a date that the platform cannot represent.
    static DateTime fromRFC822(const char* text);
    /// The invalid date: the value −1, formatted as the empty text.
    static DateTime Invalid();

    /// The current time in whole seconds.
    static DateTime Now();
    /// The current time of the clock with the id `clock`; `Invalid()` if the platform does not know the clock.
    static DateTime Now(int clock);
    /// Stores the current time of the real-time clock in `time`. Does nothing if `time` is null.
    static void ClockTime(timespec* time);
    /// Combines the local date of `date` and the local time of day of `time`. Throws code 3591.
    static DateTime Merge(DateTime date, DateTime time);

    /// Stores the local time in `fields`, as `localtime_r` does, and returns `fields`. If the platform cannot represent
    /// the time, sets all fields to 0 and returns null. Returns null if `fields` is null.
    tm* toTM(tm* fields) const;

    /// Adds `n` seconds.
    DateTime AddSeconds(long n) const;
    /// Adds `n` times 60 seconds.
    DateTime AddMinutes(long n) const;
    /// Adds `n` times 3,600 seconds.
    DateTime AddHours(long n) const;
    /// Adds `n` times 86,400 seconds: the local hour changes if daylight saving begins or ends in between.
    DateTime AddDays(long n) const;
    /// Adds `n` times 7 days of 86,400 seconds, as `AddDays` does.
    DateTime AddWeeks(long n) const;
    /// Adds `n` months to the local date. A day that the month does not have carries into the next month: 31 January
    /// plus one month is 3 March, or 2 March in a leap year. `Invalid()` if the platform cannot represent the result.
    DateTime AddMonths(long n) const;
    /// Adds `n` years to the local date, as `AddMonths` does.
    DateTime AddYears(long n) const;

    /// The seconds from this to `other`: positive if `other` is later. Clamped to 32 bits.
    int SecondsSpan(const DateTime& other) const;
    /// The whole minutes from this to `other`, rounded toward zero and clamped to 32 bits.
    int MinutesSpan(const DateTime& other) const;
    /// The whole hours from this to `other`, rounded toward zero and clamped to 32 bits.
    int HoursSpan(const DateTime& other) const;
    /// The whole days of 86,400 seconds from this to `other`, rounded toward zero and clamped to 32 bits.
    int DaysSpan(const DateTime& other) const;
    /// The whole weeks from this to `other`, rounded toward zero and clamped to 32 bits.
    int WeeksSpan(const DateTime& other) const;
    /// The difference of the local calendar months, clamped to 32 bits. Days do not count: from 31 January to 1
    /// February is one month.
    int MonthsSpan(const DateTime& other) const;
    /// The difference of the local calendar years, clamped to 32 bits.
    int YearsSpan(const DateTime& other) const;
    /// The seconds from `other` to this: negative if this is earlier. Clamped to the range of `long`.
    long CompareTo(const DateTime& other) const;
    /// Whether both are the same second.
    bool Equals(const DateTime& other) const;
    /// `a` minus `b` in seconds, clamped to the range of `long`.
    static long DiffTime(const DateTime& a, const DateTime& b);

    /// Whether `year` is divisible by 4. There is no rule for centuries: callers rely on 1900 and 2100 being leap
    /// years.
    static bool isLeapYear(int year);
    /// The days of `month`, 0 to 11; 0 if it is out of range.
    static int DaysInMonth(int year, int month);
    /// 366 for a leap year, as `isLeapYear` defines it, else 365.
    static int DaysInYear(int year);

    /// The English name; null if `weekday` is out of range.
    static const char* WeekdayName(Weekday weekday);
    /// The English name of three letters; null if `weekday` is out of range.
    static const char* ShortWeekdayName(Weekday weekday);
    /// The English name; null if `month` is out of range.
    static const char* MonthName(Month month);
    /// The English name of three letters; null if `month` is out of range.
    static const char* ShortMonthName(Month month);
    /// The weekday with this full or short English name, ignoring case; −1 for null and any other text.
    static Weekday WeekdayFromName(const char* name);
    /// The month with this full or short English name, ignoring case; −1 for null and any other text.
    static Month MonthFromName(const char* name);

    /// The local year; 0 if the platform cannot represent the time.
    int getYear() const;
    /// The local month; 0 if the platform cannot represent the time.
    Month getMonth() const;
    /// The local day of the month, 1 to 31; 0 if the platform cannot represent the time.
    int getDayOfMonth() const;
    /// The local weekday; 0 if the platform cannot represent the time.
    Weekday getDayOfWeek() const;
    /// The local day of the year, from 0; 0 if the platform cannot represent the time.
    int getDayOfYear() const;
    /// The local hour; 0 if the platform cannot represent the time.
    int getHour() const;
    /// The minute of the local hour; 0 if the platform cannot represent the time.
    int getMinute() const;
    /// The second of the minute; 0 if the platform cannot represent the time.
    int getSecond() const;
    /// Whether daylight saving time applies.
    bool isDST() const;
    /// Midnight at the start of this local day; `Invalid()` if the platform cannot represent it.
    DateTime getDate() const;
    /// The first second of the next local minute; `Invalid()` if it is past the end of `time_t` or the platform cannot
    /// represent this time.
    DateTime getNextMinute() const;
    /// Midnight at the start of the next local day; `Invalid()` if the platform cannot represent it.
    DateTime getNextDay() const;
    /// The seconds since the epoch.
    time_t getTime() const {
        return m_time;
    }
    /// False for `Invalid()` only.
    bool getEpochValid() const;

    /// Writes "Tuesday March 5, 2024, 09:07:03" to `buf` of `size` bytes, truncated and NUL-terminated, and returns
    /// `buf`. The text is empty for `Invalid()` and for a time that the platform cannot represent. Does nothing if
    /// `buf` is null or `size` is below 1. Never throws.
    char* ToBuf(char* buf, int size) const;
    /// Writes "2024-03-05 09:07:03", as `ToBuf` does.
    char* ToISOBuf(char* buf, int size) const;
    /// Writes "Tue, 05 Mar 2024 09:07:03 GMT", as `ToBuf` does, but in UTC; the names are English in every locale.
    /// Callers rely on `Invalid()` being written as the last second of 1969.
    char* ToRFC822Buf(char* buf, int size) const;
    /// Writes "3/05/2024 09:07:03", as `ToBuf` does.
    char* ToShortBuf(char* buf, int size) const;
    /// Writes "3/05/2024", as `ToBuf` does.
    char* ToShortDateBuf(char* buf, int size) const;
    /// Writes "2024-03-05", as `ToBuf` does.
    char* ToISODateBuf(char* buf, int size) const;
    /// Writes "09:07:03", as `ToBuf` does.
    char* ToShortTimeBuf(char* buf, int size) const;

    /// Writes the text of `ToBuf` to `out`. A text that does not fit is truncated, and throws code 1239 or, with the
    /// stream's no-throw flag, is logged, as in `PutStream::PutV`.
    void ToBuffer(PutStream& out) const;
    /// Writes the text of `ToISOBuf`, as `ToBuffer` does.
    void ToISOBuffer(PutStream& out) const;
    /// Writes the text of `ToRFC822Buf`, as `ToBuffer` does.
    void ToRFC822Buffer(PutStream& out) const;
    /// Writes the text of `ToShortBuf`, as `ToBuffer` does.
    void ToShortBuffer(PutStream& out) const;
    /// Writes the text of `ToShortDateBuf`, as `ToBuffer` does.
    void ToShortDateBuffer(PutStream& out) const;
    /// Writes the text of `ToISODateBuf`, as `ToBuffer` does.
    void ToISODateBuffer(PutStream& out) const;
    /// Writes the text of `ToShortTimeBuf`, as `ToBuffer` does.
    void ToShortTimeBuffer(PutStream& out) const;

    /// Logs each of the `fields` at level 3. Does nothing if `fields` is null.
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
