// Compares the hash maps with the standard library's: look-up, insertion and iteration.
//
// Keys are addresses of heap objects, and names of ports. The benchmark's argument is the number of entries; the number
// of buckets is the next power of two, at most 65,536. Heap addresses are multiples of 16, so only one bucket in 16 is
// used; a caller who knows that chooses 16 times as many buckets (`sparse`).

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "ut_Map.h"
#include "ut_StringMap.h"

namespace {

struct Volume {
    char content[80];
};

// Returns addresses of heap objects in random order.
class Addresses {
public:
    explicit Addresses(std::size_t count) {
        for (std::size_t number = 0; number < count; ++number) {
            m_volumes.push_back(std::make_unique<Volume>());
            keys.push_back(m_volumes.back().get());
        }
        std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
    }

    std::vector<void*> keys;

private:
    std::vector<std::unique_ptr<Volume>> m_volumes;
};

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

unsigned int bucketsFor(std::size_t count) {
    unsigned int buckets = 2;
    while (buckets < count && buckets < 65536)
        buckets *= 2;
    return buckets;
}

// Gives each kind of map the same operations.
template<std::size_t bucketsPerEntry>
struct OurMap {
    explicit OurMap(std::size_t count) : map(bucketsFor(bucketsPerEntry * count)) {}
    void add(void* key) {
        map.Add(key, key);
    }
    void* find(void* key) {
        return map.Lookup(key);
    }
    utility::Map map;
};

struct OurStringMap {
    explicit OurStringMap(std::size_t count) : map(bucketsFor(count)) {}
    void add(const std::string& key) {
        map.Add(key.c_str(), nullptr);
    }
    void* find(const std::string& key) {
        return map.Lookup(key.c_str());
    }
    utility::StringMap map;
};

template<class Standard>
void reserve(Standard&, std::size_t) {}

template<class Key>
void reserve(std::unordered_map<Key, void*>& map, std::size_t count) {
    map.reserve(count);
}

template<class Key, class Standard>
struct StandardMap {
    explicit StandardMap(std::size_t count) {
        reserve(map, count);
    }
    void add(const Key& key) {
        map.emplace(key, nullptr);
    }
    void* find(const Key& key) {
        const auto found = map.find(key);
        return found == map.end() ? utility::absentEntry() : found->second;
    }
    Standard map;
};

typedef StandardMap<void*, std::unordered_map<void*, void*>> UnorderedMap;
typedef StandardMap<void*, std::map<void*, void*>> OrderedMap;
typedef StandardMap<std::string, std::unordered_map<std::string, void*>> UnorderedStringMap;
typedef StandardMap<std::string, std::map<std::string, void*>> OrderedStringMap;

template<class Kind, class Key>
void lookUp(benchmark::State& state, const std::vector<Key>& keys) {
    // The second half of the keys is never inserted.
    const std::size_t present = keys.size() / 2;
    Kind map(present);
    for (std::size_t index = 0; index < present; ++index)
        map.add(keys[index]);
    std::size_t index = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.find(keys[index]));
        index = index + 1 == keys.size() ? 0 : index + 1;
    }
    state.SetItemsProcessed(state.iterations());
}

template<class Kind, class Key>
void fill(benchmark::State& state, const std::vector<Key>& keys) {
    for (auto _ : state) {
        Kind map(keys.size());
        for (const Key& key : keys)
            map.add(key);
        benchmark::DoNotOptimize(map);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(keys.size()));
}

template<class Kind>
void lookUpAddress(benchmark::State& state) {
    lookUp<Kind>(state, Addresses(2 * static_cast<std::size_t>(state.range(0))).keys);
}

template<class Kind>
void lookUpName(benchmark::State& state) {
    lookUp<Kind>(state, portNames(2 * static_cast<std::size_t>(state.range(0))));
}

template<class Kind>
void fillAddresses(benchmark::State& state) {
    fill<Kind>(state, Addresses(static_cast<std::size_t>(state.range(0))).keys);
}

template<class Kind>
void fillNames(benchmark::State& state) {
    fill<Kind>(state, portNames(static_cast<std::size_t>(state.range(0))));
}

} // namespace

BENCHMARK(lookUpAddress<OurMap<1>>)->Name("LookUpAddress/Map")->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(lookUpAddress<OurMap<16>>)->Name("LookUpAddress/Map, sparse")->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(lookUpAddress<UnorderedMap>)->Name("LookUpAddress/std::unordered_map")->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(lookUpAddress<OrderedMap>)->Name("LookUpAddress/std::map")->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(lookUpName<OurStringMap>)->Name("LookUpName/StringMap")->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(lookUpName<UnorderedStringMap>)->Name("LookUpName/std::unordered_map")->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(lookUpName<OrderedStringMap>)->Name("LookUpName/std::map")->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(fillAddresses<OurMap<1>>)->Name("FillAddresses/Map")->Arg(1000);
BENCHMARK(fillAddresses<OurMap<16>>)->Name("FillAddresses/Map, sparse")->Arg(1000);
BENCHMARK(fillAddresses<UnorderedMap>)->Name("FillAddresses/std::unordered_map")->Arg(1000);
BENCHMARK(fillAddresses<OrderedMap>)->Name("FillAddresses/std::map")->Arg(1000);
BENCHMARK(fillNames<OurStringMap>)->Name("FillNames/StringMap")->Arg(1000);
BENCHMARK(fillNames<UnorderedStringMap>)->Name("FillNames/std::unordered_map")->Arg(1000);
BENCHMARK(fillNames<OrderedStringMap>)->Name("FillNames/std::map")->Arg(1000);
