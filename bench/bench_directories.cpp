// Sorted names beside a sorted vector and a B-tree.

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <absl/container/btree_set.h>
#include <absl/strings/string_view.h>

#include "bench.h"
#include "ut_FastSortedStringDirectory.h"

namespace bench {
namespace {

// Different names in random order: "port01234", or with one of 26 first letters.
std::vector<std::string> namesOf(std::size_t count, bool mixed) {
    std::vector<std::string> names;
    for (std::size_t number = 0; number < count; ++number) {
        char name[32];
        std::snprintf(name, sizeof name, "%cort%05zu", mixed ? static_cast<char>('a' + number % 26) : 'p', number);
        names.emplace_back(name);
    }
    std::shuffle(names.begin(), names.end(), std::mt19937(1));
    return names;
}

struct Names {
    Names(std::size_t count, bool mixed)
        : names(namesOf(count, mixed)), directory(0), vector(names), tree(names.begin(), names.end()) {
        for (const std::string& name : names)
            directory.Add(name.c_str());
        std::sort(vector.begin(), vector.end());
    }
    // The same text is looked up by everybody; its length is not known.
    const char* keyOf(long call) const {
        return hide(names[static_cast<std::size_t>(call) % names.size()].c_str());
    }
    int find(long call) {
        return directory.Find(keyOf(call));
    }
    int lowerBound(long call) {
        const std::string_view key = keyOf(call);
        const auto found = std::lower_bound(vector.begin(), vector.end(), key);
        return found != vector.end() && *found == key ? static_cast<int>(found - vector.begin()) : -1;
    }
    bool contains(long call) {
        return tree.find(absl::string_view(keyOf(call))) != tree.end();
    }
    bool same() {
        for (long call = 0; call < static_cast<long>(names.size()); ++call)
            if (find(call) != lowerBound(call) || find(call) < 0 || !contains(call))
                return false;
        return true;
    }

    std::vector<std::string> names;
    utility::FastSortedStringDirectory directory;
    std::vector<std::string> vector;
    absl::btree_set<std::string> tree;
};

void find(Bench& bench, bool mixed, const char* work) {
    Names names(10000, mixed);
    const bool same = names.same();
    const auto ours = [&](long call) {
        keep(names.find(call));
    };
    bench.row({work, "std::lower_bound", 1.0}, same, ours, [&](long call) { keep(names.lowerBound(call)); });
    bench.row({work, "absl::btree_set", 1.0}, same, ours, [&](long call) { keep(names.contains(call)); });
}

} // namespace

void benchDirectories(Bench& bench) {
    find(bench, false, "FastSortedStringDirectory::Find, one first letter");
    find(bench, true, "FastSortedStringDirectory::Find, mixed letters");
    for (const std::size_t size : {std::size_t{30}, std::size_t{300}, std::size_t{3000}, std::size_t{30000}}) {
        Names names(size, false);
        bench.point(
            "FastSortedStringDirectory::Find", "absl::btree_set", size, [&](long call) { keep(names.find(call)); },
            [&](long call) { keep(names.contains(call)); });
        bench.point(
            "FastSortedStringDirectory::Add, each", "absl::btree_set", size,
            [&](long) {
                utility::FastSortedStringDirectory directory(0);
                for (const std::string& name : names.names)
                    directory.Add(name.c_str());
                keep(directory);
            },
            [&](long) {
                absl::btree_set<std::string> tree;
                for (const std::string& name : names.names)
                    tree.insert(name);
                keep(tree);
            },
            static_cast<double>(size));
    }
}

} // namespace bench
