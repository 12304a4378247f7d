// Compares the 1-Wire CRC-8 with one table look-up per byte.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <random>
#include <vector>

#include "peer_crc.h"
#include "ut_Misc.h"

namespace {

std::vector<char> randomBytes(std::size_t size) {
    std::mt19937 random(1);
    std::vector<char> bytes(size);
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

using Crc = unsigned char (*)(char* data, int length);

void run(benchmark::State& state, Crc crc) {
    std::vector<char> bytes = randomBytes(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(crc(bytes.data(), static_cast<int>(bytes.size())));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    for (const int size : {1, 4, 7, 8, 15, 16, 24, 64, 1024, 4096, 1 << 20})
        benchmark->Arg(size);
}

BENCHMARK_CAPTURE(run, VXut, utility::Misc::calc_crc)->Name("crc/VXut")->Apply(sizes);
BENCHMARK_CAPTURE(run, ByteByByte, peerCrc)->Name("crc/ByteByByte")->Apply(sizes);

} // namespace
