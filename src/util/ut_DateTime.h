#pragma once

#include "ut_Export.h"

#include <ctime>
#include <limits>
#include <type_traits>

namespace utility {

class PutStream;

/// A calendar time stamp with a resolution of one second, formatted in local time.
///
/// A plain value that owns no resources: the seconds since 1970-01-01 00:00:00 UTC. Threads may use different objects
/// at the same time, but not while a thread changes the time zone. Arithmetic saturates at the limits of `time_t`.
///
/// An invalid date throws code 3591 with "Invalid Date", unless an operation says otherwise. A date is invalid if the
/// platform cannot represent it. The platform reports that as −1, so 1969-12-31 23:59:59 UTC, the time −1, is invalid
/// too.
///
///     char text[32];
///     const utility::DateTime start("2024-03-05 09:07:03");
///     start.AddDays(1).ToShortBuf(text, sizeof text);   // text is "3/06/2024 09:07:03"
class VXUT_EXPORT DateTime {
public:
    /// The days of the week; Sunday is 0.
    enum Weekday : int { Sunday = 0, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday };
    /// The months; January is 0.
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

    /// The number of days of each month in a year that is not a leap year.
    static const int m_monthDays[12];
    /// The names of the weekdays, "Sunday" to "Saturday".
    static const char* const m_weekdayNames[7];
    /// The short names of the weekdays, "Sun" to "Sat".
    static const char* const m_shortWeekdayNames[7];
    /// The names of the months, "January" to "December".
    static const char* const m_monthNames[12];
    /// The short names of the months, "Jan" to "Dec".
    static const char* const m_shortMonthNames[12];
    /// The error messages: "No Error", "Invalid Time Zone" and "Invalid Date".
    static const char* const DT_ErrorMessages[3];

    /// Creates the time `t` seconds after the epoch.
    explicit DateTime(long t);
    /// Creates the time `t` seconds after the epoch, clamped to the range of `long`. With this overload, a literal 0 is
    /// a number, not a null pointer.
    template<typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    explicit DateTime(Integer t) : DateTime(toSeconds(t)) {}
    /// Creates a local date and time; `month` is 1 to 12. A value out of range carries into the next larger field. The
    /// platform decides whether daylight saving time applies. Throws code 3591.
    DateTime(int year, int month, int day, int hour, int minute, int second);
    /// Creates midnight at the start of a local date, with fields as in the constructor with a time. Throws code 3591.
    DateTime(int year, int month, int day);
    /// Creates the local time in `fields`, which `mktime` normalizes in place. Throws code 3591 if `fields` is null or
    /// the date is invalid.
    explicit DateTime(tm* fields);
    /// Parses a local time in one of two forms:
    /// - A text that contains a '-' has six fields: year, month (1 to 12), day, hour, minute and second, as `ToISOBuf`
    ///   writes them. '-' also separates fields.
    /// - Any other text has seven fields: weekday, month name, day, hour, minute, second and year, as `ctime` writes
    ///   them: "Tue Mar 5 09:07:03 2024". The weekday is ignored.
    ///
    /// Blanks, tabs and ':' separate fields. Only the first 128 bytes are read. A field that does not begin with a
    /// number is 0. A value out of range carries into the next larger field. Null and a text without fields give the
    /// epoch. Throws code 3591 if the number of fields is wrong, the month name is unknown or the date is invalid.
    ///
    /// Only the text of `ToISOBuf` can be parsed back. Other ISO 8601 texts are not supported, because 'T' does not
    /// separate fields and time zones are not parsed: "2024-03-05T09:07:03Z" has five fields and throws, but
    /// "2024-03-05T09:07:03+02:00" has six and gives 07:03:00. To parse such a text, first replace the 'T' with a blank
    /// and remove the time zone.
    explicit DateTime(const char* text);
    /// Does the same as `DateTime(text)`.
    static DateTime Parse(const char* text);
    /// Parses exactly the texts that `ToRFC822Buf` writes, in UTC, with names in upper or lower case. Null and the
    /// empty text give the epoch; the last second of 1969 gives `Invalid()`. Throws code 3591 for any other text, for a
    /// date that does not exist or that the platform cannot represent, and for a weekday that does not match the date.
    static DateTime fromRFC822(const char* text);
    /// Returns the invalid date: the value −1, which is formatted as the empty text.
    static DateTime Invalid();

    /// Returns the current time in whole seconds.
    static DateTime Now();
    /// Returns the current time of the clock with the id `clock`, as for `clock_gettime`, or `Invalid()` if the
    /// platform does not know that clock.
    static DateTime Now(int clock);
    /// Stores the current time of the real-time clock in `time`. Does nothing if `time` is null.
    static void ClockTime(timespec* time);
    /// Returns the local date of `date` with the local time of day of `time`. Throws code 3591.
    static DateTime Merge(DateTime date, DateTime time);

    /// Stores the local time in `fields`, as `localtime_r` does, and returns `fields`. If the platform cannot represent
    /// the time, sets all fields to 0 and returns null. Returns null if `fields` is null.
    tm* toTM(tm* fields) const;

    /// Returns this time plus `n` seconds.
    DateTime AddSeconds(long n) const;
    /// Returns this time plus `n` times 60 seconds.
    DateTime AddMinutes(long n) const;
    /// Returns this time plus `n` times 3,600 seconds.
    DateTime AddHours(long n) const;
    /// Returns this time plus `n` times 86,400 seconds. The local hour changes if daylight saving time begins or ends
    /// in between.
    DateTime AddDays(long n) const;
    /// Returns this time plus `n` times 7 days of 86,400 seconds, as `AddDays` does.
    DateTime AddWeeks(long n) const;
    /// Returns this time with `n` months added to the local date, or `Invalid()` if the platform cannot represent the
    /// result. A day that the month does not have carries into the next month: 31 January plus one month is 3 March, or
    /// 2 March in a leap year.
    DateTime AddMonths(long n) const;
    /// Returns this time with `n` years added to the local date, as `AddMonths` does.
    DateTime AddYears(long n) const;

    /// Returns the seconds from this time to `other`: positive if `other` is later. Clamped to 32 bits.
    int SecondsSpan(const DateTime& other) const;
    /// Returns the whole minutes from this time to `other`, rounded toward zero and clamped to 32 bits.
    int MinutesSpan(const DateTime& other) const;
    /// Returns the whole hours from this time to `other`, rounded toward zero and clamped to 32 bits.
    int HoursSpan(const DateTime& other) const;
    /// Returns the whole days of 86,400 seconds from this time to `other`, rounded toward zero and clamped to 32 bits.
    int DaysSpan(const DateTime& other) const;
    /// Returns the whole weeks from this time to `other`, rounded toward zero and clamped to 32 bits.
    int WeeksSpan(const DateTime& other) const;
    /// Returns the number of local calendar months from this time to `other`, clamped to 32 bits. Days do not count:
    /// from 31 January to 1 February is one month.
    int MonthsSpan(const DateTime& other) const;
    /// Returns the number of local calendar years from this time to `other`, clamped to 32 bits, in the same way.
    int YearsSpan(const DateTime& other) const;
    /// Returns the seconds from `other` to this time: negative if this time is earlier. Clamped to the range of `long`.
    long CompareTo(const DateTime& other) const;
    /// Returns whether both times are the same second.
    bool Equals(const DateTime& other) const;
    /// Returns `a` minus `b` in seconds, clamped to the range of `long`.
    static long DiffTime(const DateTime& a, const DateTime& b);

    /// Returns whether `year` is divisible by 4. Centuries are not an exception: callers rely on 1900 and 2100 being
    /// leap years.
    static bool isLeapYear(int year);
    /// Returns the number of days of `month` (0 to 11) in `year`, or 0 if `month` is out of range.
    static int DaysInMonth(int year, int month);
    /// Returns 366 if `isLeapYear(year)`, otherwise 365.
    static int DaysInYear(int year);

    /// Returns the English name of `weekday`, or null if it is out of range. The library owns the text.
    static const char* WeekdayName(Weekday weekday);
    /// Returns the English name of `weekday` in three letters, or null if it is out of range. The library owns the
    /// text.
    static const char* ShortWeekdayName(Weekday weekday);
    /// Returns the English name of `month`, or null if it is out of range. The library owns the text.
    static const char* MonthName(Month month);
    /// Returns the English name of `month` in three letters, or null if it is out of range. The library owns the text.
    static const char* ShortMonthName(Month month);
    /// Returns the weekday with the full or short English name `name`, ignoring case, or −1 for null and any other
    /// text.
    static Weekday WeekdayFromName(const char* name);
    /// Returns the month with the full or short English name `name`, ignoring case, or −1 for null and any other text.
    static Month MonthFromName(const char* name);

    /// Returns the local year; 0 if the platform cannot represent the time.
    int getYear() const;
    /// Returns the local month, from 0 for January; 0 if the platform cannot represent the time.
    Month getMonth() const;
    /// Returns the local day of the month, 1 to 31; 0 if the platform cannot represent the time.
    int getDayOfMonth() const;
    /// Returns the local weekday, from 0 for Sunday; 0 if the platform cannot represent the time.
    Weekday getDayOfWeek() const;
    /// Returns the local day of the year, 0 to 365; 0 if the platform cannot represent the time.
    int getDayOfYear() const;
    /// Returns the local hour, 0 to 23; 0 if the platform cannot represent the time.
    int getHour() const;
    /// Returns the minute of the local hour, 0 to 59; 0 if the platform cannot represent the time.
    int getMinute() const;
    /// Returns the second of the minute, 0 to 60; 0 if the platform cannot represent the time.
    int getSecond() const;
    /// Returns whether daylight saving time applies at this local time.
    bool isDST() const;
    /// Returns midnight at the start of this local day; `Invalid()` if the platform cannot represent it.
    DateTime getDate() const;
    /// Returns the first second of the next local minute; `Invalid()` if that is past the end of `time_t` or if the
    /// platform cannot represent this time.
    DateTime getNextMinute() const;
    /// Returns midnight at the start of the next local day; `Invalid()` if the platform cannot represent it.
    DateTime getNextDay() const;
    /// Returns the seconds since the epoch.
    time_t getTime() const {
        return m_time;
    }
    /// Returns false for `Invalid()`, and true for every other value.
    bool getEpochValid() const;

    /// Writes "Tuesday March 5, 2024, 09:07:03" to `buf` of `size` bytes, truncated and NUL-terminated, and returns
    /// `buf`. The text is empty for `Invalid()` and for a time that the platform cannot represent. Does nothing if
    /// `buf` is null or `size` is below 1. Never throws.
    char* ToBuf(char* buf, int size) const;
    /// Writes "2024-03-05 09:07:03", as `ToBuf` does.
    char* ToISOBuf(char* buf, int size) const;
    /// Writes "Tue, 05 Mar 2024 09:07:03 GMT", as `ToBuf` does, but in UTC; the names are English in every locale.
    /// Callers rely on `Invalid()` being written as the last second of 1969 rather than as the empty text.
    char* ToRFC822Buf(char* buf, int size) const;
    /// Writes "3/05/2024 09:07:03", as `ToBuf` does.
    char* ToShortBuf(char* buf, int size) const;
    /// Writes "3/05/2024", as `ToBuf` does.
    char* ToShortDateBuf(char* buf, int size) const;
    /// Writes "2024-03-05", as `ToBuf` does.
    char* ToISODateBuf(char* buf, int size) const;
    /// Writes "09:07:03", as `ToBuf` does.
    char* ToShortTimeBuf(char* buf, int size) const;

    /// Writes the text of `ToBuf` to `out`. If the text does not fit, it is truncated and code 1239 is thrown, or the
    /// failure is logged if the stream's no-throw flag is set, as in `PutStream::PutV`.
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

    /// Logs each member of `fields` at level 3. Does nothing if `fields` is null.
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
