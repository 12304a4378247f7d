#include "ut_Text.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <new>
#include <set>
#include <string>
#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "LogCapture.h"
#include "TemporaryDirectory.h"
#include "TimeZone.h"
#include "fw_StableStringRepository.h"
#include "ut_Arguments.h"
#include "ut_BufferStream.h"
#include "ut_CircularStream.h"
#include "ut_DirIterator.h"
#include "ut_Environment.h"
#include "ut_FCPortAddress.h"
#include "ut_ISCSIPortAddress.h"
#include "ut_Misc.h"
#include "ut_Options.h"
#include "ut_Path.h"
#include "ut_PortAddressArray.h"
#include "ut_TokenSet.h"
#include "ut_URL.h"
#include "ut_VirtualGetStream.h"

namespace {

using utility::DateTime;
using utility::FCPortAddress;
using utility::fromText;
using utility::IPV4Address;
using utility::IPV6Address;
using utility::ISCSIPortAddress;
using utility::PortAddress;
using utility::PutStream;
using utility::readableText;
using utility::SerialNumber;
using utility::toText;
using utility::WWN;

constexpr const char* wwnText = "500a09818d5f1234";
constexpr const char* serialText = "00c0ff112233aabb4455667788000000";

template<typename Value, typename = void>
constexpr bool hasText = false;
template<typename Value>
constexpr bool hasText<Value, std::void_t<decltype(toText(std::declval<Value>()))>> = true;

static_assert(hasText<stringtoken>, "a token has a text");
static_assert(!hasText<int> && !hasText<unsigned short> && !hasText<unsigned long>, "a number is not a token");
static_assert(hasText<const WWN&> && hasText<WWN> && hasText<WWN&>, "any reference to an object");

ISCSIPortAddress portal(const char* address, unsigned int port, const char* name) {
    if (std::strchr(address, ':') != nullptr) {
        IPV6Address ip(address);
        return {ip, port, name};
    }
    IPV4Address ip(address);
    return {ip, port, name};
}

TEST(Text, UsageExample) {
    const utility::IPV4Address address("10.0.0.1");
    std::string text = utility::toText(address);
    EXPECT_EQ(text, "10.0.0.1");
    text += utility::toText([](utility::PutStream& out) { out.PutF("/%d", 24); });
    EXPECT_EQ(text, "10.0.0.1/24");
    EXPECT_TRUE(utility::fromText<utility::WWN>("500a09818d5f1234").has_value());
    EXPECT_FALSE(utility::fromText<utility::WWN>("500a").has_value());
}

TEST(Text, IdentifiersHaveTheTextThatTheyWrite) {
    EXPECT_EQ(toText(IPV6Address("FE80::1")), "fe80::1");
    EXPECT_EQ(toText(IPV6Address("fe80:1111:2222:3333:4444:5555:6666:7777")),
              "fe80:1111:2222:3333:4444:5555:6666:7777");
    EXPECT_EQ(toText(WWN(wwnText)), wwnText);
    EXPECT_EQ(toText(SerialNumber(serialText)), serialText);
    EXPECT_EQ(toText(FCPortAddress(FCPortAddress::WWN_TYPE_0, wwnText)), wwnText);
    const ISCSIPortAddress port = portal("10.1.2.3", 3260, "tgt1");
    const PortAddress& base = port;
    EXPECT_EQ(toText(base), "10.1.2.3:3260[tgt1]");
    EXPECT_EQ(toText(portal("::1", 0, std::string(223, 'n').c_str())), "::1[" + std::string(223, 'n') + "]");
}

TEST(Text, AnArrayOfPortsHasATextOfAnyLength) {
    utility::PortAddressArray ports(0);
    std::string expected;
    for (int i = 0; i < 100; ++i) {
        const ISCSIPortAddress port =
            portal("fe80:1111:2222:3333:4444:5555:6666:7777", 3260, std::string(200, 'n').c_str());
        ports.Append(port.clone());
        expected += (i > 0 ? "," : "") + toText(port);
    }
    EXPECT_EQ(toText(ports), expected);
    EXPECT_EQ(toText(utility::PortAddressArray(0)), "");
}

TEST(Text, ATimeHasItsISOText) {
    const test::TimeZone zone("UTC");
    EXPECT_EQ(toText(DateTime(0)), "1970-01-01 00:00:00");
    EXPECT_EQ(toText(DateTime::Invalid()), "");
    const DateTime time("2024-03-05 09:07:03");
    EXPECT_EQ(toText([&time](PutStream& out) { time.ToRFC822Buffer(out); }), "Tue, 05 Mar 2024 09:07:03 GMT");
    EXPECT_EQ(toText([&time](char* buffer, int size) { time.ToBuf(buffer, size); }), "Tuesday March 5, 2024, 09:07:03");
}

TEST(Text, PathsAndUrlsHaveTheirWholeText) {
    const std::string longPath = "/" + std::string(5000, 'd') + "/file.txt";
    EXPECT_EQ(toText(utility::Path(longPath.c_str())), longPath);
    EXPECT_EQ(toText(utility::Path("")), "");
    EXPECT_EQ(toText(utility::DirIterator("/etc", "*")), "/etc/");
    const utility::URL url("abc://node:8080/a%20b?x=1");
    EXPECT_EQ(toText(url), "abc://node:8080/a b?x=1");
    for (const char* text : {"abc:", "//node", "/a", "?x", "", "abc:?x", "abc://node"}) {
        utility::URL parts(text);
        const char* const whole = parts.GetValue();
        EXPECT_EQ(toText(parts), whole != nullptr ? whole : "") << text;
    }
    utility::URL empty("", "", "/a", "");
    EXPECT_EQ(toText(empty), empty.GetValue());
    EXPECT_EQ(toText(utility::URL("", "", "", "")), "");
}

TEST(Text, TokensHaveTheirText) {
    EXPECT_EQ(toText(strings::GS.toToken("a name of this test")), "a name of this test");
    EXPECT_EQ(toText(stringtoken{0}), "");
}

TEST(Text, OptionsAndArgumentsHaveTheTextThatTheyParse) {
    char text[] = "name=a&name=b";
    utility::Options options;
    options.set(text);
    EXPECT_EQ(toText(options), text);
    EXPECT_EQ(toText(utility::Arguments("show file \"my notes\"")), "show file \"my notes\"");
    EXPECT_EQ(toText(utility::Arguments("")), "");
}

TEST(Text, WhatAFunctionWritesToAStreamMayHaveAnyLength) {
    for (int lines : {0, 1, 100, 20000}) {
        std::string expected;
        const auto write = [lines](PutStream& out) {
            for (int i = 0; i < lines; ++i)
                out.PutF("line %d\n", i);
        };
        for (int i = 0; i < lines; ++i)
            expected += "line " + std::to_string(i) + "\n";
        EXPECT_EQ(toText(write), expected);
    }
    const std::string block(100000, 'b');
    EXPECT_EQ(toText([&block](PutStream& out) { out.PutS(block.c_str()); }), block);
    EXPECT_EQ(toText([&block](PutStream& out) { out.PutF("%s.", block.c_str()); }), block + ".");
    EXPECT_EQ(toText([](PutStream& out) { out.PutB("a\0b", 3); }), std::string("a\0b", 3));
    const std::string tooLong(9000000, 'b');
    const auto fail = [&tooLong](PutStream& out) {
        out.PutS(tooLong.c_str());
    };
    EXPECT_EQ(CATCH_FAILURE(toText(fail))->code(), framework::Exception::FAILURE_BUFFER);
}

TEST(Text, AFunctionIsCalledAgainIfASingleWriteIsLong) {
    int calls = 0;
    const std::string block(3000, 'b');
    const auto write = [&](PutStream& out) {
        ++calls;
        out.PutF("call %d: ", calls);
        out.PutS(block.c_str());
    };
    EXPECT_EQ(toText(write), "call 2: " + block);
    EXPECT_EQ(calls, 2);
}

TEST(Text, TheVariablesOfTheProcessAreOneText) {
    const std::string text = toText([](PutStream& out) { utility::Environment::globalInformation(out, 0); });
    std::string expected;
    for (char** variable = environ; *variable != nullptr; ++variable)
        expected += std::string(*variable) + "\n";
    EXPECT_EQ(text, expected);
}

TEST(Text, WhatAFunctionThrowsIsThrown) {
    EXPECT_THROW(toText([](PutStream&) { throw 7; }), int);
    EXPECT_THROW(toText([](char*, unsigned int) { throw 7; }), int);
    const auto fail = [](char*, unsigned int) {
        throw new framework::Exception(framework::Exception::FAILURE_INDEX, "file", 1, "function", "message", true);
    };
    EXPECT_EQ(CATCH_FAILURE(toText(fail))->code(), framework::Exception::FAILURE_INDEX);
}

TEST(Text, ABufferGrowsUntilTheTextFits) {
    for (std::size_t length : {0U, 1U, 250U, 251U, 252U, 255U, 256U, 257U, 1020U, 5000U, 1000000U}) {
        const std::string expected(length, 't');
        int calls = 0;
        const auto truncate = [&expected, &calls](char* buffer, unsigned int size) {
            ++calls;
            const std::size_t count = std::min<std::size_t>(size - 1, expected.size());
            std::memcpy(buffer, expected.data(), count);
            buffer[count] = 0;
        };
        EXPECT_EQ(toText(truncate), expected);
        EXPECT_LE(calls, 7);
        const auto fail = [&expected](char* buffer, unsigned int size) {
            PutStream(buffer, static_cast<int>(size)).PutS(expected.c_str());
        };
        EXPECT_EQ(toText(fail), expected);
    }
}

TEST(Text, ABufferGrowsToOneMebibyte) {
    std::vector<unsigned int> sizes;
    const auto fill = [&sizes](char* buffer, unsigned int size) {
        sizes.push_back(size);
        std::memset(buffer, 'x', size);
    };
    EXPECT_EQ(toText(fill).size(), 1048576U);
    EXPECT_EQ(sizes, (std::vector<unsigned int>{256, 1024, 4096, 16384, 65536, 262144, 1048576}));
    const auto fail = [](char* buffer, unsigned int size) {
        PutStream(buffer, static_cast<int>(size)).Indent(static_cast<int>(size));
    };
    EXPECT_EQ(CATCH_FAILURE(toText(fail))->code(), framework::Exception::FAILURE_BUFFER);
}

TEST(Text, OperationsThatWriteToABuffer) {
    utility::TokenSet set(0);
    set.set(strings::GS.toToken("volume"));
    EXPECT_EQ(toText([&set](char* buffer, unsigned int size) { set.toStringList(buffer, size); }), "volume,");
    EXPECT_EQ(toText([](char* buffer, unsigned int size) {
                  utility::Misc::toDSdecimal(1234567LL, 3, buffer, static_cast<int>(size));
              }),
              "1.23 MB");
}

// Has `toBuffer` only.
struct Label {
    char* toBuffer(char* buffer, unsigned int size) const {
        PutStream(buffer, static_cast<int>(size)).PutS(text.c_str());
        return buffer;
    }
    std::string text;
};

TEST(Text, AnObjectThatWritesToABufferOnly) {
    EXPECT_EQ(toText(Label{"label"}), "label");
    EXPECT_EQ(toText(Label{std::string(3000, 'l')}), std::string(3000, 'l'));
}

TEST(Text, TheReadableBytesOfAStream) {
    utility::BufferStream stream(16);
    EXPECT_EQ(readableText(stream), "");
    stream.PutS("ports=4");
    EXPECT_EQ(readableText(stream), "ports=4");
    stream.ReadAdvance(6);
    EXPECT_EQ(readableText(stream), "4");
    EXPECT_EQ(readableText(stream), "4");
    stream.PutB("\0!", 2);
    EXPECT_EQ(readableText(stream), std::string_view("4\0!", 3));
    EXPECT_EQ(readableText(stream).data(), stream.pTail());
}

TEST(Text, NothingIsReadableWithoutStorageOrOutOfRange) {
    EXPECT_EQ(readableText(utility::GetStream()), "");
    EXPECT_EQ(readableText(PutStream(nullptr, 5)), "");
    utility::BufferStream stream(4);
    stream.PutS("abc");
    delete CATCH_FAILURE(stream.ReadAdvance(9)).release();
    EXPECT_EQ(readableText(stream), "");
    stream.Rewind();
    delete CATCH_FAILURE(stream.WriteAdvance(9)).release();
    EXPECT_EQ(readableText(stream).size(), 4U);
    stream.Rewind();
    delete CATCH_FAILURE(stream.WriteAdvance(-3)).release();
    EXPECT_EQ(readableText(stream), "");
}

TEST(Text, TheReadableBytesOfARingEndAtTheEndOfItsStorage) {
    utility::CircularStream ring(8);
    ring.SendOutputStream("ABCDEFGHIJ", 10);
    ring.StartInputStream();
    std::string text;
    while (!readableText(ring).empty()) {
        text += readableText(ring);
        ring.ReadAdvance(static_cast<int>(readableText(ring).size()));
    }
    EXPECT_EQ(text, "DEFGHIJ");
}

TEST(FromText, TheWholeTextMustBeAnIPv4Address) {
    EXPECT_EQ(toText(*fromText<IPV4Address>("10.0.0.1")), "10.0.0.1");
    EXPECT_EQ(toText(*fromText<IPV4Address>(std::string("0.0.0.0"))), "0.0.0.0");
    EXPECT_EQ(toText(*fromText<IPV4Address>(std::string_view("10.0.0.12", 8))), "10.0.0.1");
    for (const char* text : {"", "10.0.0", "10.0.0.256", "10.0.0.1 ", " 10.0.0.1", "10.0.0.1/24", "::1"})
        EXPECT_FALSE(fromText<IPV4Address>(text).has_value()) << text;
    EXPECT_FALSE(fromText<IPV4Address>(std::string_view("10.0.0.1\0x", 10)).has_value());
    EXPECT_FALSE(fromText<IPV4Address>(nullptr).has_value());
}

TEST(FromText, TheWholeTextMustBeAnIPv6Address) {
    EXPECT_EQ(toText(*fromText<IPV6Address>("FE80::1")), "fe80::1");
    for (const char* text : {"", ":", "fe80::1%eth0", "fe80::1 ", "10.0.0.1"})
        EXPECT_FALSE(fromText<IPV6Address>(text).has_value()) << text;
    EXPECT_FALSE(fromText<IPV6Address>(std::string_view("::1\0", 4)).has_value());
    EXPECT_FALSE(fromText<IPV6Address>(nullptr).has_value());
}

TEST(FromText, TheWholeTextMustBeDigits) {
    EXPECT_EQ(toText(*fromText<WWN>("500A09818D5F1234")), wwnText);
    EXPECT_EQ(toText(*fromText<SerialNumber>(serialText)), serialText);
    EXPECT_TRUE(fromText<SerialNumber>("ffffffffffffffffffffffffffffffff").has_value());
    for (const std::string& text : {std::string(), std::string(wwnText) + "0", std::string(wwnText, 15),
                                    std::string("500a09818d5f123g"), std::string(16, '\0'), std::string(serialText)})
        EXPECT_FALSE(fromText<WWN>(text).has_value()) << text;
    for (const std::string& text :
         {std::string(), std::string(serialText) + "0", std::string(serialText, 31), std::string(32, 'x')})
        EXPECT_FALSE(fromText<SerialNumber>(text).has_value()) << text;
    EXPECT_FALSE(fromText<WWN>(nullptr).has_value());
    EXPECT_FALSE(fromText<SerialNumber>(nullptr).has_value());
}

TEST(FromText, TimesInTheTwoForms) {
    const test::TimeZone zone("Europe/Berlin");
    const auto iso = fromText<DateTime>("2024-03-05 09:07:03");
    ASSERT_TRUE(iso.has_value());
    EXPECT_EQ(toText(*iso), "2024-03-05 09:07:03");
    EXPECT_EQ(fromText<DateTime>("Tue, 05 Mar 2024 08:07:03 GMT"), iso);
    for (const char* text :
         {"", " ", "x", "2024", "2024-03-05", "2024-3-5 9:7:3", "2024-02-30 00:00:00", "2024-03-05 24:00:00",
          "2024-03-05 09:07:03 ", "2024-03-05T09:07:03", "2024-03-05 09:07:03Z", "Wed, 05 Mar 2024 08:07:03 GMT",
          "Tue Mar 5 09:07:03 2024", "-1-01-01 00:00:00", "Wed, 31 Dec 1969 23:59:59 GMT"})
        EXPECT_FALSE(fromText<DateTime>(text).has_value()) << text;
    EXPECT_FALSE(fromText<DateTime>("2024-03-31 02:30:00").has_value()) << "skipped when daylight saving time begins";
    EXPECT_FALSE(fromText<DateTime>(std::string_view("2024-03-05 09:07:03\0", 20)).has_value());
    EXPECT_FALSE(fromText<DateTime>(nullptr).has_value());
}

TEST(FromText, NamesOfMonthsWeekdaysAndPortTypes) {
    EXPECT_EQ(fromText<DateTime::Month>("march"), DateTime::March);
    EXPECT_EQ(fromText<DateTime::Month>("Jan"), DateTime::January);
    EXPECT_EQ(fromText<DateTime::Month>("Marchx"), std::nullopt);
    EXPECT_EQ(fromText<DateTime::Month>(std::string_view("March\0", 6)), std::nullopt);
    EXPECT_EQ(fromText<DateTime::Weekday>("SUN"), DateTime::Sunday);
    EXPECT_EQ(fromText<DateTime::Weekday>(""), std::nullopt);
    EXPECT_EQ(fromText<PortAddress::PortType>("iscsi"), PortAddress::PORT_ISCSI);
    EXPECT_EQ(fromText<PortAddress::PortType>("sas"), std::nullopt);
    EXPECT_EQ(fromText<PortAddress::PortType>(nullptr), std::nullopt);
}

TEST(FromText, LogsNothing) {
    test::LogCapture log;
    for (const char* text : {"x", "2024-02-30 00:00:00", "2024-99-05 09:07:03", "Tue, 99 Mar 2024 08:07:03 GMT"}) {
        (void)fromText<WWN>(text);
        (void)fromText<IPV6Address>(text);
        (void)fromText<DateTime>(text);
    }
    EXPECT_EQ(log.count(), 0U);
}

// Expects that `values` are in strictly ascending order.
template<typename Value>
void expectAscending(const std::vector<Value>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        for (std::size_t k = 0; k < values.size(); ++k) {
            EXPECT_EQ(values[i] < values[k], i < k) << i << ", " << k;
            EXPECT_EQ(values[i] == values[k], i == k) << i << ", " << k;
            EXPECT_EQ(values[i] != values[k], i != k) << i << ", " << k;
        }
    }
}

template<typename Value>
void expectAllOperators(const Value& less, const Value& greater) {
    EXPECT_TRUE(less < greater && !(greater < less) && !(less < less));
    EXPECT_TRUE(greater > less && !(less > greater) && !(less > less));
    EXPECT_TRUE(less <= greater && !(greater <= less) && less <= less);
    EXPECT_TRUE(greater >= less && !(less >= greater) && less >= less);
}

TEST(Comparison, TimesAreOrderedBySecond) {
    expectAscending(std::vector<DateTime>{DateTime(-2), DateTime::Invalid(), DateTime(0), DateTime(1)});
    expectAllOperators(DateTime(1), DateTime(2));
    std::map<DateTime, int> events;
    events[DateTime(2)] = 2;
    events[DateTime(1)] = 1;
    EXPECT_EQ(events.begin()->second, 1);
}

TEST(Comparison, AddressesAreOrderedAsNumbers) {
    expectAscending(std::vector<IPV4Address>{IPV4Address("0.0.0.1"), IPV4Address("1.0.0.0"),
                                             IPV4Address("9.255.255.255"), IPV4Address("10.0.0.2"),
                                             IPV4Address("255.0.0.0")});
    expectAllOperators(IPV4Address("10.0.0.2"), IPV4Address("10.0.1.1"));
    expectAllOperators(IPV6Address("fe80::1"), IPV6Address("fe80::2"));
    expectAllOperators(WWN("500a09818d5f1234"), WWN("500a09818d5f1235"));
    expectAllOperators(SerialNumber(serialText), SerialNumber("00c0ff112233aabb4455667788000001"));
}

TEST(Comparison, PortAddressesAreOrderedByKindAndFields) {
    expectAscending(std::vector<FCPortAddress>{FCPortAddress(FCPortAddress::WWN_TYPE_0, "0000000000000001"),
                                               FCPortAddress(FCPortAddress::WWN_TYPE_1, "0000000000000001"),
                                               FCPortAddress(FCPortAddress::WWN_TYPE_0, "ff00000000000000")});
    expectAscending(std::vector<ISCSIPortAddress>{portal("9.0.0.1", 3260, "b"), portal("10.0.0.1", 0, ""),
                                                  portal("10.0.0.1", 80, "a"), portal("10.0.0.1", 80, "b"),
                                                  portal("10.0.0.1", 4000000000U, ""), portal("::1", 0, ""),
                                                  portal("::1", 80, ""), portal("::1:80", 0, "")});
    const FCPortAddress fibre(FCPortAddress::WWN_TYPE_0, wwnText);
    const ISCSIPortAddress iscsi = portal("0.0.0.0", 0, "");
    const PortAddress& left = fibre;
    const PortAddress& right = iscsi;
    EXPECT_TRUE(left < right);
    EXPECT_FALSE(right < left);
}

// Claims to be an iSCSI address.
class Impostor : public FCPortAddress {
public:
    using FCPortAddress::FCPortAddress;
    PortType getType() const override {
        return PORT_ISCSI;
    }
};

// An address of a kind that the library does not know.
class UnknownPort : public FCPortAddress {
public:
    using FCPortAddress::FCPortAddress;
    PortType getType() const override {
        return PORT_UNDEFINED;
    }
};

TEST(Comparison, PortAddressesOfOtherKinds) {
    const ISCSIPortAddress iscsi = portal("10.0.0.1", 0, "");
    const Impostor impostor(FCPortAddress::WWN_TYPE_0, wwnText);
    const PortAddress& claimed = impostor;
    EXPECT_THROW((void)(iscsi < claimed), std::bad_cast);
    const UnknownPort small(FCPortAddress::WWN_TYPE_0, "0000000000000001");
    const UnknownPort great(FCPortAddress::WWN_TYPE_0, "0000000000000002");
    EXPECT_TRUE(small < great);
    EXPECT_FALSE(great < small);
    EXPECT_TRUE(static_cast<const PortAddress&>(great) < iscsi);
}

} // namespace
