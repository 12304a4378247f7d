#pragma once

#include "ut_Export.h"

#include <cstdint>

#include "ut_AbsentEntry.h"
#include "ut_HashChains.h"

namespace utility {

/// A hash map from texts to opaque pointers with a fixed number of buckets.
///
/// It owns its entries and a copy of each key, but not the values, which it never follows. The sum of a key's bytes
/// chooses the bucket, within which keys ascend by their bytes as 0 to 255. One thread at a time. Nothing is thrown:
/// without memory an entry is not added. A map whose bucket count was refused, or for which there was no memory, stays
/// empty whatever is added; a null key is found nowhere. Debug switch 5859 traces the hashing.
///
/// Use it for some hundred keys. Similar keys share few buckets, however many there are: "port00000" to "port99999"
/// use 46, and every search walks a chain. For more keys, use the slots of a `FastStringDirectory` as indexes into an
/// array of values (up to 32,767 keys), or `std::unordered_map`.
///
///     utility::StringMap ports(64);
///     ports.Add("CL1-A", &port);
///     if (ports.Lookup("CL1-A") == &port) show(port);
class VXUT_EXPORT StringMap {
public:
    /// `numBuckets` is 2, 4, 8, ... or 65,536; any other count is refused and logged at level 0.
    explicit StringMap(unsigned int numBuckets);
    StringMap(const StringMap&) = delete;
    StringMap& operator=(const StringMap&) = delete;
    ~StringMap();

    /// The bucket of `key`: the sum of its bytes less 32 each, below the number of buckets. Callers rely on texts of
    /// the same bytes in another order sharing a bucket. 0 for null.
    uint32_t hash(const char* key);
    /// True when an entry was made for a copy of `key`; false when `key` was there, which now has the new value, and
    /// when there is no memory, which leaves the map as it was.
    bool Add(const char* key, void* value);
    /// Takes out the entry of `key` when it is the first of its bucket. False, with nothing changed, when a smaller key
    /// is in its bucket: callers rely on an entry behind another one staying. True also when every key there is
    /// greater.
    bool Delete(const char* key);
    /// The value of `key`, or `absentEntry()` when it is absent.
    void* Lookup(const char* key);
    /// The map's copy of the first key in bucket order, and its value in `value`; null, with `value` left alone, when
    /// the map is empty.
    const char* First(void*& value);
    /// The map's copy of the key behind `key` in the same order, and its value in `value`; null, with `value` left
    /// alone, when `key` is absent or the last.
    const char* Next(const char* key, void*& value);
    /// Takes out every entry. Leaves `count()` as it was: callers rely on reading there how many there were.
    void DeleteAll();
    /// Prints the chains to standard output, a line for each bucket in use.
    void dump();

    /// How many entries were made less how many were deleted one by one.
    unsigned int count() const {
        return m_chains.count;
    }
    /// Has `Add` tell on standard output where each new entry goes; off at first.
    void setPlacementTrace(bool on) {
        m_chains.placementTrace = on;
    }

private:
    HashChains<TextKeys> m_chains;
};

} // namespace utility
