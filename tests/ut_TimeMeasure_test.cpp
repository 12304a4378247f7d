#include "ut_TimeMeasure.h"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TimeZone.h"

using utility::TimeMeasure;

namespace {

constexpr bool wide = sizeof(long) > 4;

typedef char* (*Printer)(int64_t ts, char* buf, int size);

constexpr Printer all[] = {&TimeMeasure::printDuration, &TimeMeasure::printDurationMillisec,
                           &TimeMeasure::printTimestamp, &TimeMeasure::printTimestampMillisec};

std::string textOf(Printer printer, int64_t ts) {
    char text[64];
    std::memset(text, '#', sizeof text);
    EXPECT_EQ(printer(ts, text, sizeof text), text);
    return text;
}

std::string durationOf(int64_t ts) {
    return textOf(&TimeMeasure::printDuration, ts);
}

TEST(TimeMeasure, UsageExample) {
    char text[20];
    const int64_t start = 1500000000000000;
    const int64_t end = start + 3723000001;
    utility::TimeMeasure::printDuration(end - start, text, sizeof text); // text is "01:02:03.000001"
    EXPECT_STREQ(text, "01:02:03.000001");
}

TEST(TimeMeasure, TimestampIsTheCurrentTimeInMicroseconds) {
    timespec before = {};
    timespec after = {};
    clock_gettime(CLOCK_REALTIME, &before);
    const int64_t ts = TimeMeasure::getTimestamp();
    clock_gettime(CLOCK_REALTIME, &after);
    EXPECT_LE(static_cast<int64_t>(before.tv_sec) * 1000000 + before.tv_nsec / 1000, ts);
    EXPECT_LE(ts, static_cast<int64_t>(after.tv_sec) * 1000000 + after.tv_nsec / 1000);
}

TEST(TimeMeasure, SplitsATimestamp) {
    EXPECT_EQ(TimeMeasure::getSeconds(1709629623000250), 1709629623);
    EXPECT_EQ(TimeMeasure::getSubSeconds(1709629623000250), 250);
    EXPECT_EQ(TimeMeasure::getSeconds(999999), 0);
    EXPECT_EQ(TimeMeasure::getSubSeconds(999999), 999999);
    EXPECT_EQ(TimeMeasure::getSeconds(-1500000), -1);
    EXPECT_EQ(TimeMeasure::getSubSeconds(-1500000), -500000);
}

TEST(TimeMeasure, ComposesATimestamp) {
    EXPECT_EQ(TimeMeasure::timeStampFromParts(1709629623, 250), 1709629623000250);
    EXPECT_EQ(TimeMeasure::timeStampFromParts(0, 0), 0);
    EXPECT_EQ(TimeMeasure::timeStampFromParts(-1, -500000), -1500000);
    EXPECT_EQ(TimeMeasure::timeStampFromParts(INT32_MAX, INT32_MAX), 2147483647000000 + 2147483647);
    EXPECT_EQ(TimeMeasure::timeStampFromParts(INT32_MIN, INT32_MIN), -2147483648000000 - 2147483648LL);
}

TEST(TimeMeasure, PartsRoundTrip) {
    std::mt19937_64 random(5);
    for (int i = 0; i < 10000; ++i) {
        const int64_t ts = static_cast<int64_t>(random()) >> (wide ? i % 32 : 13);
        ASSERT_EQ(TimeMeasure::timeStampFromParts(TimeMeasure::getSeconds(ts), TimeMeasure::getSubSeconds(ts)), ts);
    }
}

TEST(TimeMeasure, ResultsAreClamped) {
    EXPECT_EQ(TimeMeasure::getSeconds(INT64_MAX), wide ? static_cast<long>(INT64_MAX / 1000000) : LONG_MAX);
    EXPECT_EQ(TimeMeasure::getSeconds(INT64_MIN), wide ? static_cast<long>(INT64_MIN / 1000000) : LONG_MIN);
    EXPECT_EQ(TimeMeasure::getSubSeconds(INT64_MIN), -775808);
    if (wide) {
        EXPECT_EQ(TimeMeasure::timeStampFromParts(LONG_MAX, 0), INT64_MAX);
        EXPECT_EQ(TimeMeasure::timeStampFromParts(LONG_MIN, 0), INT64_MIN);
        EXPECT_EQ(TimeMeasure::timeStampFromParts(1, LONG_MAX), INT64_MAX);
        EXPECT_EQ(TimeMeasure::timeStampFromParts(-1, LONG_MIN), INT64_MIN);
    }
}

TEST(TimeMeasure, PrintsDurationsOfMoreThanADay) {
    EXPECT_EQ(durationOf(3723000001), "01:02:03.000001");
    EXPECT_EQ(durationOf(90000000000), "25:00:00.000000");
    EXPECT_EQ(durationOf(0), "00:00:00.000000");
    EXPECT_EQ(durationOf(999999), "00:00:00.999999");
    EXPECT_EQ(durationOf(59999999), "00:00:59.999999");
    EXPECT_EQ(durationOf(3599999999), "00:59:59.999999");
    EXPECT_EQ(durationOf(3600000000000), "1000:00:00.000000");
    EXPECT_EQ(durationOf(359999999999999), "99999:59:59.999999");
}

TEST(TimeMeasure, PrintsTruncatedMilliseconds) {
    EXPECT_EQ(textOf(&TimeMeasure::printDurationMillisec, 3723000001), "01:02:03.000");
    EXPECT_EQ(textOf(&TimeMeasure::printDurationMillisec, 3723999999), "01:02:03.999");
    EXPECT_EQ(textOf(&TimeMeasure::printDurationMillisec, 90000001999), "25:00:00.001");
}

TEST(TimeMeasure, NegativeDurationsHaveSignsAtTheirParts) {
    EXPECT_EQ(durationOf(-3723000001), "-1:-2:-3.-00001");
    EXPECT_EQ(durationOf(-1), "00:00:00.-00001");
    EXPECT_EQ(textOf(&TimeMeasure::printDurationMillisec, -1500000), "00:00:-1.-500");
}

TEST(TimeMeasure, DurationsUseAtMost20Bytes) {
    EXPECT_EQ(durationOf(INT64_MAX), "2562047788:00:54.77");
    EXPECT_EQ(durationOf(INT64_MIN).size(), 19U);
    char storage[64];
    for (const Printer printer : {&TimeMeasure::printDuration, &TimeMeasure::printDurationMillisec}) {
        for (const int64_t ts : {INT64_MAX, INT64_MIN, int64_t{0}}) {
            std::memset(storage, '#', sizeof storage);
            EXPECT_EQ(printer(ts, storage, sizeof storage), storage);
            EXPECT_LE(std::strlen(storage), 19U);
            EXPECT_EQ(std::string(storage + 20, sizeof storage - 20), std::string(sizeof storage - 20, '#'));
        }
    }
}

TEST(TimeMeasure, TextIsTruncatedToAShortArray) {
    const test::TimeZone zone("UTC0");
    for (const Printer printer : all) {
        const std::string whole = textOf(printer, 3723456789);
        for (int size = 1; size <= static_cast<int>(whole.size()) + 2; ++size) {
            std::string storage(40, '#');
            EXPECT_EQ(printer(3723456789, storage.data(), size), storage.data());
            const std::string truncated = whole.substr(0, static_cast<std::size_t>(size) - 1);
            EXPECT_EQ(std::string(storage.c_str()), truncated);
            EXPECT_EQ(storage.substr(truncated.size() + 1), std::string(39 - truncated.size(), '#'));
        }
    }
}

TEST(TimeMeasure, WritesNothingToNullOrWithSizesBelowOne) {
    for (const Printer printer : all) {
        for (const int64_t ts : {int64_t{0}, INT64_MAX, INT64_MIN}) {
            EXPECT_EQ(printer(ts, nullptr, 20), nullptr);
            char untouched[] = "#";
            EXPECT_EQ(printer(ts, untouched, 0), untouched);
            EXPECT_EQ(printer(ts, untouched, -1), untouched);
            EXPECT_EQ(printer(ts, untouched, INT_MIN), untouched);
            EXPECT_STREQ(untouched, "#");
        }
    }
}

TEST(TimeMeasure, PrintsTheLocalTimeOfDay) {
    const int64_t ts = 1709629623004250;
    {
        const test::TimeZone zone("UTC0");
        EXPECT_EQ(textOf(&TimeMeasure::printTimestamp, ts), "09:07:03.004250");
        EXPECT_EQ(textOf(&TimeMeasure::printTimestampMillisec, ts), "09:07:03.004");
        EXPECT_EQ(textOf(&TimeMeasure::printTimestamp, 0), "00:00:00.000000");
        EXPECT_EQ(textOf(&TimeMeasure::printTimestampMillisec, 86399999999), "23:59:59.999");
    }
    const test::TimeZone zone("IST-5:30");
    EXPECT_EQ(textOf(&TimeMeasure::printTimestamp, ts), "14:37:03.004250");
    EXPECT_EQ(textOf(&TimeMeasure::printTimestampMillisec, ts), "14:37:03.004");
}

TEST(TimeMeasure, TimesOfDayBefore1970CountForward) {
    const test::TimeZone zone("UTC0");
    EXPECT_EQ(textOf(&TimeMeasure::printTimestamp, -1), "23:59:59.999999");
    EXPECT_EQ(textOf(&TimeMeasure::printTimestamp, -1000000), "23:59:59.000000");
    EXPECT_EQ(textOf(&TimeMeasure::printTimestampMillisec, -1000001), "23:59:58.999");
    EXPECT_EQ(textOf(&TimeMeasure::printTimestamp, -86400000000), "00:00:00.000000");
}

TEST(TimeMeasure, LimitsOf32BitTime) {
    const test::TimeZone zone("UTC0");
    EXPECT_EQ(textOf(&TimeMeasure::printTimestamp, 2147483647999999), "03:14:07.999999");
    EXPECT_EQ(textOf(&TimeMeasure::printTimestamp, -2147483648000000), "20:45:52.000000");
    EXPECT_EQ(textOf(&TimeMeasure::printTimestamp, 2147483648000000), wide ? "03:14:08.000000" : "");
    EXPECT_EQ(textOf(&TimeMeasure::printTimestamp, -2147483648000001), wide ? "20:45:51.999999" : "");
    EXPECT_EQ(textOf(&TimeMeasure::printTimestampMillisec, INT64_MAX), wide ? "04:00:54.775" : "");
    EXPECT_EQ(textOf(&TimeMeasure::printTimestampMillisec, INT64_MIN), wide ? "19:59:05.224" : "");
}

} // namespace
