// Compares the hash maps with `std::map`. The first byte chooses the class.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "Bytes.h"
#include "fw_FSUMemory.h"
#include "fw_Memory.h"
#include "ut_Map.h"
#include "ut_MapEntity.h"
#include "ut_StringMap.h"

namespace {

using fuzz::Bytes;
using fuzz::require;

void* pointer(std::uintptr_t number) {
    return reinterpret_cast<void*>(number);
}

void* const absent = pointer(~std::uintptr_t{0});

// The entries in the map's order: by bucket, then by key.
template<typename Key>
using Entries = std::map<std::pair<std::uintptr_t, Key>, void*>;

// Whether the bucket of `place` has a greater key.
template<typename Key>
bool hasGreater(const Entries<Key>& entries, const std::pair<std::uintptr_t, Key>& place) {
    const auto next = entries.upper_bound(place);
    return next != entries.end() && next->first.first == place.first;
}

// Whether the bucket of `place` has a smaller key.
template<typename Key>
bool hasSmaller(const Entries<Key>& entries, const std::pair<std::uintptr_t, Key>& place) {
    const auto here = entries.lower_bound(place);
    return here != entries.begin() && std::prev(here)->first.first == place.first;
}

template<typename MapType>
void requireEqual(MapType& map, const Entries<std::uintptr_t>& model) {
    void* value = nullptr;
    void* key = map.First(value);
    for (const auto& entry : model) {
        require(key == pointer(entry.first.second) && value == entry.second);
        require(map.Lookup(key) == value);
        key = map.Next(key, value);
    }
    require(key == absent);
}

template<typename MapType>
void runPointers(Bytes& in, MapType& map, unsigned int buckets) {
    Entries<std::uintptr_t> model;
    unsigned int count = 0;
    while (!in.isAtEnd()) {
        const unsigned int kind = in.below(8);
        const std::uintptr_t number = in.flag() ? in.byte() : in.number<std::uintptr_t>();
        // The value that marks an absent key is not used as a key.
        if (pointer(number) == absent)
            continue;
        const std::pair<std::uintptr_t, std::uintptr_t> place(number & (buckets - 1), number);
        const bool isPresent = model.count(place) > 0;
        if (kind < 4) {
            void* const value = pointer(in.byte());
            require(map.Add(pointer(number), value) == !isPresent);
            model[place] = value;
            count += isPresent ? 0 : 1;
        } else if (kind < 7) {
            require(map.Delete(pointer(number)) == (isPresent || !hasGreater(model, place)));
            model.erase(place);
            count -= isPresent ? 1 : 0;
        } else if (in.below(8) == 0) {
            // The count does not change.
            map.DeleteAll();
            model.clear();
        }
        require((map.Lookup(pointer(number)) != absent) == (model.count(place) > 0));
        require(map.count() == count);
        requireEqual(map, model);
    }
}

void requireEqual(utility::StringMap& map, const Entries<std::string>& model) {
    void* value = nullptr;
    const char* key = map.First(value);
    for (const auto& entry : model) {
        require(key == entry.first.second && value == entry.second);
        require(map.Lookup(key) == value);
        key = map.Next(key, value);
    }
    require(key == nullptr);
}

std::uint32_t referenceHash(const std::string& key) {
    std::uint32_t hash = 0;
    for (const char c : key)
        hash += static_cast<unsigned char>(c) - 32U;
    return hash;
}

void runTexts(Bytes& in, unsigned int buckets) {
    utility::StringMap map(buckets);
    Entries<std::string> model;
    unsigned int count = 0;
    while (!in.isAtEnd()) {
        const unsigned int kind = in.below(8);
        const std::string key = in.text(6);
        const std::pair<std::uintptr_t, std::string> place(referenceHash(key) & (buckets - 1), key);
        const bool isPresent = model.count(place) > 0;
        require(map.hash(key.c_str()) == place.first);
        if (kind < 4) {
            void* const value = pointer(in.byte());
            require(map.Add(key.c_str(), value) == !isPresent);
            model[place] = value;
            count += isPresent ? 0 : 1;
        } else if (kind < 7) {
            // `Delete` finds a key only if it is the smallest of its bucket.
            const bool isReached = !hasSmaller(model, place);
            require(map.Delete(key.c_str()) == isReached);
            if (isReached) {
                model.erase(place);
                count -= isPresent ? 1 : 0;
            }
        } else if (in.below(8) == 0) {
            map.DeleteAll();
            model.clear();
        }
        require((map.Lookup(key.c_str()) != absent) == (model.count(place) > 0));
        require(map.count() == count);
        requireEqual(map, model);
    }
}

void runMapEntity(Bytes& in, unsigned int buckets) {
    framework::FSUMemory pool(256, 4);
    utility::MapEntity map(buckets, in.flag() ? &pool : nullptr);
    runPointers(in, map, buckets);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::SilentLog silence;
    const long outstanding = framework::Memory::staticOutstanding();
    Bytes in(data, size);
    const unsigned int kind = in.below(3);
    const unsigned int buckets = 2U << in.below(6);
    if (kind == 0) {
        utility::Map map(buckets);
        runPointers(in, map, buckets);
    } else if (kind == 1) {
        runMapEntity(in, buckets);
    } else {
        runTexts(in, buckets);
    }
    require(framework::Memory::staticOutstanding() == outstanding);
    return 0;
}
