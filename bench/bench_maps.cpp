// Hash maps beside std::unordered_map. Keys are texts, and addresses of heap objects. These are multiples of 16, so
// only one bucket in 16 of a Map is used; a caller who knows that chooses 16 times as many buckets ("sparse").

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "bench.h"
#include "ut_Map.h"
#include "ut_StringMap.h"

namespace bench {
namespace {

struct Volume {
    char content[80];
};

unsigned int bucketsFor(std::size_t count) {
    unsigned int buckets = 2;
    while (buckets < count && buckets < 65536)
        buckets *= 2;
    return buckets;
}

// Twice as many names as are in the maps.
std::vector<std::string> portNames(std::size_t count) {
    std::vector<std::string> names;
    for (std::size_t number = 0; number < count; ++number) {
        char name[32];
        std::snprintf(name, sizeof name, "CL%zu-%c.%04zx", number % 8 + 1, static_cast<char>('A' + number % 16),
                      number);
        names.emplace_back(name);
    }
    std::shuffle(names.begin(), names.end(), std::mt19937(1));
    return names;
}

struct Texts {
    explicit Texts(std::size_t count) : names(portNames(2 * count)), ours(bucketsFor(count)) {
        theirs.reserve(count);
        for (std::size_t index = 0; index < count; ++index) {
            ours.Add(names[index].c_str(), &names[index]);
            theirs.emplace(names[index], &names[index]);
        }
    }
    void* find(long call) {
        return ours.Lookup(hide(names[static_cast<std::size_t>(call) % names.size()].c_str()));
    }
    void* findPeer(long call) {
        const auto found = theirs.find(*hide(&names[static_cast<std::size_t>(call) % names.size()]));
        return found == theirs.end() ? utility::absentEntry() : found->second;
    }
    bool same() {
        for (long call = 0; call < static_cast<long>(names.size()); ++call)
            if (find(call) != findPeer(call))
                return false;
        return true;
    }

    std::vector<std::string> names;
    utility::StringMap ours;
    std::unordered_map<std::string, void*> theirs;
};

struct Addresses {
    Addresses(std::size_t count, std::size_t bucketsPerEntry) : ours(bucketsFor(bucketsPerEntry * count)) {
        for (std::size_t number = 0; number < 2 * count; ++number) {
            volumes.push_back(std::make_unique<Volume>());
            keys.push_back(volumes.back().get());
        }
        std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
        theirs.reserve(count);
        for (std::size_t index = 0; index < count; ++index) {
            ours.Add(keys[index], keys[index]);
            theirs.emplace(keys[index], keys[index]);
        }
    }
    void* find(long call) {
        return ours.Lookup(hide(keys[static_cast<std::size_t>(call) % keys.size()]));
    }
    void* findPeer(long call) {
        const auto found = theirs.find(hide(keys[static_cast<std::size_t>(call) % keys.size()]));
        return found == theirs.end() ? utility::absentEntry() : found->second;
    }
    bool same() {
        for (long call = 0; call < static_cast<long>(keys.size()); ++call)
            if (find(call) != findPeer(call))
                return false;
        return true;
    }

    std::vector<std::unique_ptr<Volume>> volumes;
    std::vector<void*> keys;
    utility::Map ours;
    std::unordered_map<void*, void*> theirs;
};

template<typename Maps>
void lookUp(Bench& bench, const Row& row, Maps maps) {
    bench.row(
        row, maps->same(), [&](long call) { keep(maps->find(call)); }, [&](long call) { keep(maps->findPeer(call)); });
}

void fill(Bench& bench) {
    constexpr std::size_t count = 1000;
    const Addresses addresses(count, 16);
    bench.row(
        {"Map, sparse, fill with 1,000", "std::unordered_map", 0, count}, true,
        [&](long) {
            utility::Map map(bucketsFor(16 * count));
            for (std::size_t index = 0; index < count; ++index)
                map.Add(addresses.keys[index], nullptr);
            keep(map);
        },
        [&](long) {
            std::unordered_map<void*, void*> map;
            map.reserve(count);
            for (std::size_t index = 0; index < count; ++index)
                map.emplace(addresses.keys[index], nullptr);
            keep(map);
        });
}

} // namespace

void benchMaps(Bench& bench) {
    lookUp(bench, {"StringMap::Lookup, 4,096", "std::unordered_map", 5}, std::make_unique<Texts>(4096));
    lookUp(bench, {"Map::Lookup, sparse, 1,000", "std::unordered_map", 0.9}, std::make_unique<Addresses>(1000, 16));
    lookUp(bench, {"Map::Lookup, one bucket for each, 1,000", "std::unordered_map"},
           std::make_unique<Addresses>(1000, 1));
    fill(bench);
    for (const std::size_t size : {std::size_t{100}, std::size_t{1000}, std::size_t{10000}, std::size_t{100000}}) {
        Texts texts(size);
        bench.point(
            "StringMap::Lookup", "std::unordered_map", size, [&](long call) { keep(texts.find(call)); },
            [&](long call) { keep(texts.findPeer(call)); });
        Addresses addresses(size, 16);
        bench.point(
            "Map::Lookup, sparse", "std::unordered_map", size, [&](long call) { keep(addresses.find(call)); },
            [&](long call) { keep(addresses.findPeer(call)); });
    }
}

} // namespace bench
