// Compares MD5 with OpenSSL's, over one block of data.

#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <cstddef>
#include <random>
#include <vector>

#include "ut_md5.h"

namespace {

std::vector<unsigned char> randomBytes(std::size_t size) {
    std::mt19937 random(1);
    std::vector<unsigned char> bytes(size);
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(random());
    return bytes;
}

void countBytes(benchmark::State& state) {
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void VXut(benchmark::State& state) {
    const std::vector<unsigned char> bytes = randomBytes(static_cast<std::size_t>(state.range(0)));
    unsigned char digest[16];
    for (auto _ : state) {
        md5_state_t md5;
        md5_init(&md5);
        md5_append(&md5, bytes.data(), static_cast<int>(bytes.size()));
        md5_finish(&md5, digest);
        benchmark::DoNotOptimize(digest);
    }
    countBytes(state);
}

// Reuses OpenSSL's context for all digests, as a caller concerned with speed does.
void OpenSSL(benchmark::State& state) {
    const std::vector<unsigned char> bytes = randomBytes(static_cast<std::size_t>(state.range(0)));
    unsigned char digest[16];
    EVP_MD_CTX* context = EVP_MD_CTX_new();
    EVP_MD* md5 = EVP_MD_fetch(nullptr, "MD5", nullptr);
    for (auto _ : state) {
        EVP_DigestInit_ex2(context, md5, nullptr);
        EVP_DigestUpdate(context, bytes.data(), bytes.size());
        EVP_DigestFinal_ex(context, digest, nullptr);
        benchmark::DoNotOptimize(digest);
    }
    EVP_MD_free(md5);
    EVP_MD_CTX_free(context);
    countBytes(state);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(16)->Arg(1024)->Arg(1 << 20);
}

BENCHMARK(VXut)->Name("md5/VXut")->Apply(sizes);
BENCHMARK(OpenSSL)->Name("md5/OpenSSL")->Apply(sizes);

} // namespace
