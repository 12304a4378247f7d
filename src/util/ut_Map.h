#pragma once

#include "ut_AbsentEntry.h"
#include "ut_Export.h"
#include "ut_HashChains.h"

namespace utility {

/// A hash map from opaque pointers to opaque pointers with a fixed number of buckets.
///
/// It owns its entries, one piece of memory each, but neither keys nor values, which it never follows. The low bits of
/// the key choose the bucket, within which keys ascend. One thread at a time. Nothing is thrown: without memory an
/// entry is not added. A map whose bucket count was refused, or for which there was no memory, stays empty whatever is
/// added.
///
///     utility::Map names(64);
///     names.Add(&port, name);
///     if (names.Lookup(&port) == utility::absentEntry()) addName(port);
class VXUT_EXPORT Map {
public:
    /// `numBuckets` is 2, 4, 8, ... or 65,536; any other count is refused and logged at level 0.
    explicit Map(unsigned int numBuckets);
    Map(const Map&) = delete;
    Map& operator=(const Map&) = delete;
    ~Map();

    /// True when an entry was made; false when `key` was there, which now has the new value, and when there is no
    /// memory, which leaves the map as it was.
    bool Add(void* key, void* value);
    /// Takes out the entry of `key`. False only when an absent key meets a greater one in its bucket: callers rely on
    /// true for an absent key behind all others, although nothing was taken out.
    bool Delete(void* key);
    /// The value of `key`, or `absentEntry()` when it is absent.
    void* Lookup(void* key) const;
    /// The key of the first entry in bucket order, and its value in `value`; `absentEntry()`, with `value` left alone,
    /// when the map is empty.
    void* First(void*& value) const;
    /// The key behind `key` in the same order, and its value in `value`; `absentEntry()`, with `value` left alone, when
    /// `key` is absent or the last.
    void* Next(void* key, void*& value) const;
    /// Takes out every entry. Leaves `count()` as it was: callers rely on reading there how many there were.
    void DeleteAll();
    /// Prints the chains to standard output, a line for each bucket in use; a key that is a string token with its text.
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
    HashChains<PointerKeys> m_chains;
};

} // namespace utility
