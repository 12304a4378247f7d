#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <ctime>
#include <string>
#include <vector>

/// Measures the library beside other libraries in one process.
///
/// A row compares one operation with the same operation of a peer. Each row is measured in two passes over the whole
/// table. In each pass, nine runs of both sides alternate, and the ratio of the medians is recorded. A row misses its
/// limit if the ratios of both passes exceed it by more than 10 %.
namespace bench {

/// Makes the compiler compute `value` and assume that all memory reachable from it is read and written here.
template<typename T>
void keep(const T& value) {
    asm volatile("" : : "r,m"(value) : "memory");
}

/// Returns `value`, about which the compiler then knows nothing.
template<typename T>
T hide(T value) {
    asm volatile("" : "+r"(value) : : "memory");
    return value;
}

/// What one row compares.
struct Row {
    const char* work;
    const char* peer;
    double limit = 0;                          ///< greatest ratio of our time to the peer's; 0: none
    double items = 1;                          ///< operations in one call of the functions measured
    clockid_t clock = CLOCK_THREAD_CPUTIME_ID; ///< which time counts
};

/// What was measured for a row: nanoseconds for each operation in the last pass, and the ratio in each pass.
struct Result {
    Row row;
    bool same;
    double ours;
    double theirs;
    std::vector<double> ratios;

    bool missed() const;
};

/// A row at one of several sizes, for a plot.
struct Point {
    std::string series;
    std::string peer;
    std::size_t size;
    double ours;
    double theirs;
};

class Bench {
public:
    /// Measures a row. `ours` and `theirs` are called with the number of the call, from 0 in each run. `same` is
    /// whether both have equal results; if not, the row is not measured.
    template<typename Ours, typename Theirs>
    void row(const Row& row, bool same, Ours ours, Theirs theirs) {
        Result& result = resultOf(row);
        result.same = same;
        if (!same)
            return;
        const Times times = compare(row, ours, theirs);
        result.ours = times.ours;
        result.theirs = times.theirs;
        result.ratios.push_back(times.ours / times.theirs);
        report(result);
    }

    /// Measures a point of a plot, only in the first pass.
    template<typename Ours, typename Theirs>
    void point(const char* series, const char* peer, std::size_t size, Ours ours, Theirs theirs, double items = 1) {
        if (m_pass > 1)
            return;
        const Times times = compare({series, peer, 0, items}, ours, theirs);
        m_points.push_back({series, peer, size, times.ours, times.theirs});
    }

    void beginPass() {
        ++m_pass;
        m_next = 0;
    }
    const std::vector<Result>& results() const {
        return m_results;
    }
    const std::vector<Point>& points() const {
        return m_points;
    }

private:
    static constexpr int runs = 9;
    static constexpr double runNanoseconds = 4e6;

    struct Times {
        double ours;
        double theirs;
    };

    template<typename Operation>
    static double run(clockid_t clock, Operation& operation, long calls) {
        const double begin = now(clock);
        for (long call = 0; call < calls; ++call)
            operation(call);
        return now(clock) - begin;
    }

    // Returns how many calls a run needs. This also warms the caches.
    template<typename Operation>
    static long calibrate(clockid_t clock, Operation& operation) {
        long calls = 1;
        while (run(clock, operation, calls) < runNanoseconds)
            calls *= 2;
        return calls;
    }

    template<typename Ours, typename Theirs>
    static Times compare(const Row& row, Ours& ours, Theirs& theirs) {
        const long ourCalls = calibrate(row.clock, ours);
        const long theirCalls = calibrate(row.clock, theirs);
        std::array<double, runs> ourTimes{};
        std::array<double, runs> theirTimes{};
        for (std::size_t index = 0; index < runs; ++index) {
            ourTimes[index] = run(row.clock, ours, ourCalls) / (static_cast<double>(ourCalls) * row.items);
            theirTimes[index] = run(row.clock, theirs, theirCalls) / (static_cast<double>(theirCalls) * row.items);
        }
        return {median(ourTimes), median(theirTimes)};
    }

    static double median(std::array<double, runs> times) {
        std::sort(times.begin(), times.end());
        return times[runs / 2];
    }

    static double now(clockid_t clock) {
        timespec time{};
        clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
    }

    Result& resultOf(const Row& row);
    static void report(const Result& result);

    int m_pass = 0;
    std::size_t m_next = 0;
    std::vector<Result> m_results;
    std::vector<Point> m_points;
};

// The families, one file each.
void benchTexts(Bench& bench);
void benchParameters(Bench& bench);
void benchMessages(Bench& bench);
void benchArrays(Bench& bench);
void benchDirectories(Bench& bench);
void benchMaps(Bench& bench);
void benchFiles(Bench& bench);
void benchValues(Bench& bench);
void benchNumbers(Bench& bench);
void benchUrls(Bench& bench);
void benchChecksums(Bench& bench);
void benchUtf8(Bench& bench);
void benchSwitches(Bench& bench);

} // namespace bench
