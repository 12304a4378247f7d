// The check for printable UTF-8 beside GLib's, which checks only the encoding, but strictly.

#include <cstddef>
#include <string>

#include <glib.h>

#include "bench.h"
#include "ut_Misc.h"

namespace bench {
namespace {

constexpr char ascii[] = "controller A, port 3: link up, 16 Gbit/s, no errors since the last reset. ";
constexpr char lines[] = "controller A\tport 3\tlink up\r\n";
constexpr char mixed[] =
    "Contr\xC3\xB4leur A, port 3 \xE2\x80\x93 vitesse 16 Gbit/s, \xC3\xA9tat v\xC3\xA9rifi\xC3\xA9 "
    "\xE2\x9C\x93, \xE6\x8E\xA7\xE5\x88\xB6\xE5\x99\xA8 \xF0\x9F\x98\x80. ";
constexpr char cyrillic[] = "\xD0\xBA\xD0\xBE\xD0\xBD\xD1\x82\xD1\x80\xD0\xBE\xD0\xBB\xD0\xBB\xD0\xB5\xD1\x80 ";
constexpr char chinese[] = "\xE6\x8E\xA7\xE5\x88\xB6\xE5\x99\xA8\xE7\xAB\xAF\xE5\x8F\xA3";
// 64 bytes.
constexpr char shortMixed[] = "Contr\xC3\xB4leur A \xE2\x80\x93 vitesse 16 Gbit/s, \xC3\xA9tat v\xC3\xA9rifi\xC3\xA9 "
                              "\xE2\x9C\x93 \xF0\x9F\x98\x80 fin";

bool check(const std::string& text) {
    return utility::Misc::isStringPrintableUtf8(text.data(), static_cast<unsigned int>(text.size()), "", "\t\n\r");
}

bool checkPeer(const std::string& text) {
    return g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) != FALSE;
}

// Returns repetitions of `piece`, padded with blanks.
std::string repeated(const std::string& piece, std::size_t size) {
    std::string text;
    while (text.size() + piece.size() <= size)
        text += piece;
    text.append(size - text.size(), ' ');
    return text;
}

void texts(Bench& bench, const Row& row, const char* piece, std::size_t size) {
    const std::string text = repeated(piece, size);
    bench.row(
        row, check(text) && checkPeer(text), [&](long) { keep(check(text)); }, [&](long) { keep(checkPeer(text)); });
}

} // namespace

void benchUtf8(Bench& bench) {
    constexpr std::size_t longText = 1 << 16;
    texts(bench, {"UTF-8 check, mixed, 64 bytes", "g_utf8_validate", 0.8}, shortMixed, 64);
    texts(bench, {"UTF-8 check, ASCII, 64 KiB", "g_utf8_validate", 0.2}, ascii, longText);
    texts(bench, {"UTF-8 check, mixed, 64 KiB", "g_utf8_validate", 0.4}, mixed, longText);
    texts(bench, {"UTF-8 check, lines, 64 KiB", "g_utf8_validate"}, lines, longText);
    texts(bench, {"UTF-8 check, Cyrillic, 64 KiB", "g_utf8_validate"}, cyrillic, longText);
    texts(bench, {"UTF-8 check, Chinese, 64 KiB", "g_utf8_validate"}, chinese, longText);
    for (const std::size_t size : {std::size_t{100}, std::size_t{1000}, std::size_t{10000}, std::size_t{100000}}) {
        const std::string text = repeated(mixed, size);
        bench.point(
            "UTF-8 check, mixed, each byte", "g_utf8_validate", size, [&](long) { keep(check(text)); },
            [&](long) { keep(checkPeer(text)); }, static_cast<double>(size));
    }
}

} // namespace bench
