#include <cerrno>
#include <cstring>
#include <string>

#include "Trial.h"
#include "fw_StableStringRepository.h"
#include "ut_Arguments.h"
#include "ut_BufferStream.h"
#include "ut_ControllerSelector.h"
#include "ut_DateTime.h"
#include "ut_DotStarFormatter.h"
#include "ut_FCPortAddress.h"
#include "ut_HostGroupFormatter.h"
#include "ut_IPV4Address.h"
#include "ut_IPV6Address.h"
#include "ut_ISCSIPortAddress.h"
#include "ut_Misc.h"
#include "ut_Options.h"
#include "ut_ParameterList.h"
#include "ut_Path.h"
#include "ut_SerialNumber.h"
#include "ut_Text.h"
#include "ut_TimeMeasure.h"
#include "ut_URL.h"
#include "ut_VolumeGroupFormatter.h"
#include "ut_WWN.h"
#include "ut_md5.h"

// Identifiers, text, time and checksums: nearly all of it works without any memory.

namespace faults {

namespace {

using utility::BufferStream;
using utility::DateTime;
using utility::FCPortAddress;
using utility::IPV4Address;
using utility::IPV6Address;
using utility::ISCSIPortAddress;
using utility::Misc;
using utility::PortAddress;
using utility::SerialNumber;
using utility::WWN;

std::vector<Row> identifierRows() {
    return {
        {"WWN: all", allocatesNothing,
         [](Trial& trial) {
             BufferStream out(64);
             trial.run([&] {
                 unsigned char bytes[8] = {1, 2, 3, 4, 5, 6, 7, 8};
                 char text[32];
                 WWN low("0102030405060708");
                 const WWN same(bytes);
                 WWN high;
                 high.fromBinary(bytes);
                 low.toPutStream(out);
                 return high.fromString("1102030405060708") && low.toBuffer(text, sizeof text) != nullptr &&
                        low == same && low != high && low < high && high > low && low.compare(high) < 0 &&
                        low.hash(255) == same.hash(255) && WWN::isWWN(text);
             });
         }},
        {"SerialNumber: all", allocatesNothing,
         [](Trial& trial) {
             BufferStream out(128);
             trial.run([&] {
                 unsigned char bytes[16] = {};
                 char text[40];
                 SerialNumber low("00c0ff112233aabb4455667788000000");
                 low.toByteArray(bytes);
                 const SerialNumber same(bytes);
                 SerialNumber high(bytes);
                 bytes[0] = 1;
                 high.set(bytes);
                 low.toPutStream(out);
                 low.toShortPutStream(out);
                 low.toShortBuffer(text, sizeof text);
                 return low.toBuffer(text, sizeof text) != nullptr && low.isValid() && low == same && low != high &&
                        low < high && high > low && low <= high && high >= low && low.compare(high) < 0 &&
                        low.hash(255) == same.hash(255) && SerialNumber::isSerialNumber(text) && low.fromString(text);
             });
         }},
        {"IPV4Address: all", allocatesNothing,
         [](Trial& trial) {
             BufferStream out(64);
             trial.run([&] {
                 unsigned char bytes[4] = {10, 1, 2, 3};
                 char text[20];
                 IPV4Address first("10.1.2.3");
                 const IPV4Address same(bytes);
                 IPV4Address other(1u);
                 const IPV4Address none;
                 other.set(2u);
                 other.set(10, 1, 2, 4);
                 first.toPutStream(out);
                 other.toArray(bytes);
                 return first.toBuffer(text, sizeof text) != nullptr && first == same && first != other &&
                        first.isValid() && none.isZero() && first.getValue() != 0 && other.fromString("10.1.2.3");
             });
         }},
        {"IPV4Address: toBuffer without space", "same bad_alloc",
         [](Trial& trial) {
             const IPV4Address address("10.1.2.3");
             trial.run([&] {
                 char text[4];
                 address.toBuffer(text, sizeof text);
             });
         }},
        {"IPV6Address: fromString", "false",
         [](Trial& trial) {
             IPV6Address address;
             trial.run([&] { return address.fromString("fe80::1"); });
             FAULTS_EXPECT(address.fromString("fe80::2") && address.isValid());
         }},
        {"IPV6Address: constructor from text", "false",
         [](Trial& trial) {
             trial.run([] { return !IPV6Address("fe80::1").isZero(); });
         }},
        {"IPV6Address: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             BufferStream out(64);
             trial.run([&] {
                 unsigned short groups[8] = {0xfe80, 0, 0, 0, 0, 0, 0, 1};
                 unsigned char bytes[16] = {0xfe, 0x80};
                 char text[48];
                 IPV6Address first(groups);
                 IPV6Address other(bytes);
                 other.set(bytes);
                 bytes[15] = 1;
                 const IPV6Address next(bytes);
                 const IPV6Address same(0xfe80, 0, 0, 0, 0, 0, 0, 1);
                 const IPV6Address allBytes(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
                 const bool ordered = other < next && next > other && other.compare(next) < 0;
                 first.toPutStream(out);
                 IPV6Address copy;
                 copy.set(&first);
                 return ordered && copy == first && same.isValid() && first != allBytes && !first.isV4() &&
                        first.isValid() && !first.isZero() && first.getHexChunk(0) != 0 &&
                        first.hash(255) == copy.hash(255) && first.toBuffer(text, sizeof text) != nullptr;
             });
         }},
        {"PortAddress: new", "bad_alloc",
         [](Trial& trial) {
             PortAddress* address = nullptr;
             trial.run([&] { address = new FCPortAddress(FCPortAddress::WWN_TYPE_0, "0102030405060708"); });
             PortAddress::operator delete(address);
         }},
        {"PortAddress: new without exceptions", "null",
         [](Trial& trial) {
             PortAddress* address = nullptr;
             trial.run([&] {
                 return address = new (std::nothrow) FCPortAddress(FCPortAddress::WWN_TYPE_0, "0102030405060708");
             });
             PortAddress::operator delete(address);
         }},
        {"FCPortAddress: clone", "bad_alloc",
         [](Trial& trial) {
             const FCPortAddress address(FCPortAddress::WWN_TYPE_0, "0102030405060708");
             PortAddress* copy = nullptr;
             trial.run([&] { copy = address.clone(); });
             FAULTS_EXPECT(copy == nullptr || *copy == address);
             PortAddress::operator delete(copy);
         }},
        {"ISCSIPortAddress: clone", "bad_alloc",
         [](Trial& trial) {
             IPV4Address host("10.1.2.3");
             const ISCSIPortAddress address(host, 3260, "name");
             PortAddress* copy = nullptr;
             trial.run([&] { copy = address.clone(); });
             FAULTS_EXPECT(copy == nullptr || *copy == address);
             PortAddress::operator delete(copy);
         }},
        {"Port addresses: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             BufferStream out(128);
             trial.run([&] {
                 unsigned char bytes[8] = {1, 2, 3, 4, 5, 6, 7, 8};
                 char text[64];
                 WWN name(bytes);
                 IPV4Address v4(1u);
                 IPV6Address v6;
                 FCPortAddress fc(FCPortAddress::WWN_TYPE_1, name);
                 const FCPortAddress same(FCPortAddress::WWN_TYPE_1, bytes);
                 const FCPortAddress copy(same);
                 alignas(FCPortAddress) char place[sizeof(FCPortAddress)];
                 const PortAddress* placed = new (place) FCPortAddress(copy);
                 ISCSIPortAddress first(v4, 3260, "name");
                 ISCSIPortAddress second(v6, 3260, "name");
                 const ISCSIPortAddress third(first);
                 fc.toPutStream(out);
                 bool whole = *placed == fc && fc == same && fc.getType() == PortAddress::PORT_FC &&
                              fc.getWWN() == name && fc.getWWNType() == FCPortAddress::WWN_TYPE_1 &&
                              fc.toBuffer(text, sizeof text) != nullptr && fc.fromString(text) && fc != first;
                 fc = same;
                 whole = whole && first == third && first.getIPType() != second.getIPType() && first.getIPV4() == v4 &&
                         second.getIPV6() == v6 && first.getPort() == 3260 && first.getName()[0] == 'n' &&
                         first.getType() == PortAddress::PORT_ISCSI && first.toBuffer(text, sizeof text) != nullptr &&
                         !first.fromString(text);
                 second = third;
                 first.PortAddress::getType();
                 return whole && PortAddress::StrToPortType("FC") == PortAddress::PORT_FC &&
                        PortAddress::PortTypeToNumeric(PortAddress::PORT_FC) !=
                            PortAddress::PortTypeToNumeric(PortAddress::PORT_ISCSI) &&
                        PortAddress::PortTypeFromLinkType(0) != 0 &&
                        utility::decodeControllerSelector(utility::CONTROLLER_A) == 'A';
             });
         }},
        {"Formatters: all", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 char name[64];
                 unsigned int level = 0;
                 utility::HostGroupLevel group = utility::HOST_GROUP_LEVEL_0;
                 utility::VolumeLevel volume = utility::VOLUME_LEVEL_0;
                 return utility::DotStarFormatter::getLevelAndName("name.*", name, sizeof name, level) &&
                        utility::HostGroupFormatter::getHostLevelAndName("name.*", name, sizeof name, group) &&
                        utility::VolumeGroupFormatter::getVolumeLevelAndName("name.*", name, sizeof name, volume);
             });
         }},
        {"ParameterList: all", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 char text[] = "one,two";
                 char token[16];
                 utility::ParameterList list(text, ',');
                 return list.hasNextToken() && list.nextToken(token) != nullptr;
             });
         }},
    };
}

std::vector<Row> miscRows() {
    return {
        {"Misc: toDecimal without space", "same bad_alloc",
         [](Trial& trial) {
             char text[4];
             trial.run([&] { Misc::toDecimal(123456L, text, sizeof text); });
         }},
        {"Misc: isStringPrintableUtf8 of a refused text", allocatesNothing,
         [](Trial& trial) {
             trial.run([] { return !Misc::isStringPrintableUtf8("a\xff", 2, "", ""); });
         }},
        {"Misc: truncateUtf8 of a partial character", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 char text[] = "a\xc3";
                 return Misc::truncateUtf8(text);
             });
         }},
        {"Misc: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 char text[80];
                 char lower[] = "ABC";
                 char split[] = "a b";
                 char* tokens[4];
                 unsigned char bytes[8] = {1, 2, 3, 4, 5, 6, 7, 8};
                 constexpr int size = sizeof text;
                 bool whole = Misc::makePowerOf2(5) == 8 && Misc::toHexString(1ull, true, text, size) != nullptr &&
                              Misc::toHexString(1u, true, text, size) != nullptr &&
                              Misc::toHexString(static_cast<unsigned short>(1), true, text, size) != nullptr &&
                              Misc::toHexString(static_cast<unsigned char>(1), true, text, size) != nullptr &&
                              Misc::toHexString(bytes, 8, text, size) != nullptr && Misc::isValidHexNumber("0x12") &&
                              Misc::isHexChar('a') && Misc::uint8FromHexString("12") == 0x12 &&
                              Misc::uint16FromHexString("12") == 0x12 && Misc::uint32FromHexString("12") == 0x12 &&
                              Misc::uint64FromHexString("12") == 0x12;
                 whole = whole && Misc::toDecimal(1234L, text, size) != nullptr &&
                         Misc::toDecimal(1234LL, text, size) != nullptr &&
                         Misc::toDSdecimal(1234567L, 3, text, size) != nullptr &&
                         Misc::toDSdecimal(1234567LL, 3, text, size) != nullptr &&
                         Misc::toIPV4String(1, text, size) != nullptr && Misc::toMacAddress(1, text, size) != nullptr &&
                         Misc::uint64FromMACAddress(bytes) != 0 && Misc::isStringPrintableAscii("abc") &&
                         Misc::isStringPrintableUtf8("abc", 3, "", "") &&
                         (Misc::escapeDoubleQuotes(text, "a\"b") != nullptr) && Misc::stringToLower(lower)[0] == 'a' &&
                         Misc::parseTokens(tokens, 4, split, " ") == 2;
                 Misc::sleepSeconds(0);
                 Misc::sleepMicroseconds(1);
                 errno = ENOENT;
                 whole = whole && Misc::getErrnoMsg(text, sizeof text) == ENOENT &&
                         Misc::crc_table(1, 0) == Misc::crc_table(1, 0) && Misc::calc_crc(lower, 3) != 0 &&
                         Misc::calc_md5("abc", text, size) == 2 && Misc::calc_md5_hex("abc", 3, text, size) != nullptr;
                 Misc::genpw("a", "b", "c", text, 33);
                 md5_state_t state;
                 md5_init(&state);
                 md5_append(&state, bytes, 8);
                 unsigned char digest[16];
                 md5_finish(&state, digest);
                 return whole;
             });
         }},
    };
}

std::vector<Row> timeRows() {
    return {
        {"DateTime: constructor from an invalid date", "same bad_alloc",
         [](Trial& trial) {
             trial.run([] { const DateTime invalid("no date"); });
         }},
        {"DateTime: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             BufferStream out(512);
             trial.run([&] {
                 char text[64];
                 constexpr int size = sizeof text;
                 const DateTime time(2024, 2, 29, 12, 30, 15);
                 const DateTime date(2024, 2, 29);
                 const DateTime parsed("2024-02-29 12:30:15");
                 tm fields = {};
                 time.toTM(&fields);
                 const DateTime again(&fields);
                 const DateTime later = time.AddSeconds(1).AddMinutes(1).AddHours(1).AddDays(1).AddWeeks(1);
                 const DateTime muchLater = later.AddMonths(1).AddYears(1);
                 timespec now = {};
                 DateTime::ClockTime(&now);
                 DateTime::dumpTM(&fields);
                 bool whole = again.Equals(time) && later.CompareTo(time) > 0 && DateTime::DiffTime(later, time) > 0 &&
                              !DateTime::Invalid().getEpochValid() && DateTime::Now().getEpochValid() &&
                              DateTime::Now(0).getEpochValid() && DateTime::Merge(date, time).Equals(time) &&
                              DateTime::Parse("2024-02-29 12:30:15").getYear() == 2024 &&
                              DateTime::fromRFC822("Thu, 29 Feb 2024 12:30:15 GMT").getEpochValid() &&
                              DateTime(0L).getTime() == 0;
                 time.SecondsSpan(later);
                 time.MinutesSpan(later);
                 time.HoursSpan(later);
                 time.DaysSpan(later);
                 time.WeeksSpan(later);
                 time.MonthsSpan(muchLater);
                 time.YearsSpan(muchLater);
                 whole = whole && DateTime::isLeapYear(2024) && DateTime::DaysInMonth(2024, 1) == 29 &&
                         DateTime::DaysInYear(2024) == 366 && DateTime::WeekdayName(DateTime::Sunday)[0] == 'S' &&
                         DateTime::ShortWeekdayName(DateTime::Sunday)[0] == 'S' &&
                         DateTime::MonthName(DateTime::May)[0] == 'M' &&
                         DateTime::ShortMonthName(DateTime::May)[0] == 'M' &&
                         DateTime::WeekdayFromName("Sunday") == DateTime::Sunday &&
                         DateTime::MonthFromName("May") == DateTime::May && time.getMonth() == DateTime::February &&
                         time.getDayOfMonth() == 29 && time.getDayOfWeek() == DateTime::Thursday &&
                         time.getDayOfYear() == 59 && time.getHour() == 12 && time.getMinute() == 30 &&
                         time.getSecond() == 15 && !time.isDST() && time.getDate().Equals(date) &&
                         time.getNextMinute().getSecond() == 0 && time.getNextDay().getDayOfMonth() == 1;
                 time.ToBuf(text, size);
                 time.ToISOBuf(text, size);
                 time.ToRFC822Buf(text, size);
                 time.ToShortBuf(text, size);
                 time.ToShortDateBuf(text, size);
                 time.ToISODateBuf(text, size);
                 time.ToShortTimeBuf(text, size);
                 time.ToBuffer(out);
                 time.ToISOBuffer(out);
                 time.ToRFC822Buffer(out);
                 time.ToShortBuffer(out);
                 time.ToShortDateBuffer(out);
                 time.ToISODateBuffer(out);
                 time.ToShortTimeBuffer(out);
                 return whole && parsed.getEpochValid();
             });
         }},
        {"TimeMeasure: all", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 using utility::TimeMeasure;
                 char text[40];
                 const std::int64_t now = TimeMeasure::getTimestamp();
                 TimeMeasure::printDuration(now, text, sizeof text);
                 TimeMeasure::printDurationMillisec(now, text, sizeof text);
                 TimeMeasure::printTimestamp(now, text, sizeof text);
                 TimeMeasure::printTimestampMillisec(now, text, sizeof text);
                 return TimeMeasure::timeStampFromParts(TimeMeasure::getSeconds(now),
                                                        TimeMeasure::getSubSeconds(now)) == now;
             });
         }},
    };
}

// A row of `toText`, with a text that is too long for the storage inside a `std::string`.
template<typename Object>
Row toTextRow(const std::string& name, const char* text, const char* expected) {
    return {"Text: toText of " + name, "bad_alloc", [text, expected](Trial& trial) {
                const Object object(text);
                trial.run([&] { return utility::toText(object) == expected; });
            }};
}

std::vector<Row> conversionRows() {
    const char* const longText = "/directory/of/a/file.txt";
    return {
        toTextRow<IPV6Address>("an address", "fe80:1111:2222:3333::1", "fe80:1111:2222:3333::1"),
        toTextRow<DateTime>("a time", "2024-02-29 12:30:15", "2024-02-29 12:30:15"),
        toTextRow<utility::Path>("a path", longText, longText),
        toTextRow<utility::URL>("a URL", "abc://node:8080/path?query", "abc://node:8080/path?query"),
        toTextRow<utility::Arguments>("arguments", "show the long file", "show the long file"),
        {"Text: toText of options", "bad_alloc",
         [](Trial& trial) {
             char text[] = "name=a long value of a name";
             utility::Options options;
             options.set(text);
             trial.run([&] { return utility::toText(options) == text; });
         }},
        {"Text: toText of a token", "bad_alloc",
         [](Trial& trial) {
             const stringtoken token = strings::GS.toToken("ut_FastSortedStringDirectory");
             trial.run([&] { return utility::toText(token) == "ut_FastSortedStringDirectory"; });
         },
         "the text of the token"},
        {"Text: toText of a buffer", "bad_alloc",
         [](Trial& trial) {
             trial.run([] {
                 return utility::toText([](char* buffer, unsigned int size) {
                            std::memset(buffer, 'x', size);
                        }).size() == 1048576;
             });
         }},
        {"Text: fromText of an invalid time", "same bad_alloc",
         [](Trial& trial) {
             trial.run([] { return utility::fromText<DateTime>("2024").has_value(); });
         }},
        {"Text: fromText of an IPv6 address", "false",
         [](Trial& trial) {
             trial.run([] { return utility::fromText<IPV6Address>("fe80::1").has_value(); });
         }},
        {"Text: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             BufferStream stream(64);
             stream.PutS("readable");
             const FCPortAddress port(FCPortAddress::WWN_TYPE_0, "0102030405060708");
             const FCPortAddress other(FCPortAddress::WWN_TYPE_1, "0102030405060708");
             trial.run([&] {
                 using utility::fromText;
                 const auto time = fromText<DateTime>("2024-02-29 12:30:15");
                 const auto address = fromText<IPV4Address>("255.255.255.255");
                 return time.has_value() && *time == DateTime(2024, 2, 29, 12, 30, 15) &&
                        *time < DateTime(2024, 3, 1) && address.has_value() && IPV4Address() < *address &&
                        fromText<WWN>("0102030405060708").has_value() && !fromText<WWN>("01").has_value() &&
                        fromText<SerialNumber>("00c0ff112233aabb4455667788000000").has_value() &&
                        fromText<DateTime::Month>("February").has_value() &&
                        fromText<DateTime::Weekday>("Thursday").has_value() &&
                        fromText<PortAddress::PortType>("iSCSI").has_value() &&
                        static_cast<const PortAddress&>(port) < other && utility::readableText(stream) == "readable";
             });
         }},
    };
}

} // namespace

std::vector<Row> textRows() {
    std::vector<Row> rows = identifierRows();
    add(rows, miscRows());
    add(rows, timeRows());
    add(rows, conversionRows());
    return rows;
}

} // namespace faults
