#pragma once

#include "ut_Export.h"

#include "fw_Entity.h"
#include "ut_AbsentEntry.h"
#include "ut_HashChains.h"

namespace framework {
class Memory;
}

namespace utility {

/// A hash map from opaque pointers to opaque pointers that allocates its memory from an entity's pool.
///
/// Behaves like `Map`. The map owns its entries and its table, which it allocates from and releases to the memory
/// object passed to the constructor, but not the keys or values. Not thread-safe. Does not throw: if memory allocation
/// fails, an entry is not added. A map with an invalid bucket count, or for which memory allocation failed, stays
/// empty.
///
///     framework::FSUMemory pool(4096, 4);
///     utility::MapEntity sizes(64, &pool);
///     sizes.Add(&volume, size);
class VXUT_EXPORT MapEntity : public virtual framework::Entity {
public:
    /// Creates an empty map. `numBuckets` must be a power of two from 2 to 65,536; any other count is logged at level
    /// 0, and the map stays empty. `memory` is not owned and must outlive the map; if it is null, memory comes from
    /// `Memory::StaticAlloc`.
    MapEntity(unsigned int numBuckets, framework::Memory* memory);
    MapEntity(const MapEntity&) = delete;
    MapEntity& operator=(const MapEntity&) = delete;
    /// Releases the entries and the table, but not the keys or values.
    ~MapEntity() override;

    /// Returns true if an entry was added. Returns false if `key` was present, after replacing its value, or if memory
    /// allocation failed, with the map unchanged.
    bool Add(void* key, void* value);
    /// Removes the entry of `key`. Returns false if `key` is absent and its bucket contains a greater key, or if the
    /// map does not have a table. Callers rely on true for an absent key that is greater than all keys of its bucket,
    /// although no entry is removed.
    bool Delete(void* key);
    /// Returns the value of `key`, or `absentEntry()` if `key` is absent.
    void* Lookup(void* key);
    /// Returns the key of the first entry in bucket order and sets `value` to its value. Returns `absentEntry()`, with
    /// `value` unchanged, if the map is empty.
    void* First(void*& value);
    /// Returns the key after `key` in the order of `First` and sets `value` to its value. Returns `absentEntry()`, with
    /// `value` unchanged, if `key` is absent or the last.
    void* Next(void* key, void*& value);
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
    HashChains<PointerKeys> m_chains;
};

} // namespace utility
