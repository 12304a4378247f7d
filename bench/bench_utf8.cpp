// Compares the check for printable UTF-8 with GLib's, which checks only the encoding, but strictly.

#include <benchmark/benchmark.h>
#include <glib.h>

#include <cstddef>
#include <cstdlib>
#include <string>

#include "ut_Misc.h"

namespace {

using Check = bool (*)(const std::string& text);

bool checkVXut(const std::string& text) {
    return utility::Misc::isStringPrintableUtf8(text.data(), static_cast<unsigned int>(text.size()), "", "\t\n\r");
}

bool checkVXutWithDisallowed(const std::string& text) {
    return utility::Misc::isStringPrintableUtf8(text.data(), static_cast<unsigned int>(text.size()), "<>^", "\t\n\r");
}

bool checkGLib(const std::string& text) {
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

const std::string ASCII = "controller A, port 3: link up, 16 Gbit/s, no errors since the last reset. ";
const std::string LINES = "controller A\tport 3\tlink up\r\n";
const std::string MIXED =
    "Contr\xC3\xB4leur A, port 3 \xE2\x80\x93 vitesse 16 Gbit/s, \xC3\xA9tat v\xC3\xA9rifi\xC3\xA9 "
    "\xE2\x9C\x93, \xE6\x8E\xA7\xE5\x88\xB6\xE5\x99\xA8 \xF0\x9F\x98\x80. ";
const std::string CYRILLIC = "\xD0\xBA\xD0\xBE\xD0\xBD\xD1\x82\xD1\x80\xD0\xBE\xD0\xBB\xD0\xBB\xD0\xB5\xD1\x80 ";
const std::string CHINESE = "\xE6\x8E\xA7\xE5\x88\xB6\xE5\x99\xA8\xE7\xAB\xAF\xE5\x8F\xA3";

void runOn(benchmark::State& state, Check check, const std::string& piece) {
    const std::string text = repeated(piece, static_cast<std::size_t>(state.range(0)));
    if (!check(text))
        std::abort();
    for (auto _ : state)
        benchmark::DoNotOptimize(check(text));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(24)->Arg(1 << 16);
}

#define BENCHMARK_TEXT(name, piece)                                                                                    \
    BENCHMARK_CAPTURE(runOn, VXut, checkVXut, piece)->Name("utf8/" name "/VXut")->Apply(sizes);                        \
    BENCHMARK_CAPTURE(runOn, VXutWithDisallowed, checkVXutWithDisallowed, piece)                                       \
        ->Name("utf8/" name "/VXutWithDisallowed")                                                                     \
        ->Apply(sizes);                                                                                                \
    BENCHMARK_CAPTURE(runOn, GLib, checkGLib, piece)->Name("utf8/" name "/GLib")->Apply(sizes)

BENCHMARK_TEXT("ASCII", ASCII);
BENCHMARK_TEXT("Lines", LINES);
BENCHMARK_TEXT("Mixed", MIXED);
BENCHMARK_TEXT("Cyrillic", CYRILLIC);
BENCHMARK_TEXT("Chinese", CHINESE);

} // namespace
