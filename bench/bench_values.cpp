// Dates, addresses and identifiers as text beside the C library.

#include <cstdio>
#include <cstring>
#include <ctime>
#include <vector>

#include <arpa/inet.h>

#include "bench.h"
#include "ut_BufferStream.h"
#include "ut_DateTime.h"
#include "ut_IPV4Address.h"
#include "ut_IPV6Address.h"
#include "ut_SerialNumber.h"
#include "ut_WWN.h"

namespace bench {
namespace {

constexpr long samples = 64;

void dates(Bench& bench) {
    char ours[samples][32];
    char theirs[samples][32];
    const auto secondsOf = [](long call) {
        return 1709629623L + call % samples * 7654321;
    };
    const auto write = [&](long call) {
        utility::DateTime(secondsOf(call)).ToISOBuf(ours[call % samples], sizeof ours[0]);
    };
    const auto print = [&](long call) {
        const time_t seconds = secondsOf(call);
        tm fields{};
        localtime_r(&seconds, &fields);
        std::strftime(theirs[call % samples], sizeof theirs[0], "%Y-%m-%d %H:%M:%S", &fields);
        keep(theirs);
    };
    bool same = true;
    for (long call = 0; call < samples; ++call) {
        write(call);
        print(call);
        same = same && std::strcmp(ours[call], theirs[call]) == 0;
    }
    bench.row({"DateTime to ISO text", "localtime_r, strftime", 0.45}, same, write, print);

    time_t parsed = 0;
    time_t scanned = 0;
    const auto parse = [&](long call) {
        parsed = utility::DateTime(theirs[call % samples]).getTime();
        keep(parsed);
    };
    const auto scan = [&](long call) {
        tm fields{};
        strptime(theirs[call % samples], "%Y-%m-%d %H:%M:%S", &fields);
        fields.tm_isdst = -1;
        scanned = std::mktime(&fields);
        keep(scanned);
    };
    same = true;
    for (long call = 0; call < samples; ++call) {
        parse(call);
        scan(call);
        same = same && parsed == scanned && parsed == secondsOf(call);
    }
    bench.row({"DateTime from ISO text", "strptime, mktime", 0.9}, same, parse, scan);
}

// Compares texts of `Address` with those of the platform.
template<typename Address, typename Bytes, int family>
void addresses(Bench& bench, const std::vector<const char*>& texts, const Row& toText, const Row& fromText) {
    const std::size_t count = texts.size();
    std::vector<Address> ours(count);
    std::vector<Bytes> theirs(count);
    char ourText[64];
    char theirText[64];
    bool same = true;
    for (std::size_t index = 0; index < count; ++index) {
        same = same && ours[index].fromString(texts[index]) && inet_pton(family, texts[index], &theirs[index]) == 1 &&
               std::memcmp(&ours[index], &theirs[index], sizeof theirs[index]) == 0;
        ours[index].toBuffer(ourText, sizeof ourText);
        inet_ntop(family, &theirs[index], theirText, sizeof theirText);
        same = same && std::strcmp(ourText, theirText) == 0;
    }
    bench.row(
        toText, same,
        [&](long call) {
            ours[static_cast<std::size_t>(call) % count].toBuffer(ourText, sizeof ourText);
            keep(ourText);
        },
        [&](long call) {
            inet_ntop(family, &theirs[static_cast<std::size_t>(call) % count], theirText, sizeof theirText);
            keep(theirText);
        });
    bench.row(
        fromText, same,
        [&](long call) {
            const std::size_t index = static_cast<std::size_t>(call) % count;
            ours[index].fromString(texts[index]);
            keep(ours);
        },
        [&](long call) {
            const std::size_t index = static_cast<std::size_t>(call) % count;
            inet_pton(family, texts[index], &theirs[index]);
            keep(theirs);
        });
}

void identifiers(Bench& bench) {
    unsigned char w[8] = {0x50, 0x0a, 0x09, 0x81, 0x8d, 0x5f, 0x12, 0x34};
    unsigned char s[16] = {0x00, 0xc0, 0xff, 0x11, 0x22, 0x33, 0, 0, 0x44, 0x55, 0x66, 0x77, 0x88, 0, 0, 0};
    const utility::WWN wwn(w);
    const utility::SerialNumber number(s);
    utility::BufferStream stream(64);
    char text[64];
    keep(w);
    keep(s);

    const auto putWwn = [&](long) {
        stream.Rewind();
        wwn.toPutStream(stream);
    };
    const auto printWwn = [&](long) {
        std::snprintf(text, sizeof text, "%02x%02x%02x%02x%02x%02x%02x%02x", w[0], w[1], w[2], w[3], w[4], w[5], w[6],
                      w[7]);
        keep(text);
    };
    putWwn(0);
    printWwn(0);
    bench.row({"WWN::toPutStream", "snprintf", 0.15}, std::strcmp(stream.pBuffer(), text) == 0, putWwn, printWwn);

    char buffer[64];
    wwn.toBuffer(buffer, sizeof buffer);
    bench.row(
        {"WWN::toBuffer", "snprintf", 0.2}, std::strcmp(buffer, text) == 0,
        [&](long) {
            wwn.toBuffer(buffer, sizeof buffer);
            keep(buffer);
        },
        printWwn);

    const auto putNumber = [&](long) {
        stream.Rewind();
        number.toPutStream(stream);
    };
    const auto printNumber = [&](long) {
        std::snprintf(text, sizeof text, "%02x%02x%02x%02x%02x%02x%02x%02x%02x%02x%02x%02x%02x%02x%02x%02x", s[0], s[1],
                      s[2], s[3], s[4], s[5], s[6], s[7], s[8], s[9], s[10], s[11], s[12], s[13], s[14], s[15]);
        keep(text);
    };
    putNumber(0);
    printNumber(0);
    bench.row({"SerialNumber::toPutStream", "snprintf", 0.15}, std::strcmp(stream.pBuffer(), text) == 0, putNumber,
              printNumber);
}

} // namespace

void benchValues(Bench& bench) {
    dates(bench);
    addresses<utility::IPV4Address, in_addr, AF_INET>(
        bench, {"10.0.0.1", "192.168.100.200", "172.16.31.9", "255.255.255.255"}, {"IPv4 to text", "inet_ntop", 0.3},
        {"IPv4 from text", "inet_pton", 1.05});
    addresses<utility::IPV6Address, in6_addr, AF_INET6>(
        bench, {"fe80::1", "2001:db8:85a3::8a2e:370:7334", "::1", "2001:db8:1:2:3:4:5:6"},
        {"IPv6 to text", "inet_ntop", 1.1}, {"IPv6 from text", "inet_pton", 1.7});
    identifiers(bench);
}

} // namespace bench
