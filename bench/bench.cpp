// Measures every family in two passes, prints the table, and writes it for scripts/lib/performance.py.
//
//   bench [--fail-on-miss] [FAMILY...] [--output FILE]
//
// Exits with 1 if results differ, or with --fail-on-miss if a limit is missed.

#include "bench.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "VXut.h"

namespace bench {

bool Result::missed() const {
    if (row.limit <= 0 || ratios.empty())
        return false;
    return std::all_of(ratios.begin(), ratios.end(), [this](double ratio) { return ratio > 1.1 * row.limit; });
}

Result& Bench::resultOf(const Row& row) {
    if (m_next == m_results.size())
        m_results.push_back({row, false, 0, 0, {}});
    return m_results[m_next++];
}

void Bench::report(const Result& result) {
    std::fprintf(stderr, "%-60s %-34s %10.2f ns %8.3f\n", result.row.work, result.row.peer, result.ours,
                 result.ratios.back());
}

} // namespace bench

namespace {

struct Family {
    const char* name;
    void (*measure)(bench::Bench& bench);
};

constexpr Family families[] = {
    {"texts", bench::benchTexts},       {"parameters", bench::benchParameters},   {"messages", bench::benchMessages},
    {"arrays", bench::benchArrays},     {"directories", bench::benchDirectories}, {"maps", bench::benchMaps},
    {"files", bench::benchFiles},       {"values", bench::benchValues},           {"numbers", bench::benchNumbers},
    {"urls", bench::benchUrls},         {"checksums", bench::benchChecksums},     {"utf8", bench::benchUtf8},
    {"switches", bench::benchSwitches},
};

const char* verdict(const bench::Result& result) {
    if (!result.same)
        return "RESULTS DIFFER";
    if (result.row.limit <= 0)
        return "-";
    return result.missed() ? "missed" : "ok";
}

void print(const bench::Bench& bench) {
    std::printf("%-52s %-30s %11s %11s %7s %7s %6s\n", "work", "peer", "ours, ns", "peer, ns", "pass 1", "pass 2",
                "limit");
    for (const bench::Result& result : bench.results()) {
        if (result.ratios.size() == 2)
            std::printf("%-52s %-30s %11.2f %11.2f %7.2f %7.2f %6.2f  %s\n", result.row.work, result.row.peer,
                        result.ours, result.theirs, result.ratios[0], result.ratios[1], result.row.limit,
                        verdict(result));
        else
            std::printf("%-52s %-30s %s\n", result.row.work, result.row.peer, verdict(result));
    }
}

// Writes one line for each row, point and class, with tabs between the fields.
bool write(const bench::Bench& bench, const char* path) {
    std::FILE* const file = std::fopen(path, "w");
    if (file == nullptr)
        return false;
    for (const bench::Result& result : bench.results()) {
        const bool measured = result.ratios.size() == 2;
        std::fprintf(file, "row\t%s\t%s\t%.3f\t%.3f\t%.4f\t%.4f\t%.3f\t%s\n", result.row.work, result.row.peer,
                     result.ours, result.theirs, measured ? result.ratios[0] : 0, measured ? result.ratios[1] : 0,
                     result.row.limit, verdict(result));
    }
    for (const bench::Point& point : bench.points())
        std::fprintf(file, "point\t%s\t%s\t%zu\t%.3f\t%.3f\n", point.series.c_str(), point.peer.c_str(), point.size,
                     point.ours, point.theirs);
#define WRITE_SIZE(type) std::fprintf(file, "object\t%s\t%zu\n", #type, sizeof(utility::type))
    WRITE_SIZE(PutStream);
    WRITE_SIZE(BufferStream);
    WRITE_SIZE(BufferStreamElement);
    WRITE_SIZE(BufferStreamQueue);
    WRITE_SIZE(BufferStreamList);
    WRITE_SIZE(VirtualPutStream);
    WRITE_SIZE(VirtualGetStream);
    WRITE_SIZE(IntArray);
    WRITE_SIZE(StringMap);
    WRITE_SIZE(FastSortedStringDirectory);
    WRITE_SIZE(DateTime);
    WRITE_SIZE(IPV4Address);
    WRITE_SIZE(IPV6Address);
    WRITE_SIZE(WWN);
    WRITE_SIZE(SerialNumber);
    WRITE_SIZE(URL);
    WRITE_SIZE(Waiter);
#undef WRITE_SIZE
    return std::fclose(file) == 0;
}

} // namespace

int main(int argc, char** argv) {
    // A zone with daylight saving that needs no file.
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);

    bool failOnMiss = false;
    const char* output = nullptr;
    std::vector<std::string> names;
    for (int index = 1; index < argc; ++index) {
        if (std::strcmp(argv[index], "--fail-on-miss") == 0)
            failOnMiss = true;
        else if (std::strcmp(argv[index], "--output") == 0 && index + 1 < argc)
            output = argv[++index];
        else
            names.emplace_back(argv[index]);
    }

    bench::Bench bench;
    for (int pass = 0; pass < 2; ++pass) {
        bench.beginPass();
        for (const Family& family : families)
            if (names.empty() || std::find(names.begin(), names.end(), family.name) != names.end())
                family.measure(bench);
    }
    print(bench);
    if (output != nullptr && !write(bench, output)) {
        std::perror(output);
        return 2;
    }

    long missed = 0;
    long different = 0;
    for (const bench::Result& result : bench.results()) {
        missed += result.missed() ? 1 : 0;
        different += result.same ? 0 : 1;
    }
    std::printf("%zu rows, %ld missed, %ld with different results\n", bench.results().size(), missed, different);
    return different > 0 || (failOnMiss && missed > 0) ? 1 : 0;
}
