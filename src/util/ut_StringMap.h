#pragma once

#include "ut_Export.h"

#include <cstdint>

#include "ut_AbsentEntry.h"
#include "ut_HashChains.h"

namespace utility {

/// A hash map from texts to opaque pointers with a fixed number of buckets.
///
/// The map owns its entries and a copy of each key, but not the values, which it never dereferences. The sum of a key's
/// bytes selects its bucket; the keys of a bucket are in the order of `strcmp`, by bytes from 0 to 255. A null key is
/// always absent and never added. Not thread-safe. Does not throw: if memory allocation fails, an entry is not added. A
/// map with an invalid bucket count, or for which memory allocation failed, stays empty. Debug switch 5859 traces the
/// hashing.
///
/// Use it for a few hundred keys. Similar keys collide: "port00000" to "port99999" use only 46 buckets, and every
/// lookup is a linear search in one bucket. For more keys, use the slots of a `FastStringDirectory` as indexes into an
/// array of values (up to 32,767 keys), or `std::unordered_map`.
///
///     utility::StringMap ports(64);
///     ports.Add("CL1-A", &port);
///     if (ports.Lookup("CL1-A") == &port) show(port);
class VXUT_EXPORT StringMap {
public:
    /// Creates an empty map. `numBuckets` must be a power of two from 2 to 65,536; any other count is logged at level
    /// 0, and the map stays empty.
    explicit StringMap(unsigned int numBuckets);
    StringMap(const StringMap&) = delete;
    StringMap& operator=(const StringMap&) = delete;
    /// Frees the entries and the copies of the keys, but not the values.
    ~StringMap();

    /// Returns the bucket of `key`: the sum of its bytes, each reduced by 32, modulo the number of buckets; 0 for null.
    /// Texts with the same bytes in a different order have the same bucket: callers rely on that.
    uint32_t hash(const char* key);
    /// Returns true if an entry with a copy of `key` was added. Returns false if `key` was present, after replacing its
    /// value, or if memory allocation failed, with the map unchanged.
    bool Add(const char* key, void* value);
    /// Removes the entry of `key` if it is the first of its bucket. Callers rely on the other results, which leave the
    /// map unchanged:
    /// - false if the bucket contains a smaller key: an entry that is not the first of its bucket stays;
    /// - false if `key` is null or the map does not have a table;
    /// - true if all keys of the bucket are greater.
    bool Delete(const char* key);
    /// Returns the value of `key`, or `absentEntry()` if `key` is absent.
    void* Lookup(const char* key);
    /// Returns the map's copy of the first key in bucket order and sets `value` to its value. Returns null, with
    /// `value` unchanged, if the map is empty.
    const char* First(void*& value);
    /// Returns the map's copy of the key after `key` in the order of `First` and sets `value` to its value. Returns
    /// null, with `value` unchanged, if `key` is absent or the last.
    const char* Next(const char* key, void*& value);
    /// Removes all entries. Does not change `count()`: callers rely on it.
    void DeleteAll();
    /// Prints the chains to standard output, one line per bucket in use.
    void dump();

    /// Returns the number of entries added minus the number removed by `Delete`.
    unsigned int count() const {
        return m_chains.count;
    }
    /// If `on`, `Add` prints to standard output where it places each new entry. Off by default.
    void setPlacementTrace(bool on) {
        m_chains.placementTrace = on;
    }

private:
    HashChains<TextKeys> m_chains;
};

} // namespace utility
