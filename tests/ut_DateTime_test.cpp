#include "ut_DateTime.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "GermanTimeLocale.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "TemporaryDirectory.h"
#include "TextLines.h"
#include "TimeZone.h"
#include "ut_Debug.h"
#include "ut_PutStream.h"

using framework::Logger;
using test::linesOf;
using utility::DateTime;
using utility::PutStream;

namespace {

constexpr const char* utcZone = "UTC0";
constexpr const char* newYorkZone = "EST5EDT,M3.2.0,M11.1.0";
constexpr const char* berlinZone = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr const char* kolkataZone = "IST-5:30";
constexpr const char* lordHoweZone = "LHST-10:30LHDT-11,M10.1.0,M4.1.0";

constexpr const char* fromSixName = "utility::DateTime::DateTime(int, int, int, int, int, int)";
constexpr const char* fromThreeName = "utility::DateTime::DateTime(int, int, int)";
constexpr const char* fromTmName = "utility::DateTime::DateTime(tm*)";
constexpr const char* fromTextName = "utility::DateTime::DateTime(const char*)";
constexpr const char* fromRfc822Name = "static utility::DateTime utility::DateTime::fromRFC822(const char*)";
constexpr const char* mergeName =
    "static utility::DateTime utility::DateTime::Merge(utility::DateTime, utility::DateTime)";

constexpr unsigned int debugSwitch = 348;
constexpr bool isTimeWide = sizeof(time_t) > 4;
constexpr time_t firstInstant = std::numeric_limits<time_t>::min();
constexpr time_t lastInstant = std::numeric_limits<time_t>::max();
// 2024-03-05 09:07:03 UTC
constexpr long exampleInstant = 1709629623;

typedef char* (DateTime::*Formatter)(char* buf, int size) const;
typedef void (DateTime::*StreamFormatter)(PutStream& out) const;

struct Form {
    Formatter toArray;
    StreamFormatter toStream;
    const char* example;
};

constexpr Form forms[] = {
    {&DateTime::ToBuf, &DateTime::ToBuffer, "Tuesday March 5, 2024, 09:07:03"},
    {&DateTime::ToISOBuf, &DateTime::ToISOBuffer, "2024-03-05 09:07:03"},
    {&DateTime::ToShortBuf, &DateTime::ToShortBuffer, "3/05/2024 09:07:03"},
    {&DateTime::ToShortDateBuf, &DateTime::ToShortDateBuffer, "3/05/2024"},
    {&DateTime::ToISODateBuf, &DateTime::ToISODateBuffer, "2024-03-05"},
    {&DateTime::ToShortTimeBuf, &DateTime::ToShortTimeBuffer, "09:07:03"},
    {&DateTime::ToRFC822Buf, &DateTime::ToRFC822Buffer, "Tue, 05 Mar 2024 09:07:03 GMT"},
};

std::string textOf(const DateTime& when, Formatter formatter) {
    char text[128];
    std::memset(text, '#', sizeof text);
    EXPECT_EQ((when.*formatter)(text, sizeof text), text);
    return text;
}

std::string isoOf(const DateTime& when) {
    return textOf(when, &DateTime::ToISOBuf);
}

std::string classicTextOf(const DateTime& when) {
    tm fields = {};
    char text[128];
    when.toTM(&fields);
    std::strftime(text, sizeof text, "%a %b %e %H:%M:%S %Y", &fields);
    return text;
}

// Local texts do not distinguish the two passes of the hour that is repeated when clocks are set back.
bool isShownTwice(time_t seconds) {
    const DateTime when(seconds);
    const std::string text = isoOf(when);
    for (const long step : {1800L, 3600L}) {
        if (isoOf(when.AddSeconds(step)) == text || isoOf(when.AddSeconds(-step)) == text)
            return true;
    }
    return false;
}

// Instants across the range of a 32-bit `time_t` and, if it is wider, across the years 1000 to 9999.
std::vector<time_t> randomInstants(unsigned int count) {
    std::mt19937_64 random(20240305);
    std::uniform_int_distribution<long long> narrow(INT32_MIN, INT32_MAX);
    std::uniform_int_distribution<long long> wide(-30600000000LL, 253400000000LL);
    std::vector<time_t> instants;
    while (instants.size() < count) {
        const bool isWide = isTimeWide && instants.size() % 2 == 1;
        const time_t instant = static_cast<time_t>(isWide ? wide(random) : narrow(random));
        if (instant != -1)
            instants.push_back(instant);
    }
    return instants;
}

// The output of `date` for each line of `input` in the time zone `zone`.
std::vector<std::string> askDate(const std::string& input, const char* zone, const std::string& format) {
    const test::TemporaryDirectory directory;
    const std::string in = directory.write("in", input);
    const std::string command = "TZ='" + std::string(zone) + "' LC_ALL=C date -f - '+" + format + "' < '" + in +
                                "' > '" + directory.path("out") + "'";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
    return linesOf(directory.read("out"));
}

class DateTimeZones : public testing::TestWithParam<const char*> {};

std::string zoneName(const testing::TestParamInfo<const char*>& info) {
    const std::string zone = info.param;
    return zone.substr(0, zone.find_first_of("0123456789-"));
}

INSTANTIATE_TEST_SUITE_P(Five, DateTimeZones,
                         testing::Values(utcZone, newYorkZone, berlinZone, kolkataZone, lordHoweZone), zoneName);

TEST(DateTime, UsageExample) {
    const test::TimeZone zone(berlinZone);
    char text[32];
    const utility::DateTime start("2024-03-05 09:07:03");
    start.AddDays(1).ToShortBuf(text, sizeof text); // text is "3/06/2024 09:07:03"
    EXPECT_STREQ(text, "3/06/2024 09:07:03");
}

// Construction

TEST(DateTime, StoresSeconds) {
    EXPECT_EQ(DateTime(exampleInstant).getTime(), exampleInstant);
    EXPECT_EQ(DateTime(0L).getTime(), 0);
    EXPECT_EQ(DateTime(lastInstant).getTime(), lastInstant);
    EXPECT_EQ(DateTime(firstInstant).getTime(), firstInstant);
}

TEST(DateTime, AcceptsAnyIntegerAsSecondsEvenALiteralZero) {
    EXPECT_EQ(DateTime(0).getTime(), 0);
    EXPECT_EQ(DateTime(0U).getTime(), 0);
    EXPECT_EQ(DateTime(12345LL).getTime(), 12345);
    EXPECT_EQ(DateTime(static_cast<short>(-7)).getTime(), -7);
}

TEST(DateTime, InvalidIsMinusOne) {
    EXPECT_EQ(DateTime::Invalid().getTime(), -1);
    EXPECT_FALSE(DateTime::Invalid().getEpochValid());
    EXPECT_FALSE(DateTime(-1).getEpochValid());
    EXPECT_TRUE(DateTime(0).getEpochValid());
    EXPECT_TRUE(DateTime(-2).getEpochValid());
}

TEST(DateTime, ConvertsFieldsFromLocalTime) {
    const test::TimeZone zone(newYorkZone);
    EXPECT_EQ(DateTime(2024, 3, 5, 4, 7, 3).getTime(), exampleInstant);
    EXPECT_EQ(DateTime(2024, 7, 1, 0, 0, 0).getTime(), 1719806400);
    EXPECT_EQ(DateTime(2024, 7, 1).getTime(), 1719806400);
    EXPECT_EQ(DateTime(1969, 12, 31, 19, 0, 0).getTime(), 0);
}

TEST(DateTime, FieldsOutOfRangeCarry) {
    const test::TimeZone zone(utcZone);
    EXPECT_EQ(isoOf(DateTime(2023, 2, 29)), "2023-03-01 00:00:00");
    EXPECT_EQ(isoOf(DateTime(2023, 13, 1)), "2024-01-01 00:00:00");
    EXPECT_EQ(isoOf(DateTime(2024, 0, 1)), "2023-12-01 00:00:00");
    EXPECT_EQ(isoOf(DateTime(2024, -12, 1)), "2022-12-01 00:00:00");
    EXPECT_EQ(isoOf(DateTime(2024, 1, 0)), "2023-12-31 00:00:00");
    EXPECT_EQ(isoOf(DateTime(2024, 3, 5, 24, 60, 60)), "2024-03-06 01:01:00");
    EXPECT_EQ(isoOf(DateTime(2024, 3, 5, -1, -1, -1)), "2024-03-04 22:58:59");
}

TEST(DateTime, OneSecondBeforeTheEpochIsInvalid) {
    const test::TimeZone zone(utcZone);
    EXPECT_FAILURE_WITH_FLAG(DateTime(1969, 12, 31, 23, 59, 59), 3591, "ut_DateTime", fromSixName, "Invalid Date",
                             false);
    EXPECT_FAILURE_WITH_FLAG(DateTime("1969-12-31 23:59:59"), 3591, "ut_DateTime", fromTextName, "Invalid Date", false);
    EXPECT_EQ(DateTime(1969, 12, 31, 23, 59, 58).getTime(), -2);
    EXPECT_EQ(DateTime(1970, 1, 1, 0, 0, 0).getTime(), 0);
}

TEST(DateTime, YearsThatNoPlatformRepresentsThrow) {
    const test::TimeZone zone(utcZone);
    EXPECT_FAILURE_WITH_FLAG(DateTime(INT_MIN, 1, 1, 0, 0, 0), 3591, "ut_DateTime", fromSixName, "Invalid Date", false);
    EXPECT_FAILURE_WITH_FLAG(DateTime(INT_MIN, 1, 1), 3591, "ut_DateTime", fromThreeName, "Invalid Date", false);
    EXPECT_FAILURE_WITH_FLAG(DateTime(INT_MIN, INT_MIN, INT_MIN), 3591, "ut_DateTime", fromThreeName, "Invalid Date",
                             false);
}

TEST(DateTime, ExtremeFieldsCarryOrThrow) {
    const test::TimeZone zone(utcZone);
    for (const int value : {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX}) {
        for (int place = 0; place < 6; ++place) {
            int fields[6] = {2024, 3, 5, 9, 7, 3};
            fields[place] = value;
            const auto failure = CATCH_FAILURE(
                EXPECT_NE(DateTime(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5]).getTime(), -1));
            if (failure != nullptr) {
                EXPECT_TRUE(test::isFailure(failure.get(), 3591, "ut_DateTime", fromSixName, "Invalid Date", false));
            }
        }
    }
    EXPECT_EQ(DateTime(2024, 3, 5, 9, 7, INT_MIN + 10).getTime(), exampleInstant - 3 + INT_MIN + 10);
}

TEST(DateTime, LimitsOf32BitTime) {
    const test::TimeZone zone(utcZone);
    EXPECT_EQ(DateTime(2038, 1, 19, 3, 14, 7).getTime(), INT32_MAX);
    EXPECT_EQ(DateTime(1901, 12, 13, 20, 45, 52).getTime(), INT32_MIN);
    EXPECT_EQ(isoOf(DateTime(INT32_MAX)), "2038-01-19 03:14:07");
    EXPECT_EQ(isoOf(DateTime(INT32_MIN)), "1901-12-13 20:45:52");
    EXPECT_EQ(textOf(DateTime(INT32_MAX), &DateTime::ToRFC822Buf), "Tue, 19 Jan 2038 03:14:07 GMT");
    EXPECT_EQ(textOf(DateTime(INT32_MIN), &DateTime::ToRFC822Buf), "Fri, 13 Dec 1901 20:45:52 GMT");
    EXPECT_EQ(DateTime::fromRFC822("Tue, 19 Jan 2038 03:14:07 GMT").getTime(), INT32_MAX);
    EXPECT_EQ(DateTime::fromRFC822("Fri, 13 Dec 1901 20:45:52 GMT").getTime(), INT32_MIN);
    EXPECT_EQ(DateTime("2038-01-19 03:14:07").getTime(), INT32_MAX);
    EXPECT_EQ(DateTime("1901-12-13 20:45:52").getTime(), INT32_MIN);
}

TEST(DateTime, DatesPastTheLimitsOf32BitTimeThrowIfTimeHas32Bits) {
    const test::TimeZone zone(utcZone);
    if (isTimeWide) {
        EXPECT_EQ(DateTime(2038, 1, 19, 3, 14, 8).getTime() - INT32_MAX, 1);
        EXPECT_EQ(DateTime(1901, 12, 13, 20, 45, 51).getTime() - INT32_MIN, -1);
        EXPECT_EQ(DateTime::fromRFC822("Tue, 19 Jan 2038 03:14:08 GMT").getTime() - INT32_MAX, 1);
        EXPECT_EQ(isoOf(DateTime(INT32_MAX).AddSeconds(1)), "2038-01-19 03:14:08");
        return;
    }
    EXPECT_FAILURE_WITH_FLAG(DateTime(2038, 1, 19, 3, 14, 8), 3591, "ut_DateTime", fromSixName, "Invalid Date", false);
    EXPECT_FAILURE_WITH_FLAG(DateTime(1901, 12, 13), 3591, "ut_DateTime", fromThreeName, "Invalid Date", false);
    EXPECT_FAILURE_WITH_FLAG(DateTime("2038-01-19 03:14:08"), 3591, "ut_DateTime", fromTextName, "Invalid Date", false);
    EXPECT_FAILURE_WITH_FLAG(DateTime::fromRFC822("Tue, 19 Jan 2038 03:14:08 GMT"), 3591, "ut_DateTime", fromRfc822Name,
                             "Invalid Date", false);
    EXPECT_EQ(DateTime(lastInstant).AddSeconds(1).getTime(), lastInstant);
}

TEST(DateTime, ConvertsAndNormalizesATmStructure) {
    const test::TimeZone zone(berlinZone);
    tm fields = {};
    fields.tm_year = 124;
    fields.tm_mon = 1;
    fields.tm_mday = 34;
    fields.tm_hour = 10;
    fields.tm_min = 7;
    fields.tm_sec = 3;
    EXPECT_EQ(DateTime(&fields).getTime(), exampleInstant);
    EXPECT_EQ(fields.tm_mon, 2);
    EXPECT_EQ(fields.tm_mday, 5);
    EXPECT_EQ(fields.tm_wday, 2);
}

TEST(DateTime, TmStructureDecidesOnDaylightSaving) {
    const test::TimeZone zone(berlinZone);
    tm summer = {};
    summer.tm_year = 124;
    summer.tm_mon = 2;
    summer.tm_mday = 5;
    summer.tm_hour = 11;
    summer.tm_min = 7;
    summer.tm_sec = 3;
    summer.tm_isdst = 1;
    EXPECT_EQ(DateTime(&summer).getTime(), exampleInstant);
}

TEST(DateTime, InvalidTmStructureThrows) {
    const test::TimeZone zone(utcZone);
    tm fields = {};
    fields.tm_year = 69;
    fields.tm_mon = 11;
    fields.tm_mday = 31;
    fields.tm_hour = 23;
    fields.tm_min = 59;
    fields.tm_sec = 59;
    EXPECT_FAILURE_WITH_FLAG(DateTime{&fields}, 3591, "ut_DateTime", fromTmName, "Invalid Date", false);
    EXPECT_FAILURE_WITH_FLAG(DateTime(static_cast<tm*>(nullptr)), 3591, "ut_DateTime", fromTmName, "Invalid Date",
                             false);
}

TEST(DateTime, NowIsTheRealTimeClock) {
    timespec before = {};
    timespec after = {};
    DateTime::ClockTime(&before);
    const DateTime now = DateTime::Now();
    const DateTime byId = DateTime::Now(CLOCK_REALTIME);
    clock_gettime(CLOCK_REALTIME, &after);
    EXPECT_GT(before.tv_sec, exampleInstant);
    EXPECT_LE(before.tv_sec, now.getTime());
    EXPECT_LE(now.getTime(), byId.getTime());
    EXPECT_LE(byId.getTime(), after.tv_sec);
    EXPECT_GE(before.tv_nsec, 0);
    EXPECT_LT(before.tv_nsec, 1000000000);
    DateTime::ClockTime(nullptr);
}

TEST(DateTime, NowReadsAnyClock) {
    timespec before = {};
    timespec after = {};
    clock_gettime(CLOCK_MONOTONIC, &before);
    const DateTime now = DateTime::Now(CLOCK_MONOTONIC);
    clock_gettime(CLOCK_MONOTONIC, &after);
    EXPECT_LE(before.tv_sec, now.getTime());
    EXPECT_LE(now.getTime(), after.tv_sec);
    EXPECT_FALSE(DateTime::Now(12345).getEpochValid());
}

// Texts

TEST(DateTime, ParsesTheIsoForm) {
    const test::TimeZone zone(utcZone);
    EXPECT_EQ(DateTime("2024-03-05 09:07:03").getTime(), exampleInstant);
    EXPECT_EQ(DateTime::Parse("2024-03-05 09:07:03").getTime(), exampleInstant);
    EXPECT_EQ(DateTime("2024-3-5 9:7:3").getTime(), exampleInstant);
    EXPECT_EQ(DateTime(" \t2024--03 05\t09-07 03: ").getTime(), exampleInstant);
}

TEST(DateTime, ParsesTheClassicForm) {
    const test::TimeZone zone(utcZone);
    EXPECT_EQ(DateTime("Tue Mar 5 09:07:03 2024").getTime(), exampleInstant);
    EXPECT_EQ(DateTime("Tue Mar  5 09:07:03 2024").getTime(), exampleInstant);
    EXPECT_EQ(DateTime("tuesday MARCH 05 09:07:03 2024").getTime(), exampleInstant);
    EXPECT_EQ(DateTime("anything mar 5 9 7 3\t2024").getTime(), exampleInstant);
}

TEST(DateTime, TextsWithoutFieldsAreTheEpoch) {
    for (const char* text : {"", " ", ":", "-", "\t", " :\t: ", " - : -\t"})
        EXPECT_EQ(DateTime(text).getTime(), 0) << text;
    EXPECT_EQ(DateTime(static_cast<const char*>(nullptr)).getTime(), 0);
    EXPECT_EQ(DateTime::Parse(nullptr).getTime(), 0);
}

TEST(DateTime, WrongNumberOfFieldsThrows) {
    for (const char* text : {"2024-03-05 09:07", "2024-03-05 09:07:03 1", "2024-03-05", "-1", "Tue Mar 5 09:07:03",
                             "Tue Mar 5 09:07:03 2024 CET", "Tue", "2024/03/05 09:07:03", "3/05/2024 09:07:03",
                             "09:07:03", "2024_03_05", "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22",
                             "1-2-3-4-5-6-7-8-9-10-11-12-13-14-15-16-17-18-19-20-21-22"})
        EXPECT_FAILURE_WITH_FLAG(DateTime{text}, 3591, "ut_DateTime", fromTextName, "Invalid Date", false);
    EXPECT_FAILURE_WITH_FLAG(DateTime::Parse("2024-03-05"), 3591, "ut_DateTime", fromTextName, "Invalid Date", false);
}

TEST(DateTime, UnknownMonthNameThrows) {
    for (const char* text : {"Tue Mrz 5 09:07:03 2024", "Tue 3 5 09:07:03 2024", "Tue Ma 5 09:07:03 2024",
                             "Tue Marc 5 09:07:03 2024", "Tue M\xE4r 5 09:07:03 2024"})
        EXPECT_FAILURE_WITH_FLAG(DateTime{text}, 3591, "ut_DateTime", fromTextName, "Invalid Date", false);
}

TEST(DateTime, DashAnywhereSelectsTheIsoForm) {
    const test::TimeZone zone(utcZone);
    EXPECT_FAILURE_WITH_FLAG(DateTime("Tue Mar 5 09:07:03 2024 -"), 3591, "ut_DateTime", fromTextName, "Invalid Date",
                             false);
    EXPECT_EQ(DateTime("2024 03 05 09 07 03-").getTime(), exampleInstant);
    // Even after the bytes that are read.
    const std::string dashAfterTheLimit = "2024 03 05 09 07 03" + std::string(200, ' ') + "-";
    EXPECT_EQ(DateTime(dashAfterTheLimit.c_str()).getTime(), exampleInstant);
}

TEST(DateTime, FieldsWithoutNumbersAreZeroAndNumbersCarry) {
    const test::TimeZone zone(utcZone);
    EXPECT_EQ(isoOf(DateTime("2024-03-05 xx:yy:zz")), "2024-03-05 00:00:00");
    EXPECT_EQ(isoOf(DateTime("2024-03-05T 09:07:03Z")), "2024-03-05 09:07:03");
    EXPECT_EQ(isoOf(DateTime("2023-14-30 25:61:61")), "2024-03-02 02:02:01");
    EXPECT_EQ(isoOf(DateTime("2024-00-00 00:00:00")), "2023-11-30 00:00:00");
}

TEST(DateTime, LetterTJoinsTwoFieldsAndZonesAreNotParsed) {
    const test::TimeZone zone(utcZone);
    for (const char* text :
         {"2024-03-05T09:07:03", "2024-03-05T09:07:03Z", "2024-03-05 09:07:03+02:00", "2024-03-05 09:07:03-02",
          "2024-03-05 09:07:03 UTC", "Tue, 05 Mar 2024 09:07:03 GMT", "Tue Mar 5 09:07:03 UTC 2024"})
        EXPECT_FAILURE_WITH_FLAG(DateTime{text}, 3591, "ut_DateTime", fromTextName, "Invalid Date", false);
    // The hour is part of the day field, so a zone supplies the sixth field.
    EXPECT_EQ(isoOf(DateTime("2024-03-05T09:07:03+02:00")), "2024-03-05 07:03:00");
    EXPECT_EQ(isoOf(DateTime("2024-03-05T09:07:03-02")), "2024-03-05 07:03:02");
    EXPECT_EQ(isoOf(DateTime("2024-03-05 09:07:03Z")), "2024-03-05 09:07:03");
    EXPECT_EQ(isoOf(DateTime("2024-03-05 09:07:03+0200")), "2024-03-05 09:07:03");
}

TEST(DateTime, NumbersOutOfRangeAreClamped) {
    const test::TimeZone zone(utcZone);
    const char* const far = "Tue Mar 5 09:07:03 +99999999999999999999999999";
    if (isTimeWide)
        EXPECT_EQ(DateTime(far).getYear(), INT_MAX);
    else
        EXPECT_FAILURE_WITH_FLAG(DateTime{far}, 3591, "ut_DateTime", fromTextName, "Invalid Date", false);
    EXPECT_EQ(DateTime("1970-01-01 00:00:99999999999999999999999999").getTime(), INT_MAX);
}

TEST(DateTime, OnlyTheFirst128BytesAreRead) {
    const test::TimeZone zone(utcZone);
    const std::string iso = "2024-03-05 09:07:03";
    const std::string padding(128 - iso.size(), ' ');
    EXPECT_EQ(DateTime((padding + iso).c_str()).getTime(), exampleInstant);
    EXPECT_EQ(DateTime((padding + iso + " 9").c_str()).getTime(), exampleInstant);
    EXPECT_EQ(DateTime((padding + " " + iso).c_str()).getTime(), exampleInstant - 3);
    EXPECT_EQ(DateTime((iso + std::string(100000, ' ') + "junk").c_str()).getTime(), exampleInstant);
    EXPECT_EQ(DateTime(std::string(100000, ' ').c_str()).getTime(), 0);
    EXPECT_EQ(DateTime((std::string(128, ' ') + "junk-").c_str()).getTime(), 0);
    EXPECT_FAILURE_WITH_FLAG(DateTime(std::string(100000, '9').c_str()), 3591, "ut_DateTime", fromTextName,
                             "Invalid Date", false);
    EXPECT_FAILURE_WITH_FLAG(DateTime(std::string(100000, '\xFF').c_str()), 3591, "ut_DateTime", fromTextName,
                             "Invalid Date", false);
}

TEST(DateTime, InvalidBytesThrow) {
    for (const char* text : {"\xFF\xFE",
                             "2024\xE2\x80\x93"
                             "03\xE2\x80\x93"
                             "05 09:07:03",
                             "\x01\x02\x03", "2024-03-05\n09:07:03", "2024-03-05\v09\f07\r03"})
        EXPECT_FAILURE_WITH_FLAG(DateTime{text}, 3591, "ut_DateTime", fromTextName, "Invalid Date", false);
}

TEST(DateTime, DoesNotModifyItsText) {
    const test::TimeZone zone(utcZone);
    char text[] = "2024-03-05 09:07:03";
    EXPECT_EQ(DateTime(static_cast<const char*>(text)).getTime(), exampleInstant);
    EXPECT_STREQ(text, "2024-03-05 09:07:03");
}

TEST(DateTime, ParsingIsTracedIfItsSwitchIsOn) {
    const test::TimeZone zone(utcZone);
    test::LogCapture log;
    DateTime("2024-03-05 09:07:03");
    EXPECT_EQ(log.count(), 0U);
    utility::Debug::setDebugOn(debugSwitch);
    DateTime("2024-03-05 09:07:03");
    DateTime("Tue Mar 5 09:07:03 2024");
    CATCH_FAILURE(DateTime("1969-12-31 23:59:59"));
    DateTime("");
    CATCH_FAILURE(DateTime("2024-03-05"));
    utility::Debug::setDebugOff(debugSwitch);
    const char* const traced = "DateTime: Year 2024 Month 3 Day 5 Hour 9 Minute 7 Seconds 3";
    EXPECT_THAT(log.texts(), testing::ElementsAre(traced, traced,
                                                  "DateTime: Year 1969 Month 12 Day 31 Hour 23 Minute 59 Seconds 59"));
    EXPECT_TRUE(log.contains(Logger::LOG_DEBUG, fromTextName, traced));
}

TEST(DateTime, ParsesRfc822TextsInUtcInEveryZone) {
    for (const char* name : {utcZone, newYorkZone, lordHoweZone}) {
        const test::TimeZone zone(name);
        EXPECT_EQ(DateTime::fromRFC822("Tue, 05 Mar 2024 09:07:03 GMT").getTime(), exampleInstant);
        EXPECT_EQ(DateTime::fromRFC822("tue, 05 MAR 2024 09:07:03 gmt").getTime(), exampleInstant);
        EXPECT_EQ(DateTime::fromRFC822("Thu, 01 Jan 1970 00:00:00 GMT").getTime(), 0);
        EXPECT_EQ(DateTime::fromRFC822("Wed, 31 Dec 1969 23:59:59 GMT").getTime(), -1);
        EXPECT_EQ(DateTime::fromRFC822("Wed, 31 Dec 1969 23:59:58 GMT").getTime(), -2);
    }
}

TEST(DateTime, Rfc822YearsMayHaveAnyLength) {
    for (const long long seconds : {-61404274377LL, -125582140800LL, 253402300800LL, 67767976233532799LL}) {
        if (!isTimeWide)
            break;
        const std::string text = textOf(DateTime(seconds), &DateTime::ToRFC822Buf);
        EXPECT_EQ(DateTime::fromRFC822(text.c_str()).getTime(), seconds) << text;
    }
    // 24 is the year 24, not 2024.
    const char* const ancient = "Tue, 05 Mar 24 09:07:03 GMT";
    if (isTimeWide) {
        EXPECT_EQ(DateTime::fromRFC822(ancient).getTime(), -61404274377LL);
    } else {
        EXPECT_FAILURE_WITH_FLAG(DateTime::fromRFC822(ancient), 3591, "ut_DateTime", fromRfc822Name, "Invalid Date",
                                 false);
    }
}

TEST(DateTime, EmptyRfc822TextIsTheEpoch) {
    EXPECT_EQ(DateTime::fromRFC822(nullptr).getTime(), 0);
    EXPECT_EQ(DateTime::fromRFC822("").getTime(), 0);
}

TEST(DateTime, OtherRfc822TextsThrow) {
    for (const char* text : {" ",
                             "Tue",
                             "Tue, 05 Mar 2024 09:07:03",
                             "Tue, 05 Mar 2024 09:07:03 GM",
                             "Tue, 05 Mar 2024 09:07:03 GMT ",
                             "Tue, 05 Mar 2024 09:07:03 GMTx",
                             " Tue, 05 Mar 2024 09:07:03 GMT",
                             "Tue, 05 Mar 2024 09:07:03 CET",
                             "Tue, 5 Mar 2024 09:07:03 GMT",
                             "Wed, 05 Mar 2024 09:07:03 GMT",
                             "Tue 05 Mar 2024 09:07:03 GMT",
                             "Tue,05 Mar 2024 09:07:03 GMT",
                             "Tue, 05-Mar-2024 09:07:03 GMT",
                             "Tue, 05 Mar 2024 09.07.03 GMT",
                             "Tue, 05 Mrz 2024 09:07:03 GMT",
                             "Tue, 05 March 2024 09:07:03 GMT",
                             "Thu, 30 Feb 2023 00:00:00 GMT",
                             "Wed, 29 Feb 1900 00:00:00 GMT",
                             "Tue, 05 Mar 2024 24:07:03 GMT",
                             "Tue, 05 Mar 2024 09:60:03 GMT",
                             "Tue, 05 Mar 2024 09:07:60 GMT",
                             "Tue, 05 Mar 2024 -9:07:03 GMT",
                             "Tue, +5 Mar 2024 09:07:03 GMT",
                             "Tue, 05 Mar 99999999999 09:07:03 GMT",
                             "Tue, 05 Mar 2024\n09:07:03 GMT",
                             "T\xFC, 05 Mar 2024 09:07:03 GMT",
                             "2024-03-05 09:07:03",
                             "%s%n, 05 Mar 2024 09:07:03 GMT"})
        EXPECT_FAILURE_WITH_FLAG(DateTime::fromRFC822(text), 3591, "ut_DateTime", fromRfc822Name, "Invalid Date",
                                 false);
    const std::string letters(100000, 'x');
    for (const std::string& text : {letters, "Tue, " + letters, "Tue, 05 Mar " + std::string(100000, '9'),
                                    "Tue, 05 Mar 2024 09:07:03 GMT" + letters})
        EXPECT_FAILURE_WITH_FLAG(DateTime::fromRFC822(text.c_str()), 3591, "ut_DateTime", fromRfc822Name,
                                 "Invalid Date", false);
}

TEST(DateTime, WritesEachForm) {
    const test::TimeZone zone(utcZone);
    for (const Form& form : forms)
        EXPECT_EQ(textOf(DateTime(exampleInstant), form.toArray), form.example);
    EXPECT_EQ(textOf(DateTime(2024, 12, 25, 23, 59, 59), &DateTime::ToBuf), "Wednesday December 25, 2024, 23:59:59");
    EXPECT_EQ(textOf(DateTime(2024, 12, 25, 23, 59, 59), &DateTime::ToShortBuf), "12/25/2024 23:59:59");
}

TEST(DateTime, WritesLocalTimeInAllFormsButRfc822) {
    const test::TimeZone zone(kolkataZone);
    EXPECT_EQ(isoOf(DateTime(exampleInstant)), "2024-03-05 14:37:03");
    EXPECT_EQ(textOf(DateTime(exampleInstant), &DateTime::ToBuf), "Tuesday March 5, 2024, 14:37:03");
    EXPECT_EQ(textOf(DateTime(exampleInstant), &DateTime::ToShortTimeBuf), "14:37:03");
    EXPECT_EQ(textOf(DateTime(exampleInstant), &DateTime::ToRFC822Buf), "Tue, 05 Mar 2024 09:07:03 GMT");
}

TEST(DateTime, Rfc822TextsHaveEnglishNamesInEveryLocale) {
    const test::TimeZone zone(utcZone);
    const test::GermanTimeLocale german;
    if (!german.isSet())
        GTEST_SKIP() << "localedef (package libc-bin) made no locale";
    // The locale is in effect: `strftime` formats the same date in German.
    tm fields = {};
    char localized[64];
    DateTime(exampleInstant).toTM(&fields);
    std::strftime(localized, sizeof localized, "%a %b", &fields);
    ASSERT_STREQ(localized, "Di Mrz");

    EXPECT_EQ(textOf(DateTime(exampleInstant), &DateTime::ToRFC822Buf), "Tue, 05 Mar 2024 09:07:03 GMT");
    char storage[64];
    PutStream out(storage, sizeof storage);
    DateTime(exampleInstant).ToRFC822Buffer(out);
    EXPECT_STREQ(storage, "Tue, 05 Mar 2024 09:07:03 GMT");
    for (int day = 0; day < 366; ++day) {
        const DateTime when = DateTime(exampleInstant).AddDays(day);
        const std::string text = textOf(when, &DateTime::ToRFC822Buf);
        EXPECT_EQ(DateTime::fromRFC822(text.c_str()).getTime(), when.getTime()) << text;
    }
}

TEST(DateTime, Rfc822TextsEqualThoseOfStrftimeInTheCLocale) {
    const auto expected = [](time_t seconds) {
        tm fields = {};
        char text[128] = "";
        if (gmtime_r(&seconds, &fields) != nullptr)
            std::strftime(text, sizeof text, "%a, %d %b %Y %H:%M:%S GMT", &fields);
        return std::string(text);
    };
    std::mt19937_64 random(822);
    for (int i = 0; i < 100000; ++i) {
        // Of every magnitude, from years of one digit to years that no platform can represent.
        const time_t instant = static_cast<time_t>(static_cast<long long>(random()) >> random() % 64);
        ASSERT_EQ(textOf(DateTime(instant), &DateTime::ToRFC822Buf), expected(instant)) << instant;
    }
}

TEST(DateTime, InvalidDateIsTheEmptyTextExceptInRfc822) {
    for (const Form& form : forms) {
        const bool isRfc822 = form.toArray == &DateTime::ToRFC822Buf;
        const char* const expected = isRfc822 ? "Wed, 31 Dec 1969 23:59:59 GMT" : "";
        EXPECT_EQ(textOf(DateTime::Invalid(), form.toArray), expected);
        char storage[64];
        PutStream out(storage, sizeof storage);
        out.PutS("at ");
        (DateTime::Invalid().*form.toStream)(out);
        EXPECT_EQ(std::string(storage), std::string("at ") + expected);
        EXPECT_EQ(out.WritePosition(), static_cast<int>(3 + std::strlen(expected)));
    }
}

TEST(DateTime, TextIsTruncatedToAShortArray) {
    const test::TimeZone zone(utcZone);
    for (const Form& form : forms) {
        const std::string whole = form.example;
        for (int size = 0; size <= static_cast<int>(whole.size()) + 2; ++size) {
            std::string storage(64, '#');
            EXPECT_EQ((DateTime(exampleInstant).*form.toArray)(storage.data(), size), storage.data());
            std::string expected(64, '#');
            if (size > 0) {
                const std::string truncated = whole.substr(0, static_cast<std::size_t>(size) - 1);
                expected.replace(0, truncated.size() + 1, truncated.c_str(), truncated.size() + 1);
            }
            EXPECT_EQ(storage, expected) << whole << " in " << size;
        }
    }
}

TEST(DateTime, WritesNothingToNullOrWithSizesBelowOne) {
    for (const Form& form : forms) {
        EXPECT_EQ((DateTime(exampleInstant).*form.toArray)(nullptr, 64), nullptr);
        char untouched[] = "#";
        EXPECT_EQ((DateTime(exampleInstant).*form.toArray)(untouched, 0), untouched);
        EXPECT_EQ((DateTime(exampleInstant).*form.toArray)(untouched, -1), untouched);
        EXPECT_EQ((DateTime(exampleInstant).*form.toArray)(untouched, INT_MIN), untouched);
        EXPECT_EQ((DateTime::Invalid().*form.toArray)(untouched, 0), untouched);
        EXPECT_STREQ(untouched, "#");
    }
}

TEST(DateTime, WritesTheSameTextsToStreams) {
    const test::TimeZone zone(utcZone);
    for (const Form& form : forms) {
        char storage[80];
        PutStream out(storage, sizeof storage);
        out.PutS("at ");
        (DateTime(exampleInstant).*form.toStream)(out);
        out.PutS(".");
        EXPECT_EQ(std::string(storage), std::string("at ") + form.example + ".");
    }
}

TEST(DateTime, TextMayFillAStreamExactly) {
    const test::TimeZone zone(utcZone);
    for (const Form& form : forms) {
        std::string storage(64, '#');
        const int length = static_cast<int>(std::strlen(form.example));
        PutStream out(storage.data(), length + 1);
        (DateTime(exampleInstant).*form.toStream)(out);
        EXPECT_STREQ(storage.c_str(), form.example);
        EXPECT_EQ(out.WriteRemaining(), 0);
        EXPECT_EQ(storage.substr(static_cast<std::size_t>(length) + 1),
                  std::string(63U - static_cast<unsigned>(length), '#'));
        // The stream is full, but the empty text still fits.
        DateTime::Invalid().ToISOBuffer(out);
        EXPECT_STREQ(storage.c_str(), form.example);
    }
}

TEST(DateTime, TextThatDoesNotFitAStreamIsTruncatedAndThrows) {
    const test::TimeZone zone(utcZone);
    for (const Form& form : forms) {
        std::string storage(64, '#');
        const int length = static_cast<int>(std::strlen(form.example));
        PutStream out(storage.data(), length);
        const auto failure = CATCH_FAILURE((DateTime(exampleInstant).*form.toStream)(out));
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->code(), 1239U);
        EXPECT_STREQ(failure->file(), "ut_PutStream");
        EXPECT_THAT(failure->function(), testing::StartsWith("void utility::PutStream::PutV(const char*, "));
        EXPECT_THAT(failure->message(), testing::StartsWith("Didn't fit. wrote=" + std::to_string(length) +
                                                            " remaining=" + std::to_string(length - 1) + " msg='%"));
        EXPECT_TRUE(failure->flag());
        EXPECT_EQ(std::string(storage.c_str()), std::string(form.example, static_cast<std::size_t>(length) - 1));
        EXPECT_EQ(out.WritePosition(), length - 1);
        EXPECT_EQ(storage[static_cast<std::size_t>(length)], '#');
    }
}

TEST(DateTime, TextThatDoesNotFitANoThrowStreamIsTruncatedAndLogged) {
    const test::TimeZone zone(utcZone);
    for (const Form& form : forms) {
        std::string storage(64, '#');
        const int length = static_cast<int>(std::strlen(form.example));
        PutStream out(storage.data(), length);
        out.setNoThrow(true);
        const test::LogCapture log;
        (DateTime(exampleInstant).*form.toStream)(out);
        EXPECT_EQ(std::string(storage.c_str()), std::string(form.example, static_cast<std::size_t>(length) - 1));
        EXPECT_EQ(out.WritePosition(), length - 1);
        EXPECT_EQ(storage[static_cast<std::size_t>(length)], '#');
        ASSERT_EQ(log.count(), 1U);
        EXPECT_EQ(log.entries()[0].type, Logger::LOG_ERROR);
        EXPECT_THAT(log.texts()[0], testing::StartsWith("PutStream::PutV: Didn't fit. wrote=" + std::to_string(length) +
                                                        " remaining=" + std::to_string(length - 1) + " msg='%"));
    }
}

TEST(DateTime, WritesNothingToAStreamWithoutStorage) {
    PutStream none(nullptr, 64);
    EXPECT_TRUE(CATCH_FAILURE(DateTime(exampleInstant).ToISOBuffer(none)));
    DateTime::Invalid().ToISOBuffer(none);
}

TEST(DateTime, TimesThatThePlatformCannotRepresentAreTheEmptyText) {
    const test::TimeZone zone(utcZone);
    for (const time_t instant : {firstInstant, lastInstant}) {
        const DateTime when(instant);
        tm fields;
        std::memset(&fields, 1, sizeof fields);
        if (!isTimeWide) {
            // Every 32-bit time has a date.
            EXPECT_EQ(when.toTM(&fields), &fields);
            EXPECT_NE(isoOf(when), "");
            continue;
        }
        for (const Form& form : forms)
            EXPECT_EQ(textOf(when, form.toArray), "");
        EXPECT_EQ(when.toTM(&fields), nullptr);
        EXPECT_EQ(fields.tm_year, 0);
        EXPECT_EQ(when.getYear(), 0);
        EXPECT_EQ(when.getMonth(), DateTime::January);
        EXPECT_EQ(when.getDayOfMonth(), 0);
        EXPECT_EQ(when.getSecond(), 0);
        EXPECT_FALSE(when.isDST());
        EXPECT_FALSE(when.AddMonths(1).getEpochValid());
        EXPECT_FAILURE_WITH_FLAG(DateTime::Merge(when, DateTime(0)), 3591, "ut_DateTime", mergeName, "Invalid Date",
                                 false);
        EXPECT_FAILURE_WITH_FLAG(DateTime::Merge(DateTime(0), when), 3591, "ut_DateTime", mergeName, "Invalid Date",
                                 false);
    }
}

TEST(DateTime, TheLargestYearsNeitherOverflowNorFail) {
    const test::TimeZone zone(utcZone);
    if (!isTimeWide) {
        EXPECT_FAILURE_WITH_FLAG(DateTime(INT_MAX, 12, 31), 3591, "ut_DateTime", fromThreeName, "Invalid Date", false);
        return;
    }
    const DateTime last(INT_MAX, 12, 31, 23, 59, 59);
    EXPECT_EQ(last.getYear(), INT_MAX);
    EXPECT_EQ(isoOf(last), "2147483647-12-31 23:59:59");
    EXPECT_EQ(DateTime::fromRFC822(textOf(last, &DateTime::ToRFC822Buf).c_str()).getTime(), last.getTime());
    const DateTime beyond = last.AddSeconds(1);
    EXPECT_EQ(beyond.getYear(), 0);
    EXPECT_EQ(isoOf(beyond), "");
    EXPECT_FALSE(last.AddYears(1).getEpochValid());
}

TEST(DateTime, DumpsEachField) {
    tm fields = {};
    fields.tm_year = 124;
    fields.tm_mon = 2;
    fields.tm_mday = 5;
    fields.tm_hour = 9;
    fields.tm_min = 7;
    fields.tm_sec = 3;
    fields.tm_wday = 4;
    fields.tm_yday = 64;
    fields.tm_isdst = -1;
    test::LogCapture log;
    DateTime::dumpTM(&fields);
    EXPECT_THAT(log.texts(), testing::ElementsAre("tm.tm_year = 124", "tm.tm_mon = 2", "tm.tm_mday = 5",
                                                  "tm.tm_hour = 9", "tm.tm_min = 7", "tm.tm_sec = 3", "tm.tm_wday = 4",
                                                  "tm.tm_yday = 64", "tm.tm_isdst = -1"));
    for (const test::LogEntry& entry : log.entries()) {
        EXPECT_EQ(entry.type, Logger::LOG_DEBUG);
        EXPECT_EQ(entry.function, "static void utility::DateTime::dumpTM(tm*)");
        EXPECT_GT(entry.line, 0);
    }
    log.clear();
    DateTime::dumpTM(nullptr);
    EXPECT_EQ(log.count(), 0U);
}

// Arithmetic

TEST(DateTime, AddsPlainSeconds) {
    const DateTime when(exampleInstant);
    EXPECT_EQ(when.AddSeconds(5).getTime(), exampleInstant + 5);
    EXPECT_EQ(when.AddSeconds(-5).getTime(), exampleInstant - 5);
    EXPECT_EQ(when.AddMinutes(5).getTime(), exampleInstant + 300);
    EXPECT_EQ(when.AddHours(-5).getTime(), exampleInstant - 18000);
    EXPECT_EQ(when.AddDays(5).getTime(), exampleInstant + 432000);
    EXPECT_EQ(when.AddWeeks(-5).getTime(), exampleInstant - 3024000);
    EXPECT_EQ(when.getTime(), exampleInstant);
}

TEST(DateTime, AddingADayAcrossADaylightSavingChangeMovesTheHour) {
    const test::TimeZone zone(newYorkZone);
    const DateTime spring(2024, 3, 9, 12, 0, 0);
    EXPECT_EQ(isoOf(spring.AddDays(1)), "2024-03-10 13:00:00");
    EXPECT_EQ(isoOf(DateTime(2024, 11, 2, 12, 0, 0).AddDays(1)), "2024-11-03 11:00:00");
    EXPECT_EQ(isoOf(DateTime(2024, 11, 2, 12, 0, 0).AddWeeks(1)), "2024-11-09 11:00:00");
    EXPECT_EQ(isoOf(DateTime(2024, 3, 10, 1, 59, 59).AddSeconds(1)), "2024-03-10 03:00:00");
}

TEST(DateTime, ArithmeticSaturates) {
    for (const long n : {LONG_MAX, LONG_MAX / 2}) {
        EXPECT_EQ(DateTime(lastInstant).AddSeconds(n).getTime(), lastInstant);
        EXPECT_EQ(DateTime(lastInstant).AddMinutes(n).getTime(), lastInstant);
        EXPECT_EQ(DateTime(exampleInstant).AddHours(n).getTime(), lastInstant);
        EXPECT_EQ(DateTime(exampleInstant).AddDays(n).getTime(), lastInstant);
        EXPECT_EQ(DateTime(exampleInstant).AddWeeks(n).getTime(), lastInstant);
    }
    for (const long n : {LONG_MIN, LONG_MIN / 2}) {
        EXPECT_EQ(DateTime(firstInstant).AddSeconds(n).getTime(), firstInstant);
        EXPECT_EQ(DateTime(firstInstant).AddMinutes(n).getTime(), firstInstant);
        EXPECT_EQ(DateTime(-exampleInstant).AddHours(n).getTime(), firstInstant);
        EXPECT_EQ(DateTime(-exampleInstant).AddDays(n).getTime(), firstInstant);
        EXPECT_EQ(DateTime(-exampleInstant).AddWeeks(n).getTime(), firstInstant);
    }
    EXPECT_EQ(DateTime(INT32_MIN).AddDays(40000).getTime(), INT32_MIN + 3456000000LL);
    EXPECT_EQ(DateTime(firstInstant).AddSeconds(LONG_MAX).getTime(), -1);
}

TEST(DateTime, AddsMonthsAndYearsByTheLocalCalendar) {
    const test::TimeZone zone(newYorkZone);
    EXPECT_EQ(isoOf(DateTime(2023, 1, 31, 8, 30, 0).AddMonths(1)), "2023-03-03 08:30:00");
    EXPECT_EQ(isoOf(DateTime(2024, 1, 31, 8, 30, 0).AddMonths(1)), "2024-03-02 08:30:00");
    EXPECT_EQ(isoOf(DateTime(2024, 1, 31, 8, 30, 0).AddMonths(-2)), "2023-12-01 08:30:00");
    EXPECT_EQ(isoOf(DateTime(2024, 3, 5, 9, 7, 3).AddMonths(25)), "2026-04-05 09:07:03");
    EXPECT_EQ(isoOf(DateTime(2024, 3, 5, 9, 7, 3).AddMonths(-25)), "2022-02-05 09:07:03");
    EXPECT_EQ(isoOf(DateTime(2024, 2, 29, 9, 7, 3).AddYears(1)), "2025-03-01 09:07:03");
    EXPECT_EQ(isoOf(DateTime(2024, 2, 29, 9, 7, 3).AddYears(-4)), "2020-02-29 09:07:03");
    // The hour does not change across a change of daylight saving.
    EXPECT_EQ(isoOf(DateTime(2024, 3, 5, 9, 7, 3).AddMonths(1)), "2024-04-05 09:07:03");
    EXPECT_EQ(isoOf(DateTime(2024, 7, 5, 9, 7, 3).AddMonths(6)), "2025-01-05 09:07:03");
}

TEST(DateTime, MonthsAndYearsBeyondThePlatformAreInvalid) {
    for (const long n : {LONG_MAX, LONG_MIN}) {
        EXPECT_FALSE(DateTime(exampleInstant).AddYears(n).getEpochValid()) << n;
        EXPECT_FALSE(DateTime(exampleInstant).AddMonths(n).getEpochValid()) << n;
    }
    EXPECT_FALSE(DateTime(exampleInstant).AddYears(INT_MAX).getEpochValid());
    const test::TimeZone zone(utcZone);
    if (isTimeWide) {
        // The first year that fits an int; the platform counts years from 1900.
        EXPECT_FALSE(DateTime(exampleInstant).AddYears(static_cast<long>(INT_MIN - 2024LL)).getEpochValid());
        EXPECT_EQ(DateTime(exampleInstant).AddYears(INT_MIN).getYear(), 2024 + INT_MIN);
        EXPECT_EQ(DateTime(exampleInstant).AddMonths(INT_MIN).getYear(), 2024 - 178956970 - 1);
        return;
    }
    EXPECT_FALSE(DateTime(exampleInstant).AddYears(14).getEpochValid());
    EXPECT_FALSE(DateTime(exampleInstant).AddMonths(-12 * 123).getEpochValid());
}

TEST(DateTime, SpansAreWholeUnits) {
    const DateTime start(exampleInstant);
    EXPECT_EQ(start.SecondsSpan(start.AddSeconds(59)), 59);
    EXPECT_EQ(start.SecondsSpan(start.AddSeconds(-59)), -59);
    EXPECT_EQ(start.MinutesSpan(start.AddSeconds(119)), 1);
    EXPECT_EQ(start.MinutesSpan(start.AddSeconds(-119)), -1);
    EXPECT_EQ(start.HoursSpan(start.AddSeconds(7199)), 1);
    EXPECT_EQ(start.HoursSpan(start.AddSeconds(-7199)), -1);
    EXPECT_EQ(start.DaysSpan(start.AddHours(47)), 1);
    EXPECT_EQ(start.DaysSpan(start.AddHours(-47)), -1);
    EXPECT_EQ(start.DaysSpan(start.AddHours(23)), 0);
    EXPECT_EQ(start.WeeksSpan(start.AddDays(13)), 1);
    EXPECT_EQ(start.WeeksSpan(start.AddDays(-13)), -1);
}

TEST(DateTime, MonthAndYearSpansIgnoreTheDays) {
    const test::TimeZone zone(berlinZone);
    EXPECT_EQ(DateTime(2024, 1, 31).MonthsSpan(DateTime(2024, 2, 1)), 1);
    EXPECT_EQ(DateTime(2024, 2, 1).MonthsSpan(DateTime(2024, 1, 31)), -1);
    EXPECT_EQ(DateTime(2024, 1, 1).MonthsSpan(DateTime(2024, 1, 31)), 0);
    EXPECT_EQ(DateTime(2023, 11, 5).MonthsSpan(DateTime(2025, 2, 1)), 15);
    EXPECT_EQ(DateTime(2023, 12, 31).YearsSpan(DateTime(2024, 1, 1)), 1);
    EXPECT_EQ(DateTime(2024, 1, 1).YearsSpan(DateTime(2023, 12, 31)), -1);
    // By the local calendar: in Berlin, it is already the next year.
    EXPECT_EQ(DateTime(2023, 12, 31).YearsSpan(DateTime::fromRFC822("Sun, 31 Dec 2023 23:30:00 GMT")), 1);
}

TEST(DateTime, SpansBeyond32BitsAreClamped) {
    const DateTime first(firstInstant);
    const DateTime last(lastInstant);
    EXPECT_EQ(first.SecondsSpan(last), INT_MAX);
    EXPECT_EQ(last.SecondsSpan(first), INT_MIN);
    EXPECT_EQ(DateTime(INT32_MIN).SecondsSpan(DateTime(INT32_MAX)), INT_MAX);
    EXPECT_EQ(DateTime(INT32_MAX).SecondsSpan(DateTime(INT32_MIN)), INT_MIN);
    EXPECT_EQ(DateTime(INT32_MIN).MinutesSpan(DateTime(INT32_MAX)), 71582788);
    EXPECT_EQ(DateTime(INT32_MIN).DaysSpan(DateTime(INT32_MAX)), 49710);
    EXPECT_EQ(DateTime(INT32_MAX).WeeksSpan(DateTime(INT32_MIN)), -7101);
    EXPECT_EQ(first.CompareTo(last), LONG_MIN);
    EXPECT_EQ(last.CompareTo(first), LONG_MAX);
    EXPECT_EQ(DateTime::DiffTime(last, first), LONG_MAX);
    if (isTimeWide) {
        EXPECT_EQ(first.WeeksSpan(last), INT_MAX);
        EXPECT_EQ(last.WeeksSpan(first), INT_MIN);
        const test::TimeZone zone(utcZone);
        EXPECT_EQ(DateTime(-2147481748, 1, 1).MonthsSpan(DateTime(INT_MAX, 1, 1)), INT_MAX);
        EXPECT_EQ(DateTime(INT_MAX, 1, 1).YearsSpan(DateTime(-2147481748, 1, 1)), INT_MIN);
    }
}

TEST(DateTime, ComparesInSeconds) {
    const DateTime when(exampleInstant);
    EXPECT_EQ(when.CompareTo(when), 0);
    EXPECT_EQ(when.CompareTo(when.AddSeconds(7)), -7);
    EXPECT_EQ(when.AddSeconds(7).CompareTo(when), 7);
    EXPECT_TRUE(when.Equals(DateTime(exampleInstant)));
    EXPECT_FALSE(when.Equals(DateTime(exampleInstant + 1)));
    EXPECT_TRUE(DateTime::Invalid().Equals(DateTime(-1)));
    EXPECT_EQ(DateTime::DiffTime(when.AddSeconds(7), when), 7);
    EXPECT_EQ(DateTime::DiffTime(when, when.AddSeconds(7)), -7);
}

// Calendar and names

TEST(DateTime, EveryFourthYearIsALeapYear) {
    EXPECT_TRUE(DateTime::isLeapYear(1900));
    EXPECT_TRUE(DateTime::isLeapYear(2100));
    EXPECT_TRUE(DateTime::isLeapYear(2000));
    EXPECT_TRUE(DateTime::isLeapYear(2024));
    EXPECT_TRUE(DateTime::isLeapYear(0));
    EXPECT_TRUE(DateTime::isLeapYear(-4));
    EXPECT_TRUE(DateTime::isLeapYear(INT_MIN));
    EXPECT_FALSE(DateTime::isLeapYear(2023));
    EXPECT_FALSE(DateTime::isLeapYear(2022));
    EXPECT_FALSE(DateTime::isLeapYear(-1));
    EXPECT_FALSE(DateTime::isLeapYear(INT_MAX));
}

TEST(DateTime, CountsTheDaysOfMonthsAndYears) {
    EXPECT_EQ(DateTime::DaysInMonth(1900, 1), 29);
    EXPECT_EQ(DateTime::DaysInMonth(2024, DateTime::February), 29);
    EXPECT_EQ(DateTime::DaysInMonth(2023, 1), 28);
    EXPECT_EQ(DateTime::DaysInMonth(2023, 12), 0);
    EXPECT_EQ(DateTime::DaysInMonth(2023, INT_MAX), 0);
    EXPECT_EQ(DateTime::DaysInMonth(2023, -1), 0);
    EXPECT_EQ(DateTime::DaysInMonth(2023, INT_MIN), 0);
    const int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 0; month < 12; ++month) {
        EXPECT_EQ(DateTime::DaysInMonth(2023, month), days[month]);
        EXPECT_EQ(DateTime::m_monthDays[month], days[month]);
    }
    EXPECT_EQ(DateTime::DaysInYear(2023), 365);
    EXPECT_EQ(DateTime::DaysInYear(2024), 366);
    EXPECT_EQ(DateTime::DaysInYear(1900), 366);
}

TEST(DateTime, NamesWeekdaysAndMonths) {
    EXPECT_THAT(DateTime::m_weekdayNames,
                testing::ElementsAre(testing::StrEq("Sunday"), testing::StrEq("Monday"), testing::StrEq("Tuesday"),
                                     testing::StrEq("Wednesday"), testing::StrEq("Thursday"), testing::StrEq("Friday"),
                                     testing::StrEq("Saturday")));
    const char* const months[] = {"January", "February", "March",     "April",   "May",      "June",
                                  "July",    "August",   "September", "October", "November", "December"};
    for (int i = 0; i < 12; ++i) {
        const DateTime::Month month = static_cast<DateTime::Month>(i);
        EXPECT_STREQ(DateTime::MonthName(month), months[i]);
        EXPECT_STREQ(DateTime::m_monthNames[i], months[i]);
        EXPECT_EQ(std::string(DateTime::ShortMonthName(month)), std::string(months[i], 3));
        EXPECT_EQ(DateTime::m_shortMonthNames[i], DateTime::ShortMonthName(month));
        EXPECT_EQ(DateTime::MonthFromName(DateTime::MonthName(month)), i);
        EXPECT_EQ(DateTime::MonthFromName(DateTime::ShortMonthName(month)), i);
    }
    for (int i = 0; i < 7; ++i) {
        const DateTime::Weekday weekday = static_cast<DateTime::Weekday>(i);
        EXPECT_STREQ(DateTime::WeekdayName(weekday), DateTime::m_weekdayNames[i]);
        EXPECT_EQ(std::string(DateTime::ShortWeekdayName(weekday)), std::string(DateTime::m_weekdayNames[i], 3));
        EXPECT_EQ(DateTime::m_shortWeekdayNames[i], DateTime::ShortWeekdayName(weekday));
        EXPECT_EQ(DateTime::WeekdayFromName(DateTime::WeekdayName(weekday)), i);
        EXPECT_EQ(DateTime::WeekdayFromName(DateTime::ShortWeekdayName(weekday)), i);
    }
    EXPECT_EQ(DateTime::Sunday, 0);
    EXPECT_EQ(DateTime::Saturday, 6);
    EXPECT_EQ(DateTime::January, 0);
    EXPECT_EQ(DateTime::December, 11);
}

TEST(DateTime, NamesOutOfRangeAreNull) {
    for (const int number : {-1, 12, INT_MAX, INT_MIN}) {
        EXPECT_EQ(DateTime::WeekdayName(static_cast<DateTime::Weekday>(number)), nullptr);
        EXPECT_EQ(DateTime::ShortWeekdayName(static_cast<DateTime::Weekday>(number)), nullptr);
        EXPECT_EQ(DateTime::MonthName(static_cast<DateTime::Month>(number)), nullptr);
        EXPECT_EQ(DateTime::ShortMonthName(static_cast<DateTime::Month>(number)), nullptr);
    }
    EXPECT_EQ(DateTime::WeekdayName(static_cast<DateTime::Weekday>(7)), nullptr);
}

TEST(DateTime, FindsNamesIgnoringCase) {
    EXPECT_EQ(DateTime::MonthFromName("mAr"), DateTime::March);
    EXPECT_EQ(DateTime::MonthFromName("SEPTEMBER"), DateTime::September);
    EXPECT_EQ(DateTime::WeekdayFromName("frI"), DateTime::Friday);
    EXPECT_EQ(DateTime::WeekdayFromName("wednesDAY"), DateTime::Wednesday);
}

TEST(DateTime, UnknownNamesAreMinusOne) {
    const std::string longName(100000, 'M');
    for (const char* name : {"", "M", "Ma", "Marc", "Marchh", "March ", " March", "Mrz", "3", "M\xE4rz", "\xFF", "Tu",
                             "Sept", "Mar\n", "\x01", longName.c_str(), static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(DateTime::MonthFromName(name), -1);
        EXPECT_EQ(DateTime::WeekdayFromName(name), -1);
    }
    EXPECT_EQ(DateTime::MonthFromName("Monday"), -1);
    EXPECT_EQ(DateTime::WeekdayFromName("March"), -1);
}

TEST(DateTime, HasItsErrorMessages) {
    EXPECT_STREQ(DateTime::DT_ErrorMessages[0], "No Error");
    EXPECT_STREQ(DateTime::DT_ErrorMessages[1], "Invalid Time Zone");
    EXPECT_STREQ(DateTime::DT_ErrorMessages[2], "Invalid Date");
}

// Fields

TEST(DateTime, ReturnsTheLocalFields) {
    const test::TimeZone zone(newYorkZone);
    const DateTime when(exampleInstant);
    EXPECT_EQ(when.getYear(), 2024);
    EXPECT_EQ(when.getMonth(), DateTime::March);
    EXPECT_EQ(when.getDayOfMonth(), 5);
    EXPECT_EQ(when.getDayOfWeek(), DateTime::Tuesday);
    EXPECT_EQ(when.getDayOfYear(), 64);
    EXPECT_EQ(when.getHour(), 4);
    EXPECT_EQ(when.getMinute(), 7);
    EXPECT_EQ(when.getSecond(), 3);
    EXPECT_FALSE(when.isDST());
    EXPECT_TRUE(DateTime(2024, 7, 1).isDST());
    EXPECT_EQ(DateTime(2024, 1, 1).getDayOfYear(), 0);
    tm fields = {};
    EXPECT_EQ(when.toTM(&fields), &fields);
    EXPECT_EQ(fields.tm_hour, 4);
    EXPECT_EQ(when.toTM(nullptr), nullptr);
}

TEST(DateTime, GetDateIsMidnightOfTheSameDay) {
    const test::TimeZone zone(newYorkZone);
    EXPECT_EQ(isoOf(DateTime(2024, 3, 5, 9, 7, 3).getDate()), "2024-03-05 00:00:00");
    // On the days of the changes, midnight has the other UTC offset.
    EXPECT_EQ(isoOf(DateTime(2024, 3, 10, 12, 0, 0).getDate()), "2024-03-10 00:00:00");
    EXPECT_EQ(isoOf(DateTime(2024, 11, 3, 12, 0, 0).getDate()), "2024-11-03 00:00:00");
}

TEST(DateTime, NextMinuteAndDayBeginExactly) {
    const test::TimeZone zone(newYorkZone);
    EXPECT_EQ(isoOf(DateTime(2024, 3, 5, 9, 7, 3).getNextMinute()), "2024-03-05 09:08:00");
    EXPECT_EQ(isoOf(DateTime(2024, 3, 5, 9, 8, 0).getNextMinute()), "2024-03-05 09:09:00");
    EXPECT_EQ(isoOf(DateTime(2024, 12, 31, 23, 59, 59).getNextMinute()), "2025-01-01 00:00:00");
    EXPECT_EQ(isoOf(DateTime(2024, 3, 10, 1, 59, 30).getNextMinute()), "2024-03-10 03:00:00");
    EXPECT_EQ(isoOf(DateTime(2024, 3, 5, 9, 7, 3).getNextDay()), "2024-03-06 00:00:00");
    EXPECT_EQ(isoOf(DateTime(2024, 3, 5).getNextDay()), "2024-03-06 00:00:00");
    EXPECT_EQ(isoOf(DateTime(2024, 2, 29, 23, 59, 59).getNextDay()), "2024-03-01 00:00:00");
    EXPECT_EQ(DateTime(2024, 3, 10).SecondsSpan(DateTime(2024, 3, 10).getNextDay()), 23 * 3600);
    EXPECT_EQ(DateTime(2024, 11, 3).SecondsSpan(DateTime(2024, 11, 3).getNextDay()), 25 * 3600);
}

TEST(DateTime, NextMinuteStaysInTheFirstPassOfARepeatedHour) {
    const test::TimeZone zone(newYorkZone);
    const DateTime firstPass = DateTime::fromRFC822("Sun, 03 Nov 2024 05:30:10 GMT");
    const DateTime secondPass = firstPass.AddHours(1);
    EXPECT_EQ(isoOf(firstPass), isoOf(secondPass));
    EXPECT_EQ(firstPass.SecondsSpan(firstPass.getNextMinute()), 50);
    EXPECT_EQ(secondPass.SecondsSpan(secondPass.getNextMinute()), 50);
}

TEST(DateTime, NextMinuteAndDayAreInvalidAtTheLimitsOfTime) {
    const test::TimeZone zone(utcZone);
    EXPECT_FALSE(DateTime(lastInstant).getNextMinute().getEpochValid());
    EXPECT_FALSE(DateTime(lastInstant).getNextDay().getEpochValid());
    EXPECT_FALSE(DateTime(firstInstant).getDate().getEpochValid());
    EXPECT_EQ(isoOf(DateTime(firstInstant).getNextDay()), isTimeWide ? "" : "1901-12-14 00:00:00");
}

TEST(DateTime, NextMinutePast32BitTimeIsValidOnlyIfTimeHas64Bits) {
    const test::TimeZone zone(utcZone);
    EXPECT_EQ(DateTime(INT32_MAX - 8).getNextMinute().getTime(), INT32_MAX - 7);
    const DateTime next = DateTime(INT32_MAX - 7).getNextMinute();
    EXPECT_EQ(next.getEpochValid(), isTimeWide);
    EXPECT_EQ(isoOf(next), isTimeWide ? "2038-01-19 03:15:00" : "");
}

TEST(DateTime, NextMinuteAndMidnightsAreExactOrInvalidNearTheLimitsOf32BitTime) {
    const auto expected = [](long long seconds) {
        const long long inRange = std::clamp<long long>(seconds, firstInstant, lastInstant);
        return inRange == seconds ? static_cast<time_t>(seconds) : time_t{-1};
    };
    const struct {
        const char* zone;
        long long offset;
    } zones[] = {{utcZone, 0}, {kolkataZone, 19800}, {"CLT4", -14400}};
    for (const auto& [name, offset] : zones) {
        const test::TimeZone zone(name);
        for (long long distance = 0; distance < 3 * 86400LL; distance += 7) {
            for (const long long seconds : {INT32_MAX - distance, INT32_MIN + distance}) {
                const DateTime when(seconds);
                // Relative to a midnight before all of them, so that the division rounds down.
                const long long dayBase = (1LL << 17) * 86400 + offset;
                const long long midnight = (seconds + dayBase) / 86400 * 86400 - dayBase;
                const long long minute = (seconds + dayBase) / 60 * 60 - dayBase;
                ASSERT_EQ(when.getDate().getTime(), expected(midnight)) << name << " " << seconds;
                ASSERT_EQ(when.getNextDay().getTime(), expected(midnight + 86400)) << name << " " << seconds;
                ASSERT_EQ(when.getNextMinute().getTime(), expected(minute + 60)) << name << " " << seconds;
            }
        }
    }
}

TEST(DateTime, MergesADateAndATimeOfDay) {
    const test::TimeZone zone(newYorkZone);
    const DateTime date(2024, 7, 1, 1, 2, 3);
    const DateTime time(2023, 12, 31, 9, 7, 3);
    EXPECT_EQ(isoOf(DateTime::Merge(date, time)), "2024-07-01 09:07:03");
    EXPECT_EQ(isoOf(DateTime::Merge(time, date)), "2023-12-31 01:02:03");
    EXPECT_EQ(DateTime::Merge(date, date).getTime(), date.getTime());
}

TEST(DateTime, MergingIntoTheInvalidSecondThrows) {
    const test::TimeZone zone(utcZone);
    EXPECT_FAILURE_WITH_FLAG(DateTime::Merge(DateTime(1969, 12, 31), DateTime(2024, 3, 5, 23, 59, 59)), 3591,
                             "ut_DateTime", mergeName, "Invalid Date", false);
}

// Time zones

TEST(DateTime, SkippedHourIsMovedAndRepeatedHourIsOneOfTheTwo) {
    const test::TimeZone zone(newYorkZone);
    const std::string gap = isoOf(DateTime("2024-03-10 02:30:00"));
    EXPECT_THAT(gap, testing::AnyOf("2024-03-10 01:30:00", "2024-03-10 03:30:00"));
    const time_t firstPass = DateTime::fromRFC822("Sun, 03 Nov 2024 05:30:00 GMT").getTime();
    EXPECT_THAT(DateTime("2024-11-03 01:30:00").getTime(), testing::AnyOf(firstPass, firstPass + 3600));
}

TEST(DateTime, HalfHourDaylightSaving) {
    const test::TimeZone zone(lordHoweZone);
    EXPECT_EQ(isoOf(DateTime(2024, 10, 6, 1, 59, 59).AddSeconds(1)), "2024-10-06 02:30:00");
    EXPECT_EQ(isoOf(DateTime(2024, 4, 7, 1, 29, 59).AddSeconds(1)), "2024-04-07 01:30:00");
    EXPECT_EQ(DateTime(2024, 1, 1, 11, 0, 0).getTime(), 1704067200);
    EXPECT_EQ(DateTime(2024, 7, 1, 10, 30, 0).getTime(), 1719792000);
}

TEST_P(DateTimeZones, TextsRoundTrip) {
    const test::TimeZone zone(GetParam());
    for (const time_t instant : randomInstants(100000)) {
        const DateTime when(instant);
        const std::string iso = isoOf(when);
        const std::string rfc822 = textOf(when, &DateTime::ToRFC822Buf);
        const DateTime fromISO(iso.c_str());
        const DateTime fromClassic(classicTextOf(when).c_str());
        if (DateTime::fromRFC822(rfc822.c_str()).getTime() != instant)
            FAIL() << instant << " " << rfc822;
        if (fromISO.getTime() == instant && fromClassic.getTime() == instant)
            continue;
        ASSERT_TRUE(isShownTwice(instant)) << instant << " " << iso;
        ASSERT_EQ(isoOf(fromISO), iso) << instant;
        ASSERT_EQ(isoOf(fromClassic), iso) << instant;
    }
}

// The forms of digits alone are written by hand. They must agree with `printf` for every time and every array.
TEST_P(DateTimeZones, TextsOfDigitsAgreeWithPrintf) {
    const test::TimeZone zone(GetParam());
    test::RandomRun random;
    while (random.steps(5000)) {
        // Years of up to five digits are frequent, and longer ones occur.
        const int range = static_cast<int>(random.below(8) == 0 ? random.below(64) : 24 + random.below(6));
        const auto instant = static_cast<time_t>(static_cast<int64_t>(random.bits()) >> range);
        tm fields = {};
        if (instant == -1 || localtime_r(&instant, &fields) == nullptr || fields.tm_year > INT_MAX - 1900)
            continue;
        const int size = static_cast<int>(random.below(25));
        const DateTime when(instant);
        const auto expectText = [&](Formatter format, const char* expected) {
            std::string array(40, '#');
            std::string plain = array;
            std::snprintf(plain.data(), static_cast<std::size_t>(size), "%s", expected);
            (when.*format)(array.data(), size);
            EXPECT_EQ(array, plain) << instant << " in " << size;
        };
        char text[80];
        std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", fields.tm_year + 1900, fields.tm_mon + 1,
                      fields.tm_mday, fields.tm_hour, fields.tm_min, fields.tm_sec);
        expectText(&DateTime::ToISOBuf, text);
        std::snprintf(text, sizeof text, "%04d-%02d-%02d", fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday);
        expectText(&DateTime::ToISODateBuf, text);
        std::snprintf(text, sizeof text, "%02d:%02d:%02d", fields.tm_hour, fields.tm_min, fields.tm_sec);
        expectText(&DateTime::ToShortTimeBuf, text);
    }
}

// Texts of the form that `ToISOBuf` writes are read by hand; a blank in front takes the same text through the tokens.
TEST_P(DateTimeZones, IsoTextsAreReadAsTheirTokens) {
    const test::TimeZone zone(GetParam());
    test::RandomRun random;
    const auto outcome = [](const std::string& text) {
        std::string result;
        const auto failure = CATCH_FAILURE(result = std::to_string(DateTime(text.c_str()).getTime()));
        return failure != nullptr ? std::string(failure->function()) + " " + failure->message() : result;
    };
    while (random.steps(5000)) {
        char text[40];
        if (random.below(4) == 0) {
            std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u", random.below(10000), random.below(100),
                          random.below(100), random.below(100), random.below(100), random.below(100));
        } else {
            std::snprintf(text, sizeof text, "%04u-%02u-%02u %02u:%02u:%02u", 1890 + random.below(200),
                          1 + random.below(12), 1 + random.below(31), random.below(24), random.below(60),
                          random.below(60));
        }
        std::string changed = text;
        if (random.below(4) == 0)
            changed[random.below(static_cast<unsigned int>(changed.size()))] = " -:09+x\t/"[random.below(9)];
        if (random.below(8) == 0)
            changed.resize(random.below(20));
        if (random.below(8) == 0)
            changed += random.text(3, " 1:-x");
        EXPECT_EQ(outcome(changed), outcome(" " + changed)) << "'" << changed << "'";
    }
}

TEST_P(DateTimeZones, FieldsOfTheOtherTextsRoundTrip) {
    const test::TimeZone zone(GetParam());
    for (const time_t instant : randomInstants(100000)) {
        const DateTime when(instant);
        const std::string iso = isoOf(when);
        const std::string shortText = textOf(when, &DateTime::ToShortBuf);
        const std::string time = textOf(when, &DateTime::ToShortTimeBuf);
        if (textOf(when, &DateTime::ToISODateBuf) + " " + time != iso ||
            textOf(when, &DateTime::ToShortDateBuf) + " " + time != shortText)
            FAIL() << instant << " " << iso << " " << shortText << " " << time;
        int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
        char name[16];
        if (std::sscanf(textOf(when, &DateTime::ToBuf).c_str(), "%*s %15s %d, %d, %d:%d:%d", name, &day, &year, &hour,
                        &minute, &second) != 6)
            FAIL() << instant;
        const DateTime fromLong(year, DateTime::MonthFromName(name) + 1, day, hour, minute, second);
        if (std::sscanf(shortText.c_str(), "%d/%d/%d %d:%d:%d", &month, &day, &year, &hour, &minute, &second) != 6)
            FAIL() << shortText;
        const DateTime fromShort(year, month, day, hour, minute, second);
        if (fromLong.getTime() == instant && fromShort.getTime() == instant)
            continue;
        ASSERT_TRUE(isShownTwice(instant)) << instant << " " << iso;
        ASSERT_EQ(isoOf(fromLong), iso) << instant;
        ASSERT_EQ(isoOf(fromShort), iso) << instant;
    }
}

TEST_P(DateTimeZones, MergeRestoresSplitDates) {
    const test::TimeZone zone(GetParam());
    for (const time_t instant : randomInstants(10000)) {
        if (!isTimeWide && instant < INT32_MIN + 86400)
            continue; // that midnight cannot be represented
        const DateTime when(instant);
        const DateTime date = when.getDate();
        ASSERT_EQ(isoOf(date), textOf(when, &DateTime::ToISODateBuf) + " 00:00:00");
        ASSERT_EQ(DateTime(when.getYear(), when.getMonth() + 1, when.getDayOfMonth()).getTime(), date.getTime());
        ASSERT_EQ(isoOf(DateTime::Merge(date, when)), isoOf(when));
    }
}

TEST_P(DateTimeZones, TextsAgreeWithTheDateCommand) {
    const test::TimeZone zone(GetParam());
    const std::vector<time_t> instants = randomInstants(10000);
    std::string input;
    for (const time_t instant : instants)
        input += "@" + std::to_string(instant) + "\n";
    const std::vector<std::string> local =
        askDate(input, GetParam(), "%A %B %-d, %Y, %T|%F %T|%-m/%d/%Y %T|%-m/%d/%Y|%F|%T|%j %w");
    const std::vector<std::string> utc = askDate(input, utcZone, "%a, %d %b %Y %T GMT");
    ASSERT_EQ(local.size(), instants.size());
    ASSERT_EQ(utc.size(), instants.size());
    for (std::size_t i = 0; i < instants.size(); ++i) {
        const DateTime when(instants[i]);
        std::string texts;
        for (std::size_t form = 0; form < 6; ++form)
            texts += textOf(when, forms[form].toArray) + "|";
        char days[16];
        std::snprintf(days, sizeof days, "%03d %d", when.getDayOfYear() + 1, static_cast<int>(when.getDayOfWeek()));
        ASSERT_EQ(texts + days, local[i]) << instants[i];
        ASSERT_EQ(textOf(when, &DateTime::ToRFC822Buf), utc[i]) << instants[i];
    }
}

TEST_P(DateTimeZones, SecondsAgreeWithTheDateCommand) {
    const test::TimeZone zone(GetParam());
    std::vector<time_t> instants;
    std::string input;
    for (const time_t instant : randomInstants(10100)) {
        if (isShownTwice(instant) || instants.size() == 10000)
            continue;
        instants.push_back(instant);
        input += isoOf(DateTime(instant)) + "\n";
    }
    ASSERT_EQ(instants.size(), 10000U);
    const std::vector<std::string> seconds = askDate(input, GetParam(), "%s");
    const std::vector<std::string> texts = linesOf(input);
    ASSERT_EQ(seconds.size(), instants.size());
    for (std::size_t i = 0; i < instants.size(); ++i) {
        ASSERT_EQ(std::to_string(DateTime(texts[i].c_str()).getTime()), seconds[i]) << texts[i];
        ASSERT_EQ(std::to_string(instants[i]), seconds[i]) << texts[i];
    }
}

TEST_P(DateTimeZones, LimitsOf32BitTimeRoundTrip) {
    const test::TimeZone zone(GetParam());
    for (int distance = 0; distance < 100; ++distance) {
        for (const long long seconds : {INT32_MAX - 997LL * distance, INT32_MIN + 997LL * distance}) {
            const DateTime when(seconds);
            EXPECT_EQ(DateTime(isoOf(when).c_str()).getTime(), seconds) << isoOf(when);
            EXPECT_EQ(DateTime::fromRFC822(textOf(when, &DateTime::ToRFC822Buf).c_str()).getTime(), seconds);
        }
    }
}

TEST(DateTime, InvalidTextsThrowFromTheConstructor) {
    const test::TimeZone zone(utcZone);
    for (const Formatter formatter : {&DateTime::ToShortBuf, &DateTime::ToShortDateBuf, &DateTime::ToISODateBuf,
                                      &DateTime::ToShortTimeBuf, &DateTime::ToRFC822Buf}) {
        const std::string text = textOf(DateTime(exampleInstant), formatter);
        EXPECT_FAILURE_WITH_FLAG(DateTime(text.c_str()), 3591, "ut_DateTime", fromTextName, "Invalid Date", false);
    }
}

} // namespace
