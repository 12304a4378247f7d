#pragma once

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace test {

/// Random choices for one test. Every failure while it exists shows the seed; set the environment variable
/// VXUT_TEST_SEED to that seed to repeat the run.
///
///     test::RandomRun random;
///     while (random.steps(100000)) array.Append(random.below(10));
class RandomRun {
public:
    RandomRun() : RandomRun(chooseSeed()) {}
    RandomRun(const RandomRun&) = delete;
    RandomRun& operator=(const RandomRun&) = delete;

    /// Returns true `count` times, but false as soon as the test has failed.
    bool steps(int count) {
        return m_step++ < count && !testing::Test::HasFailure();
    }
    /// A number from 0 to `limit` - 1.
    unsigned int below(unsigned int limit) {
        return static_cast<unsigned int>(m_engine() % limit);
    }
    /// A number of 64 random bits.
    std::uint64_t bits() {
        const std::uint64_t high = m_engine();
        return high << 32 | m_engine();
    }
    /// A text of at most `longest` characters, each one of `alphabet`.
    std::string text(unsigned int longest, const std::string& alphabet) {
        std::string text(below(longest + 1), '\0');
        for (char& c : text)
            c = alphabet[below(static_cast<unsigned int>(alphabet.size()))];
        return text;
    }

private:
    explicit RandomRun(unsigned int seed)
        : m_trace(__FILE__, __LINE__, "VXUT_TEST_SEED=" + std::to_string(seed)), m_engine(seed), m_step(0) {}

    static unsigned int chooseSeed() {
        const char* const given = std::getenv("VXUT_TEST_SEED");
        return given != nullptr ? static_cast<unsigned int>(std::strtoul(given, nullptr, 10)) : std::random_device()();
    }

    testing::ScopedTrace m_trace;
    std::mt19937 m_engine;
    int m_step;
};

} // namespace test
