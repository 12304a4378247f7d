#pragma once

#include "ut_Export.h"

#include "ut_AbsentEntry.h"
#include "ut_HashChains.h"

namespace utility {

/// A hash map from opaque pointers to opaque pointers with a fixed number of buckets.
///
/// The map owns its entries, each of which is one allocation, but not the keys or values, which it never dereferences.
/// The low bits of a key select its bucket; the keys of a bucket are in ascending order. Not thread-safe. Does not
/// throw: if memory allocation fails, an entry is not added. A map with an invalid bucket count, or for which memory
/// allocation failed, stays empty.
///
///     utility::Map names(64);
///     names.Add(&port, name);
///     if (names.Lookup(&port) == utility::absentEntry()) addName(port);
class VXUT_EXPORT Map {
public:
    /// Creates an empty map. `numBuckets` must be a power of two from 2 to 65,536; any other count is logged at level
    /// 0, and the map stays empty.
    explicit Map(unsigned int numBuckets);
    Map(const Map&) = delete;
    Map& operator=(const Map&) = delete;
    /// Frees the entries, but not the keys or values.
    ~Map();

    /// Returns true if an entry was added. Returns false if `key` was present, after replacing its value, or if memory
    /// allocation failed, with the map unchanged.
    bool Add(void* key, void* value);
    /// Removes the entry of `key`. Returns false if `key` is absent and its bucket contains a greater key, or if the
    /// map does not have a table. Callers rely on true for an absent key that is greater than all keys of its bucket,
    /// although no entry is removed.
    bool Delete(void* key);
    /// Returns the value of `key`, or `absentEntry()` if `key` is absent.
    void* Lookup(void* key) const;
    /// Returns the key of the first entry in bucket order and sets `value` to its value. Returns `absentEntry()`, with
    /// `value` unchanged, if the map is empty.
    void* First(void*& value) const;
    /// Returns the key after `key` in the order of `First` and sets `value` to its value. Returns `absentEntry()`, with
    /// `value` unchanged, if `key` is absent or the last.
    void* Next(void* key, void*& value) const;
    /// Removes all entries. Does not change `count()`: callers rely on it.
    void DeleteAll();
    /// Prints the chains to standard output, one line per bucket in use. A key that is a string token is printed with
    /// its text.
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
    HashChains<PointerKeys> m_chains;
};

} // namespace utility
