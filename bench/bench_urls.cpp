// URLs beside plain loops over the bytes.

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "bench.h"
#include "ut_URL.h"

namespace bench {
namespace {

unsigned int digit(char c) {
    if (c >= '0' && c <= '9')
        return static_cast<unsigned int>(c - '0');
    return static_cast<unsigned int>((c | 0x20) - 'a' + 10);
}

// The loops are not inlined and not fitted to their arguments, so that a call costs the same as one of the library.

// Decodes into `out` and returns the end of the text.
[[gnu::noipa]] char* decode(const char* text, std::size_t length, char* out) {
    for (std::size_t index = 0; index < length; ++index) {
        if (text[index] == '%' && index + 2 < length) {
            *out++ = static_cast<char>(digit(text[index + 1]) << 4 | digit(text[index + 2]));
            index += 2;
        } else {
            *out++ = text[index];
        }
    }
    *out = 0;
    return out;
}

// Four parts, decoded into `out` one after another.
struct Parts {
    char* part[4];
};

[[gnu::noipa]] Parts split(const char* text, char* out) {
    Parts parts{};
    std::size_t begin = 0;
    std::size_t end = 0;
    const auto cut = [&](std::size_t index) {
        parts.part[index] = out;
        out = decode(text + begin, end - begin, out) + 1;
    };
    while (text[end] != ':')
        ++end;
    cut(0);
    begin = end += 3;
    while (text[end] != '/')
        ++end;
    cut(1);
    begin = end;
    while (text[end] != '?')
        ++end;
    cut(2);
    begin = ++end;
    while (text[end] != 0)
        ++end;
    cut(3);
    return parts;
}

std::string pathOf(std::size_t length) {
    std::string path = "/";
    while (path.size() < length)
        path += "volume-0123456%20";
    path.resize(length - length % 17 + 1);
    return path;
}

} // namespace

void benchUrls(Bench& bench) {
    const std::string path = pathOf(1000);
    std::vector<char> out(200000);
    utility::URL url(nullptr);
    const auto ours = [&](long) {
        url.clear();
        keep(url.decodeAndAlloc(path.c_str(), static_cast<unsigned int>(path.size())));
    };
    const auto theirs = [&](long) {
        decode(path.c_str(), path.size(), out.data());
        keep(out);
    };
    theirs(0);
    const char* const decoded = url.decodeAndAlloc(path.c_str(), static_cast<unsigned int>(path.size()));
    bench.row({"URL, decode, each byte", "loop", 3, static_cast<double>(path.size())},
              decoded != nullptr && std::strcmp(decoded, out.data()) == 0, ours, theirs);

    const std::string text = "abc://node.example:8080" + path + "?name=a%20b";
    const utility::URL parsed(text.c_str());
    const Parts parts = split(text.c_str(), out.data());
    const bool same =
        std::strcmp(parsed.GetScheme(), parts.part[0]) == 0 && std::strcmp(parsed.GetAuthority(), parts.part[1]) == 0 &&
        std::strcmp(parsed.GetPath(), parts.part[2]) == 0 && std::strcmp(parsed.GetQuery(), parts.part[3]) == 0;
    bench.row(
        {"URL, parse, each byte", "loop", 3, static_cast<double>(text.size())}, same,
        [&](long) {
            const utility::URL object(text.c_str());
            keep(object);
        },
        [&](long) { keep(split(text.c_str(), out.data())); });

    for (const std::size_t size : {std::size_t{100}, std::size_t{1000}, std::size_t{10000}, std::size_t{100000}}) {
        const std::string some = pathOf(size);
        bench.point(
            "URL, decode, each byte", "loop", size,
            [&](long) {
                url.clear();
                keep(url.decodeAndAlloc(some.c_str(), static_cast<unsigned int>(some.size())));
            },
            [&](long) {
                decode(some.c_str(), some.size(), out.data());
                keep(out);
            },
            static_cast<double>(some.size()));
    }
}

} // namespace bench
