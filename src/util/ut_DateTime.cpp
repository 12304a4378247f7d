#include "ut_DateTime.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "internal/ut_Failure.h"
#include "internal/ut_Trace.h"
#include "internal/ut_WholeText.h"
#include "ut_Misc.h"
#include "ut_PutStream.h"

// Throws "Invalid Date" from the current operation, in the name of its signature, unless `isValid`.
#define VXUT_REQUIRE_DATE(isValid)                                                                                     \
    do {                                                                                                               \
        if (!(isValid))                                                                                                \
            VXUT_THROW_FLAGGED(FAILURE_DATE, DT_ErrorMessages[2], false);                                              \
    } while (false)

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

namespace {

constexpr time_t invalidTime = -1;
constexpr int firstTmYear = 1900;
constexpr int monthsPerYear = 12;
constexpr int daysPerWeek = 7;
constexpr long secondsPerMinute = 60;
constexpr long secondsPerHour = 60 * secondsPerMinute;
constexpr long secondsPerDay = 24 * secondsPerHour;
constexpr long secondsPerWeek = 7 * secondsPerDay;
constexpr std::size_t longestTextRead = 128;
constexpr int mostTokens = 20;
constexpr int isoFieldCount = 6;     // year, month, day, hour, minute, second
constexpr int classicFieldCount = 7; // weekday, month name, day, hour, minute, second, year
constexpr std::size_t longestTextWritten = 128;

static_assert(sizeof(time_t) == sizeof(long), "a number of seconds is passed as long");

template<typename Narrow>
Narrow clampTo(long long value) {
    constexpr long long least = std::numeric_limits<Narrow>::min();
    constexpr long long most = std::numeric_limits<Narrow>::max();
    return static_cast<Narrow>(std::clamp(value, least, most));
}

// A date and time as it is written, with month 1 to 12.
struct WrittenFields {
    int year;
    int month;
    int day;
    int hour;
    int minute;
    int second;
};

// Sets the year and the month, counted from 0, in `fields`. Carries whole years from the month into the year first, so
// that nothing overflows. Returns false if the year does not fit.
bool setYearAndMonth(tm* fields, long long year, long long month) {
    const long long tmYear = year - firstTmYear + month / monthsPerYear;
    fields->tm_year = clampTo<int>(tmYear);
    fields->tm_mon = static_cast<int>(month % monthsPerYear);
    return fields->tm_year == tmYear;
}

// The seconds since the epoch; −1 if the platform cannot represent the time. The platform decides on daylight saving.
time_t localSeconds(tm* fields) {
    fields->tm_isdst = -1;
    return mktime(fields);
}

time_t localSeconds(const WrittenFields& written) {
    tm fields = {};
    if (!setYearAndMonth(&fields, written.year, written.month - 1LL))
        return invalidTime;
    fields.tm_mday = written.day;
    fields.tm_hour = written.hour;
    fields.tm_min = written.minute;
    fields.tm_sec = written.second;
    return localSeconds(&fields);
}

// Stores the local time in `fields`. Sets all fields to 0 and returns false if the platform cannot represent it, or if
// its year does not fit in an `int`.
bool localFields(time_t seconds, tm* fields) {
    if (localtime_r(&seconds, fields) != nullptr && fields->tm_year <= std::numeric_limits<int>::max() - firstTmYear)
        return true;
    *fields = tm();
    return false;
}

int yearOf(const tm& fields) {
    return fields.tm_year + firstTmYear;
}

int localField(time_t seconds, int tm::*field) {
    tm fields = {};
    localFields(seconds, &fields);
    return fields.*field;
}

// The months of the local calendar since January 1900.
long long monthNumber(time_t seconds) {
    tm fields = {};
    localFields(seconds, &fields);
    return static_cast<long long>(fields.tm_year) * monthsPerYear + fields.tm_mon;
}

// A text with a date, split into its fields.
class DateText {
public:
    explicit DateText(const char* text) : m_isISO(std::strchr(text, '-') != nullptr) {
        memccpy(m_text, text, 0, longestTextRead);
        m_count = Misc::parseTokens(m_fields, mostTokens, m_text, m_isISO ? " :-\t" : " :\t");
    }
    DateText(const DateText&) = delete;
    DateText& operator=(const DateText&) = delete;

    bool isEmpty() const {
        return m_count == 0;
    }
    // Whether the number of fields is right and the name of the month is known.
    bool isComplete() const {
        if (m_isISO)
            return m_count == isoFieldCount;
        return m_count == classicFieldCount && month() >= DateTime::January;
    }
    // The fields of a complete text.
    WrittenFields written() const {
        if (m_isISO)
            return {number(0), number(1), number(2), number(3), number(4), number(5)};
        return {number(6), month() + 1, number(2), number(3), number(4), number(5)};
    }

private:
    // Clamps the number to the range of `int`, on every platform.
    int number(int field) const {
        return clampTo<int>(std::strtoll(m_fields[field], nullptr, 10));
    }
    int month() const {
        return DateTime::MonthFromName(m_fields[1]);
    }

    bool m_isISO;
    int m_count = 0;
    char m_text[longestTextRead + 1] = {};
    char* m_fields[mostTokens] = {};
};

constexpr char isoForm[] = "0000-00-00 00:00:00";
constexpr std::size_t isoLength = sizeof isoForm - 1;
constexpr std::size_t isoDateLength = 10;
constexpr std::size_t isoTimeOffset = 11;

int twoDigits(const char* text) {
    return (text[0] - '0') * 10 + (text[1] - '0');
}

// Reads a text of exactly the form that `ToISOBuf` writes for the years 0 to 9999. Returns false for all others.
bool readISO(const char* text, WrittenFields* written) {
    // The comparison includes the NUL, and stops there if the text is shorter.
    for (std::size_t i = 0; i < sizeof isoForm; ++i) {
        if (isoForm[i] == '0' ? text[i] < '0' || text[i] > '9' : text[i] != isoForm[i])
            return false;
    }
    *written = {twoDigits(text) * 100 + twoDigits(text + 2),
                twoDigits(text + 5),
                twoDigits(text + 8),
                twoDigits(text + 11),
                twoDigits(text + 14),
                twoDigits(text + 17)};
    return true;
}

// The two digits of each number below 100.
struct DigitPairs {
    char pairs[100][2] = {};

    constexpr DigitPairs() {
        for (int number = 0; number < 100; ++number) {
            pairs[number][0] = static_cast<char>('0' + number / 10);
            pairs[number][1] = static_cast<char>('0' + number % 10);
        }
    }
};

constexpr DigitPairs digitPairs;

void setTwoDigits(char* text, int number) {
    std::memcpy(text, digitPairs.pairs[number], 2);
}

// Formats local time, without a terminating NUL. Returns false if the year has not four digits.
bool formatISO(const tm& fields, char (&text)[isoLength]) {
    const int year = yearOf(fields);
    if (year < 0 || year > 9999)
        return false;
    std::memcpy(text, isoForm, sizeof text);
    setTwoDigits(text, year / 100);
    setTwoDigits(text + 2, year % 100);
    setTwoDigits(text + 5, fields.tm_mon + 1);
    setTwoDigits(text + 8, fields.tm_mday);
    setTwoDigits(text + 11, fields.tm_hour);
    setTwoDigits(text + 14, fields.tm_min);
    setTwoDigits(text + 17, fields.tm_sec);
    return true;
}

// Independent of the locale, where `tolower` may map a letter of an English name differently.
char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalsWithoutCase(const char* a, const char* b) {
    for (; lowerAscii(*a) == lowerAscii(*b); ++a, ++b) {
        if (*a == 0)
            return true;
    }
    return false;
}

int indexOfName(const char* name, const char* const* names, const char* const* shortNames, int count) {
    if (name == nullptr)
        return -1;
    for (int i = 0; i < count; ++i) {
        if (equalsWithoutCase(name, names[i]) || equalsWithoutCase(name, shortNames[i]))
            return i;
    }
    return -1;
}

const char* nameAt(int index, const char* const* names, int count) {
    return index >= 0 && index < count ? names[index] : nullptr;
}

long long difference(time_t a, time_t b) {
    long long result = 0;
    if (!__builtin_sub_overflow(static_cast<long long>(a), static_cast<long long>(b), &result))
        return result;
    return a < b ? std::numeric_limits<long long>::min() : std::numeric_limits<long long>::max();
}

time_t shifted(time_t seconds, long n, long unit) {
    long long distance = 0;
    long long result = 0;
    if (__builtin_mul_overflow(static_cast<long long>(n), static_cast<long long>(unit), &distance) ||
        __builtin_add_overflow(static_cast<long long>(seconds), distance, &result))
        return n < 0 ? std::numeric_limits<time_t>::min() : std::numeric_limits<time_t>::max();
    return clampTo<time_t>(result);
}

time_t shiftedByMonths(time_t seconds, long long years, long long months) {
    tm fields = {};
    if (!localFields(seconds, &fields))
        return invalidTime;
    long long year = 0;
    if (__builtin_add_overflow(years, yearOf(fields), &year))
        return invalidTime;
    year += months / monthsPerYear;
    if (clampTo<int>(year) != year)
        return invalidTime;
    if (!setYearAndMonth(&fields, year, fields.tm_mon + months % monthsPerYear))
        return invalidTime;
    return localSeconds(&fields);
}

time_t midnight(time_t seconds, int daysLater) {
    tm fields = {};
    if (!localFields(seconds, &fields))
        return invalidTime;
    fields.tm_mday += daysLater;
    fields.tm_hour = 0;
    fields.tm_min = 0;
    fields.tm_sec = 0;
    return localSeconds(&fields);
}

time_t merged(time_t date, time_t time) {
    tm fields = {};
    tm timeOfDay = {};
    if (!localFields(date, &fields) || !localFields(time, &timeOfDay))
        return invalidTime;
    fields.tm_hour = timeOfDay.tm_hour;
    fields.tm_min = timeOfDay.tm_min;
    fields.tm_sec = timeOfDay.tm_sec;
    return localSeconds(&fields);
}

// The target of a formatted text: a caller's array or a stream.
class Destination {
public:
    Destination(char* buf, int size) : m_buf(buf), m_size(buf != nullptr ? std::max(size, 0) : 0), m_stream(nullptr) {}
    explicit Destination(PutStream& stream) : m_buf(nullptr), m_size(0), m_stream(&stream) {}

    void write(const char* format, ...) const VXUT_PRINTF(2, 3) {
        va_list arguments;
        va_start(arguments, format);
        writeList(format, arguments);
        va_end(arguments);
    }

    // Writes `length` bytes of `text`. Returns false and skips the write if `write` must show how they do not fit.
    bool writeWhole(const char* text, std::size_t length) const {
        if (m_stream != nullptr)
            return putWhole(*m_stream, text, length);
        if (static_cast<std::size_t>(m_size) <= length)
            return false;
        std::memcpy(m_buf, text, length);
        m_buf[length] = 0;
        return true;
    }

private:
    void writeList(const char* format, va_list arguments) const VXUT_PRINTF(2, 0) {
        if (m_stream != nullptr) {
            m_stream->PutV(format, arguments);
        } else {
            std::vsnprintf(m_size > 0 ? m_buf : nullptr, static_cast<std::size_t>(m_size), format, arguments);
        }
    }

    char* m_buf;
    int m_size;
    PutStream* m_stream;
};

// Stores the local time in `fields`. Writes the empty text and returns false if that fails.
bool beginText(time_t seconds, tm* fields, const Destination& destination) {
    if (seconds != invalidTime && localFields(seconds, fields))
        return true;
    destination.write("%s", "");
    return false;
}

void writeLong(time_t seconds, const Destination& destination) {
    tm fields = {};
    if (!beginText(seconds, &fields, destination))
        return;
    destination.write("%s %s %d, %04d, %02d:%02d:%02d", DateTime::m_weekdayNames[fields.tm_wday],
                      DateTime::m_monthNames[fields.tm_mon], fields.tm_mday, yearOf(fields), fields.tm_hour,
                      fields.tm_min, fields.tm_sec);
}

void writeISO(time_t seconds, const Destination& destination) {
    tm fields = {};
    if (!beginText(seconds, &fields, destination))
        return;
    char text[isoLength];
    if (formatISO(fields, text) && destination.writeWhole(text, isoLength))
        return;
    destination.write("%04d-%02d-%02d %02d:%02d:%02d", yearOf(fields), fields.tm_mon + 1, fields.tm_mday,
                      fields.tm_hour, fields.tm_min, fields.tm_sec);
}

// Uses the English names of the tables, as RFC 822 requires, not those of the locale.
void writeRFC822(time_t seconds, const Destination& destination) {
    tm fields = {};
    if (gmtime_r(&seconds, &fields) == nullptr) {
        destination.write("%s", "");
        return;
    }
    destination.write("%s, %02d %s %lld %02d:%02d:%02d GMT", DateTime::m_shortWeekdayNames[fields.tm_wday],
                      fields.tm_mday, DateTime::m_shortMonthNames[fields.tm_mon],
                      static_cast<long long>(fields.tm_year) + firstTmYear, fields.tm_hour, fields.tm_min,
                      fields.tm_sec);
}

// Parses leniently, then accepts the result only if formatting it gives the same text. That refuses dates that do not
// exist, other separators and trailing text.
bool readRFC822(const char* text, time_t* seconds) {
    tm fields = {};
    char month[4];
    long long year = 0;
    if (std::sscanf(text, "%*[^,], %2d %3s %11lld %2d:%2d:%2d", &fields.tm_mday, month, &year, &fields.tm_hour,
                    &fields.tm_min, &fields.tm_sec) != 6)
        return false;
    if (!setYearAndMonth(&fields, year, DateTime::MonthFromName(month)))
        return false;
    *seconds = timegm(&fields);
    char written[longestTextWritten];
    writeRFC822(*seconds, Destination(written, sizeof written));
    return equalsWithoutCase(text, written);
}

void writeShort(time_t seconds, const Destination& destination) {
    tm fields = {};
    if (!beginText(seconds, &fields, destination))
        return;
    destination.write("%d/%02d/%04d %02d:%02d:%02d", fields.tm_mon + 1, fields.tm_mday, yearOf(fields), fields.tm_hour,
                      fields.tm_min, fields.tm_sec);
}

void writeShortDate(time_t seconds, const Destination& destination) {
    tm fields = {};
    if (!beginText(seconds, &fields, destination))
        return;
    destination.write("%d/%02d/%04d", fields.tm_mon + 1, fields.tm_mday, yearOf(fields));
}

void writeISODate(time_t seconds, const Destination& destination) {
    tm fields = {};
    if (!beginText(seconds, &fields, destination))
        return;
    char text[isoLength];
    if (formatISO(fields, text) && destination.writeWhole(text, isoDateLength))
        return;
    destination.write("%04d-%02d-%02d", yearOf(fields), fields.tm_mon + 1, fields.tm_mday);
}

void writeShortTime(time_t seconds, const Destination& destination) {
    tm fields = {};
    if (!beginText(seconds, &fields, destination))
        return;
    char text[isoLength];
    if (formatISO(fields, text) && destination.writeWhole(text + isoTimeOffset, isoLength - isoTimeOffset))
        return;
    destination.write("%02d:%02d:%02d", fields.tm_hour, fields.tm_min, fields.tm_sec);
}

} // namespace

DateTime::DateTime(long t) : m_time(t) {}

DateTime::DateTime(int year, int month, int day, int hour, int minute, int second)
    : m_time(localSeconds({year, month, day, hour, minute, second})) {
    VXUT_REQUIRE_DATE(m_time != invalidTime);
}

DateTime::DateTime(int year, int month, int day) : m_time(localSeconds({year, month, day, 0, 0, 0})) {
    VXUT_REQUIRE_DATE(m_time != invalidTime);
}

DateTime::DateTime(tm* fields) : m_time(fields != nullptr ? mktime(fields) : invalidTime) {
    VXUT_REQUIRE_DATE(m_time != invalidTime);
}

DateTime::DateTime(const char* text) : m_time(0) {
    if (text == nullptr)
        return;
    WrittenFields written = {};
    if (!readISO(text, &written)) {
        const DateText fields(text);
        if (fields.isEmpty())
            return;
        VXUT_REQUIRE_DATE(fields.isComplete());
        written = fields.written();
    }
    VXUT_TRACE(TOKEN_DATE_TIME, "DateTime: Year %d Month %d Day %d Hour %d Minute %d Seconds %d", written.year,
               written.month, written.day, written.hour, written.minute, written.second);
    m_time = localSeconds(written);
    VXUT_REQUIRE_DATE(m_time != invalidTime);
}

DateTime DateTime::Parse(const char* text) {
    return DateTime(text);
}

DateTime DateTime::fromRFC822(const char* text) {
    time_t seconds = 0;
    if (text == nullptr || *text == 0)
        return DateTime(seconds);
    VXUT_REQUIRE_DATE(readRFC822(text, &seconds));
    return DateTime(seconds);
}

DateTime DateTime::Invalid() {
    return DateTime(invalidTime);
}

DateTime DateTime::Now() {
    return Now(CLOCK_REALTIME);
}

DateTime DateTime::Now(int clock) {
    timespec now = {};
    return clock_gettime(clock, &now) == 0 ? DateTime(now.tv_sec) : Invalid();
}

void DateTime::ClockTime(timespec* time) {
    if (time != nullptr)
        clock_gettime(CLOCK_REALTIME, time);
}

DateTime DateTime::Merge(DateTime date, DateTime time) {
    const time_t seconds = merged(date.m_time, time.m_time);
    VXUT_REQUIRE_DATE(seconds != invalidTime);
    return DateTime(seconds);
}

tm* DateTime::toTM(tm* fields) const {
    if (fields == nullptr)
        return nullptr;
    if (localtime_r(&m_time, fields) != nullptr)
        return fields;
    *fields = tm();
    return nullptr;
}

DateTime DateTime::AddSeconds(long n) const {
    return DateTime(shifted(m_time, n, 1));
}

DateTime DateTime::AddMinutes(long n) const {
    return DateTime(shifted(m_time, n, secondsPerMinute));
}

DateTime DateTime::AddHours(long n) const {
    return DateTime(shifted(m_time, n, secondsPerHour));
}

DateTime DateTime::AddDays(long n) const {
    return DateTime(shifted(m_time, n, secondsPerDay));
}

DateTime DateTime::AddWeeks(long n) const {
    return DateTime(shifted(m_time, n, secondsPerWeek));
}

DateTime DateTime::AddMonths(long n) const {
    return DateTime(shiftedByMonths(m_time, 0, n));
}

DateTime DateTime::AddYears(long n) const {
    return DateTime(shiftedByMonths(m_time, n, 0));
}

int DateTime::SecondsSpan(const DateTime& other) const {
    return clampTo<int>(difference(other.m_time, m_time));
}

int DateTime::MinutesSpan(const DateTime& other) const {
    return clampTo<int>(difference(other.m_time, m_time) / secondsPerMinute);
}

int DateTime::HoursSpan(const DateTime& other) const {
    return clampTo<int>(difference(other.m_time, m_time) / secondsPerHour);
}

int DateTime::DaysSpan(const DateTime& other) const {
    return clampTo<int>(difference(other.m_time, m_time) / secondsPerDay);
}

int DateTime::WeeksSpan(const DateTime& other) const {
    return clampTo<int>(difference(other.m_time, m_time) / secondsPerWeek);
}

int DateTime::MonthsSpan(const DateTime& other) const {
    return clampTo<int>(monthNumber(other.m_time) - monthNumber(m_time));
}

int DateTime::YearsSpan(const DateTime& other) const {
    return clampTo<int>(static_cast<long long>(other.getYear()) - getYear());
}

long DateTime::CompareTo(const DateTime& other) const {
    return DiffTime(*this, other);
}

bool DateTime::Equals(const DateTime& other) const {
    return m_time == other.m_time;
}

long DateTime::DiffTime(const DateTime& a, const DateTime& b) {
    return clampTo<long>(difference(a.m_time, b.m_time));
}

bool DateTime::isLeapYear(int year) {
    return year % 4 == 0;
}

int DateTime::DaysInMonth(int year, int month) {
    if (month < January || month > December)
        return 0;
    return month == February && isLeapYear(year) ? 29 : m_monthDays[month];
}

int DateTime::DaysInYear(int year) {
    return isLeapYear(year) ? 366 : 365;
}

const char* DateTime::WeekdayName(Weekday weekday) {
    return nameAt(weekday, m_weekdayNames, daysPerWeek);
}

const char* DateTime::ShortWeekdayName(Weekday weekday) {
    return nameAt(weekday, m_shortWeekdayNames, daysPerWeek);
}

const char* DateTime::MonthName(Month month) {
    return nameAt(month, m_monthNames, monthsPerYear);
}

const char* DateTime::ShortMonthName(Month month) {
    return nameAt(month, m_shortMonthNames, monthsPerYear);
}

DateTime::Weekday DateTime::WeekdayFromName(const char* name) {
    return static_cast<Weekday>(indexOfName(name, m_weekdayNames, m_shortWeekdayNames, daysPerWeek));
}

DateTime::Month DateTime::MonthFromName(const char* name) {
    return static_cast<Month>(indexOfName(name, m_monthNames, m_shortMonthNames, monthsPerYear));
}

int DateTime::getYear() const {
    tm fields = {};
    return localFields(m_time, &fields) ? yearOf(fields) : 0;
}

DateTime::Month DateTime::getMonth() const {
    return static_cast<Month>(localField(m_time, &tm::tm_mon));
}

int DateTime::getDayOfMonth() const {
    return localField(m_time, &tm::tm_mday);
}

DateTime::Weekday DateTime::getDayOfWeek() const {
    return static_cast<Weekday>(localField(m_time, &tm::tm_wday));
}

int DateTime::getDayOfYear() const {
    return localField(m_time, &tm::tm_yday);
}

int DateTime::getHour() const {
    return localField(m_time, &tm::tm_hour);
}

int DateTime::getMinute() const {
    return localField(m_time, &tm::tm_min);
}

int DateTime::getSecond() const {
    return localField(m_time, &tm::tm_sec);
}

bool DateTime::isDST() const {
    return localField(m_time, &tm::tm_isdst) > 0;
}

DateTime DateTime::getDate() const {
    return DateTime(midnight(m_time, 0));
}

DateTime DateTime::getNextMinute() const {
    tm fields = {};
    time_t next = 0;
    // Second 60 is a leap second, which belongs to this minute.
    if (!localFields(m_time, &fields) ||
        __builtin_add_overflow(m_time, secondsPerMinute - std::min(fields.tm_sec, 59), &next))
        return Invalid();
    return DateTime(next);
}

DateTime DateTime::getNextDay() const {
    return DateTime(midnight(m_time, 1));
}

bool DateTime::getEpochValid() const {
    return m_time != invalidTime;
}

char* DateTime::ToBuf(char* buf, int size) const {
    writeLong(m_time, Destination(buf, size));
    return buf;
}

char* DateTime::ToISOBuf(char* buf, int size) const {
    writeISO(m_time, Destination(buf, size));
    return buf;
}

char* DateTime::ToRFC822Buf(char* buf, int size) const {
    writeRFC822(m_time, Destination(buf, size));
    return buf;
}

char* DateTime::ToShortBuf(char* buf, int size) const {
    writeShort(m_time, Destination(buf, size));
    return buf;
}

char* DateTime::ToShortDateBuf(char* buf, int size) const {
    writeShortDate(m_time, Destination(buf, size));
    return buf;
}

char* DateTime::ToISODateBuf(char* buf, int size) const {
    writeISODate(m_time, Destination(buf, size));
    return buf;
}

char* DateTime::ToShortTimeBuf(char* buf, int size) const {
    writeShortTime(m_time, Destination(buf, size));
    return buf;
}

void DateTime::ToBuffer(PutStream& out) const {
    writeLong(m_time, Destination(out));
}

void DateTime::ToISOBuffer(PutStream& out) const {
    writeISO(m_time, Destination(out));
}

void DateTime::ToRFC822Buffer(PutStream& out) const {
    writeRFC822(m_time, Destination(out));
}

void DateTime::ToShortBuffer(PutStream& out) const {
    writeShort(m_time, Destination(out));
}

void DateTime::ToShortDateBuffer(PutStream& out) const {
    writeShortDate(m_time, Destination(out));
}

void DateTime::ToISODateBuffer(PutStream& out) const {
    writeISODate(m_time, Destination(out));
}

void DateTime::ToShortTimeBuffer(PutStream& out) const {
    writeShortTime(m_time, Destination(out));
}

void DateTime::dumpTM(tm* fields) {
    if (fields == nullptr)
        return;
    VXUT_LOG(framework::Logger::LOG_DEBUG, "tm.tm_year = %d", fields->tm_year);
    VXUT_LOG(framework::Logger::LOG_DEBUG, "tm.tm_mon = %d", fields->tm_mon);
    VXUT_LOG(framework::Logger::LOG_DEBUG, "tm.tm_mday = %d", fields->tm_mday);
    VXUT_LOG(framework::Logger::LOG_DEBUG, "tm.tm_hour = %d", fields->tm_hour);
    VXUT_LOG(framework::Logger::LOG_DEBUG, "tm.tm_min = %d", fields->tm_min);
    VXUT_LOG(framework::Logger::LOG_DEBUG, "tm.tm_sec = %d", fields->tm_sec);
    VXUT_LOG(framework::Logger::LOG_DEBUG, "tm.tm_wday = %d", fields->tm_wday);
    VXUT_LOG(framework::Logger::LOG_DEBUG, "tm.tm_yday = %d", fields->tm_yday);
    VXUT_LOG(framework::Logger::LOG_DEBUG, "tm.tm_isdst = %d", fields->tm_isdst);
}

} // namespace utility
