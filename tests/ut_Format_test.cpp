// `PutF` and `PutV` format common conversions themselves. Nobody may be able to tell: the bytes, those behind a
// truncated text too, and the lengths must be those of `vsnprintf`.

#include "internal/ut_Format.h"

#include <climits>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/ExpectFailure.h"
#include "support/PutV.h"
#include "support/RandomRun.h"
#include "ut_BufferStream.h"

namespace {

using test::putV;

// The formats are not constants, but they are built to match their arguments.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

std::string described(int wrote, std::size_t remaining, const std::string& format, const std::string& storage) {
    std::string message;
    if (wrote < 0 || static_cast<std::size_t>(wrote) > remaining) {
        message = "Didn't fit. wrote=" + std::to_string(wrote) + " remaining=" + std::to_string(remaining) + " msg='" +
                  format.substr(0, 90) + "'";
    }
    return message + "|" + storage;
}

template<typename... Arguments>
void expectSameWithCapacity(std::size_t capacity, const std::string& format, Arguments... arguments) {
    std::string expected(capacity + 1, '#');
    expected.front() = expected.back() = 0;
    const std::string untouched = expected;
    std::string direct = untouched;
    std::string listed = untouched;
    const int wrote = std::snprintf(&expected[0], expected.size(), format.c_str(), arguments...);
    if (wrote < 0)
        expected[0] = 0;

    utility::BufferStream stream(&direct[0], static_cast<int>(direct.size()), false);
    auto failure = test::failureOf([&] { stream.PutF(format.c_str(), arguments...); });
    const std::string message = failure != nullptr ? failure->message() : "";
    EXPECT_EQ(message + "|" + direct, described(wrote, capacity, format, expected)) << format;
    EXPECT_EQ(stream.WritePosition(), std::max(0, std::min(wrote, static_cast<int>(capacity)))) << format;

    utility::BufferStream listStream(&listed[0], static_cast<int>(listed.size()), false);
    failure = test::failureOf([&] { putV(listStream, format.c_str(), arguments...); });
    EXPECT_EQ((failure != nullptr ? failure->message() : "") + ("|" + listed), message + "|" + direct) << format;
}

template<typename... Arguments>
void expectSame(const std::string& format, Arguments... arguments) {
    const int length = std::snprintf(nullptr, 0, format.c_str(), arguments...);
    const int around = std::max(length, 0);
    for (const int capacity : {0, 1, 2, 5, std::max(around - 1, 0), around, around + 1, around + 60})
        expectSameWithCapacity(static_cast<std::size_t>(capacity), format, arguments...);

    // Without storage, the whole text is counted.
    utility::PutStream without;
    const auto failure = test::failureOf([&] { without.PutF(format.c_str(), arguments...); });
    EXPECT_EQ((failure != nullptr ? failure->message() : "") + std::string("|"), described(length, 0, format, ""));
}

template<typename Number>
void expectSameNumbers(const std::string& length) {
    using Limits = std::numeric_limits<Number>;
    const auto unsignedLargest = static_cast<Number>(-1);
    for (const Number value : {Number(0), Number(1), Number(9), Number(10), Number(99), Number(100), Number(-1),
                               Number(-10), Limits::min(), Limits::max(), unsignedLargest, Number(UINT_MAX),
                               static_cast<Number>(UINT_MAX + 1ULL), static_cast<Number>(9999999999ULL)}) {
        for (const char type : {'d', 'i', 'u', 'x', 'X'}) {
            for (const char* const flags : {"", "0", "-", "-0", "00"}) {
                for (const char* const width : {"", "2", "30"}) {
                    const std::string format = "<%" + std::string(flags) + width + length + type + ">";
                    expectSameWithCapacity(60, format, value);
                    expectSameWithCapacity(4, format, value);
                }
            }
        }
    }
}

TEST(Format, IntegersOfEachLength) {
    expectSameNumbers<int>("");
    expectSameNumbers<int>("h");
    expectSameNumbers<int>("hh");
    expectSameNumbers<long>("l");
    expectSameNumbers<long long>("ll");
    expectSameNumbers<std::make_signed_t<std::size_t>>("z");
}

TEST(Format, TextsCharactersAndPointers) {
    const std::string longText(300, 'x');
    for (const char* const text : {"", "p", "ports", "exactly sixteen.", "one more than that", longText.c_str()}) {
        for (const char* const format : {"%s", "%-s", "%9s|", "%-9s|", "%.3s|", "%.s", "%.0s", "%8.2s|", "%-8.2s|",
                                         "%.500s", "%.9999s", "%9999s", "%400.290s", "%-400s|"})
            expectSame(format, text);
    }
    for (const char* const format : {"%c", "<%3c>", "<%-3c>"}) {
        expectSame(format, 'a');
        expectSame(format, 0);
        expectSame(format, 0x1ff);
    }
    int object = 0;
    for (const char* const format : {"%p", "<%30p>", "<%-30p>"}) {
        expectSame(format, static_cast<void*>(&object));
        expectSame(format, reinterpret_cast<void*>(UINTPTR_MAX));
        expectSame(format, static_cast<void*>(nullptr));
    }
    expectSame("100%% of %%%s%%", "it");
    expectSame("no conversion");
    expectSame("");
}

TEST(Format, APrecisionReadsNoFurtherThanItsBytes) {
    const char unterminated[] = {'a', 'b', 'c'};
    char text[8];
    utility::BufferStream stream(text, sizeof text, false);
    stream.PutF("%.3s", unterminated);
    EXPECT_STREQ(text, "abc");
}

TEST(Format, NullTextsAreShownAsThePlatformShowsThem) {
    const char* volatile null = nullptr;
    for (const char* const format : {"%s", "%9s", "%-9s|", "%.3s", "%.5s", "%.6s", "%.7s", "%9.6s", "%.0s"})
        expectSame(format, static_cast<const char*>(null));
    expectSame("%s %d %s", "a", 5, static_cast<const char*>(null));
}

// Everything else goes to `vsnprintf` as a whole, with all arguments.
TEST(Format, OtherConversionsAfterCommonOnes) {
    for (const char* const format : {"%s %d %5.2f", "%-4s|%08d|%g", "%s %x %a", "%s %+d %f", "%s % d %f", "%s %#x %f",
                                     "%s %'d %f", "%s %.5d %f", "%s %12345d %f"})
        expectSame(format, "ports", 4242, 1.5);
    expectSame("%s %jd %f", "ports", std::intmax_t{4242}, 1.5);
    expectSame("%s %*d", "ports", 5, 42);
    expectSame("%s %*d", "ports", -5, 42);
    expectSame("%.*s|%d", 3, "ports", 42);
    expectSame("%2$s %1$d", 42, "ports");
    expectSame("%o %d", 8, 9);
    expectSame("%05s|", "ab");
    expectSame("%05c|%5%|", 'a');
    expectSame("%020p|%.3p", static_cast<void*>(nullptr), static_cast<void*>(nullptr));
    expectSame("%ls|%d", L"wide", 3);
    expectSame("%lc|%d", L'w', 3);
    expectSame("%d %", 3);
    expectSame("%d %y", 3);
    expectSame("%d%d%d%d%d%d%d%d", 1, 2, 3, 4, 5, 6, 7, 8);
    expectSame("%d%d%d%d%d%d%d%d%d%s", 1, 2, 3, 4, 5, 6, 7, 8, 9, "ten");
    // A wide character that the locale cannot show: the conversion fails.
    expectSame("%d %lc", 3, static_cast<std::wint_t>(0x20ac));
}

TEST(Format, ACountIsStoredForNAsThePlatformStoresIt) {
    char text[32];
    utility::BufferStream stream(text, sizeof text, false);
    int count = 0;
    // In memory that can be written, a hardened build may refuse the format: use a constant one.
    stream.PutF("%s=%d%n;", "ports", 4, &count);
    EXPECT_EQ(count, 7);
    EXPECT_STREQ(text, "ports=4;");
}

TEST(Format, WideFieldsAreCountedAsAWhole) {
    expectSame("%9999s%-9999d%09999x", "a", 5, 6);
}

// `vsnprintf` fails too, but needs seconds for it.
TEST(Format, ATextOfMoreThanTheLargestIntFails) {
    const std::string large(INT_MAX / 8 + 2, 'x');
    const char* const eighth = large.c_str();
    char text[8];
    utility::BufferStream stream(text, sizeof text, false);
    const char* const format = "%s%s%s%s%s%s%s%s";
    const auto failure =
        test::failureOf([&] { stream.PutF(format, eighth, eighth, eighth, eighth, eighth, eighth, eighth, eighth); });
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->message() + std::string("|"), described(-1, 7, format, ""));
    EXPECT_STREQ(text, "");
}

// Random formats of up to three conversions, with random arguments.

std::string randomPrefix(test::RandomRun& random, bool isNumber, bool hasPrecision) {
    std::string text = "%" + random.text(2, isNumber ? "0-" : "-");
    if (random.below(2) == 0)
        text += std::to_string(random.below(30) + 1);
    if (hasPrecision && random.below(2) == 0)
        text += "." + random.text(1, "0123456789");
    return text;
}

template<typename Number>
Number randomNumber(test::RandomRun& random) {
    return static_cast<Number>(random.bits() >> random.below(64));
}

template<int left, typename... Arguments>
void expectSameExtended(test::RandomRun& random, std::string format, Arguments... arguments) {
    format += random.below(4) == 0 ? "%%" : random.text(20, "ab =:\n\xc3");
    if constexpr (left == 0) {
        expectSameWithCapacity(random.below(80), format, arguments...);
    } else {
        const std::string type = std::string(1, "diuxX"[random.below(5)]);
        const std::string number = format + randomPrefix(random, true, false);
        const std::string other = format + randomPrefix(random, false, false);
        const std::string text = random.text(30, "ab\xc3\xa4");
        switch (random.below(8)) {
        case 0:
            return expectSameExtended<left - 1>(random, number + type, arguments..., randomNumber<int>(random));
        case 1:
            return expectSameExtended<left - 1>(random, number + (random.below(2) == 0 ? "h" : "hh") + type,
                                                arguments..., randomNumber<int>(random));
        case 2:
            return expectSameExtended<left - 1>(random, number + "l" + type, arguments..., randomNumber<long>(random));
        case 3:
            return expectSameExtended<left - 1>(random, number + "ll" + type, arguments...,
                                                randomNumber<long long>(random));
        case 4:
            return expectSameExtended<left - 1>(random, number + "z" + type, arguments...,
                                                randomNumber<std::size_t>(random));
        case 5:
            return expectSameExtended<left - 1>(random, other + "c", arguments..., randomNumber<int>(random));
        case 6:
            return expectSameExtended<left - 1>(random, other + "p", arguments...,
                                                reinterpret_cast<void*>(randomNumber<std::uintptr_t>(random)));
        default:
            return expectSameExtended<left - 1>(random, format + randomPrefix(random, false, true) + "s", arguments...,
                                                text.c_str());
        }
    }
}

TEST(Format, RandomFormats) {
    test::RandomRun random;
    while (random.steps(3000)) {
        expectSameExtended<0>(random, "");
        expectSameExtended<1>(random, "");
        expectSameExtended<2>(random, "");
        expectSameExtended<3>(random, "");
    }
}

#pragma GCC diagnostic pop

} // namespace
