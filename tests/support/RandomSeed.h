#pragma once

#include <cstdlib>
#include <random>
#include <string>

namespace test {

/// The seed of a random run: the number in the environment variable VXUT_TEST_SEED, or else a random one.
///
///     const unsigned int seed = test::randomSeed();
///     SCOPED_TRACE(test::repeatWith(seed));
inline unsigned int randomSeed() {
    const char* given = std::getenv("VXUT_TEST_SEED");
    return given != nullptr ? static_cast<unsigned int>(std::strtoul(given, nullptr, 10)) : std::random_device()();
}

/// The environment setting that repeats the run.
inline std::string repeatWith(unsigned int seed) {
    return "VXUT_TEST_SEED=" + std::to_string(seed);
}

} // namespace test
