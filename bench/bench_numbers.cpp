// Numbers and digests as text.

#include <cstddef>
#include <cstdio>
#include <cstring>

#include "bench.h"
#include "ut_Misc.h"
#include "ut_md5.h"

namespace bench {
namespace {

using utility::Misc;

[[gnu::noipa]] void hexByTable(const unsigned char* bytes, int count, char* text) {
    static constexpr char digits[] = "0123456789abcdef";
    for (int index = 0; index < count; ++index) {
        *text++ = digits[bytes[index] >> 4];
        *text++ = digits[bytes[index] & 15];
    }
    *text = 0;
}

} // namespace

void benchNumbers(Bench& bench) {
    unsigned char bytes[16];
    for (unsigned char index = 0; index < sizeof bytes; ++index)
        bytes[index] = static_cast<unsigned char>(index * 37 + 5);
    char ours[64];
    char theirs[64];
    const auto same = [&] {
        return std::strcmp(ours, theirs) == 0;
    };

    const auto hex = [&](long) {
        Misc::toHexString(bytes, sizeof bytes, ours, sizeof ours);
        keep(ours);
    };
    const auto table = [&](long) {
        hexByTable(bytes, sizeof bytes, theirs);
        keep(theirs);
    };
    hex(0);
    table(0);
    bench.row({"Misc::toHexString, 16 bytes", "loop with a table", 1.5}, same(), hex, table);

    // The peer has the digest only as bytes: its text is compared, but not timed.
    const char* const text = hide("0123456789abcdef");
    unsigned char digest[16];
    const auto md5Text = [&](long) {
        Misc::calc_md5(text, ours, sizeof ours);
        keep(ours);
    };
    const auto md5 = [&](long) {
        md5_state_t state;
        md5_init(&state);
        md5_append(&state, reinterpret_cast<const unsigned char*>(text), static_cast<int>(std::strlen(text)));
        md5_finish(&state, digest);
        keep(digest);
    };
    md5Text(0);
    md5(0);
    hexByTable(digest, sizeof digest, theirs);
    bench.row({"Misc::calc_md5, 16 bytes", "own MD5 without text", 1.3}, same(), md5Text, md5);

    const auto valueOf = [](long call) {
        return 1234567 + call % 1024 * 7919;
    };
    const auto decimal = [&](long call) {
        Misc::toDecimal(valueOf(call), ours, sizeof ours);
        keep(ours);
    };
    const auto groups = [&](long call) {
        const long value = valueOf(call);
        std::snprintf(theirs, sizeof theirs, "%ld,%03ld,%03ld", value / 1000000, value / 1000 % 1000, value % 1000);
        keep(theirs);
    };
    decimal(5);
    groups(5);
    bench.row({"Misc::toDecimal, 7 digits", "snprintf", 1.0}, same(), decimal, groups);

    const auto capacity = [&](long call) {
        Misc::toDSdecimal(valueOf(call), 3, ours, sizeof ours);
        keep(ours);
    };
    const auto megabytes = [&](long call) {
        const long value = valueOf(call);
        std::snprintf(theirs, sizeof theirs, "%ld.%02ld %s", value / 1000000, value / 10000 % 100, "MB");
        keep(theirs);
    };
    capacity(5);
    megabytes(5);
    bench.row({"Misc::toDSdecimal, 3 digits", "snprintf", 1.0}, same(), capacity, megabytes);
}

} // namespace bench
