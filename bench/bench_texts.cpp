// Small writes to a stream that is kept: formatted text, blocks, texts and characters.

#include <cstddef>
#include <cstdio>
#include <ios>
#include <sstream>
#include <string>

#include <fmt/format.h>
#include <glib.h>

#include "bench.h"
#include "ut_BufferStream.h"

namespace bench {
namespace {

constexpr int capacity = 4096;

void format(Bench& bench) {
    utility::BufferStream stream(capacity);
    char text[capacity];
    const char* const name = hide("name");
    const auto ours = [&](long i) {
        stream.Rewind();
        stream.PutF("%s=%d:%02x", name, static_cast<int>(i), static_cast<unsigned int>(i & 255));
    };
    const auto printed = [&](long i) {
        std::snprintf(text, sizeof text, "%s=%d:%02x", name, static_cast<int>(i), static_cast<unsigned int>(i & 255));
        keep(text);
    };
    const auto formatted = [&](long i) {
        const auto result = fmt::format_to_n(text, sizeof text, "{}={}:{:02x}", name, static_cast<int>(i), i & 255);
        *result.out = 0;
        keep(text);
    };
    const auto streamed = [&](long i) {
        std::ostringstream out;
        out << name << '=' << static_cast<int>(i) << ':' << std::hex << (i & 255);
        return out.str();
    };
    const auto same = [&](auto& theirs) {
        ours(2024);
        theirs(2024);
        return std::string(stream.pBuffer()) == text;
    };
    const char* const work = "PutF(\"%s=%d:%02x\")";
    bench.row({work, "snprintf", 0.7}, same(printed), ours, printed);
    bench.row({work, "fmt::format_to_n", 1.0}, same(formatted), ours, formatted);
    ours(2024);
    bench.row({work, "new std::ostringstream", 0.25}, streamed(2024) == stream.pBuffer(), ours, [&](long i) {
        std::ostringstream out;
        out << name << '=' << static_cast<int>(i) << ':' << std::hex << (i & 255);
        keep(out);
    });
}

void blocks(Bench& bench, int size, const char* block, const char* textWork) {
    const std::string content(static_cast<std::size_t>(size), 'x');
    const char* const data = hide(content.c_str());
    const gssize length = hide(static_cast<gssize>(size));
    // Each starts again when the next block would not fit.
    const long perRound = (capacity - 1) / size;
    utility::BufferStream stream(capacity);
    std::string text;
    text.reserve(capacity);
    GString* const gtext = g_string_sized_new(capacity);
    std::ostringstream out;

    const auto putB = [&](long i) {
        if (i % perRound == 0)
            stream.Rewind();
        stream.PutB(data, static_cast<int>(length));
    };
    const auto putS = [&](long i) {
        if (i % perRound == 0)
            stream.Rewind();
        stream.PutS(data);
    };
    const auto append = [&](long i) {
        if (i % perRound == 0)
            text.clear();
        text.append(data, static_cast<std::size_t>(length));
        keep(text);
    };
    const auto appendText = [&](long i) {
        if (i % perRound == 0)
            text.clear();
        text.append(data);
        keep(text);
    };
    const auto gappend = [&](long i) {
        if (i % perRound == 0)
            g_string_truncate(gtext, 0);
        g_string_append_len(gtext, data, length);
    };
    const auto gappendText = [&](long i) {
        if (i % perRound == 0)
            g_string_truncate(gtext, 0);
        g_string_append(gtext, data);
    };
    const auto write = [&](long i) {
        if (i % perRound == 0)
            out.seekp(0);
        out.write(data, length);
    };
    const auto insert = [&](long i) {
        if (i % perRound == 0)
            out.seekp(0);
        out << data;
    };
    const auto same = [&](auto& ours, auto& standard, auto& glib, auto& stringStream) {
        out.str("");
        for (long i = 0; i < 3; ++i) {
            ours(i);
            standard(i);
            glib(i);
            stringStream(i);
        }
        const std::string written(stream.pBuffer(), static_cast<std::size_t>(stream.WritePosition()));
        return text == written && text == gtext->str && text == out.str();
    };

    bool equal = same(putB, append, gappend, write);
    bench.row({block, "std::string::append", 1.15}, equal, putB, append);
    bench.row({block, "g_string_append_len", 0.9}, equal, putB, gappend);
    bench.row({block, "std::ostringstream::write", 0.8}, equal, putB, write);
    equal = same(putS, appendText, gappendText, insert);
    bench.row({textWork, "std::string::append", 1.15}, equal, putS, appendText);
    bench.row({textWork, "g_string_append", 0.9}, equal, putS, gappendText);
    bench.row({textWork, "std::ostringstream <<", 0.8}, equal, putS, insert);
    g_string_free(gtext, TRUE);
}

void characters(Bench& bench) {
    utility::BufferStream stream(capacity);
    std::ostringstream out;
    std::string text;
    text.reserve(capacity);
    const auto ours = [&](long i) {
        if (i % 1024 == 0)
            stream.Rewind();
        stream.PutC(static_cast<char>('a' + i % 16));
    };
    const auto put = [&](long i) {
        if (i % 1024 == 0)
            out.seekp(0);
        out.put(static_cast<char>('a' + i % 16));
    };
    const auto pushBack = [&](long i) {
        if (i % 1024 == 0)
            text.clear();
        text.push_back(static_cast<char>('a' + i % 16));
        keep(text);
    };
    for (long i = 0; i < 1024; ++i) {
        ours(i);
        put(i);
        pushBack(i);
    }
    const bool same = text == stream.pBuffer() && text == out.str();
    bench.row({"PutC", "std::ostringstream::put", 0.9}, same, ours, put);
    bench.row({"PutC", "std::string::push_back", 2.5}, same, ours, pushBack);
}

} // namespace

void benchTexts(Bench& bench) {
    format(bench);
    blocks(bench, 16, "PutB, 16 bytes", "PutS, 16 bytes");
    blocks(bench, 256, "PutB, 256 bytes", "PutS, 256 bytes");
    characters(bench);
}

} // namespace bench
