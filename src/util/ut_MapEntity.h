#pragma once

#include "fw_Entity.h"
#include "ut_AbsentEntry.h"
#include "ut_Export.h"
#include "ut_HashChains.h"

namespace framework {
class Memory;
}

namespace utility {

/// A hash map from opaque pointers to opaque pointers that takes its memory from an entity's pool.
///
/// It behaves as `Map` does. It owns its entries and its table, which it takes from and gives back to the memory object
/// it was made with, but neither keys nor values. One thread at a time. Nothing is thrown: without memory an entry is
/// not added. A map whose bucket count was refused, or for which there was no memory, stays empty whatever is added.
///
///     framework::FSUMemory pool(4096, 4);
///     utility::MapEntity sizes(64, &pool);
///     sizes.Add(&volume, size);
class VXUT_EXPORT MapEntity : public virtual framework::Entity {
public:
    /// `numBuckets` is 2, 4, 8, ... or 65,536; any other count is refused and logged at level 0. `memory` is kept, not
    /// owned, and must outlive the map; null means the process's memory.
    MapEntity(unsigned int numBuckets, framework::Memory* memory);
    MapEntity(const MapEntity&) = delete;
    MapEntity& operator=(const MapEntity&) = delete;
    ~MapEntity() override;

    /// True when an entry was made; false when `key` was there, which now has the new value, and when there is no
    /// memory, which leaves the map as it was.
    bool Add(void* key, void* value);
    /// Takes out the entry of `key`. False only when an absent key meets a greater one in its bucket: callers rely on
    /// true for an absent key behind all others, although nothing was taken out.
    bool Delete(void* key);
    /// The value of `key`, or `absentEntry()` when it is absent.
    void* Lookup(void* key);
    /// The key of the first entry in bucket order, and its value in `value`; `absentEntry()`, with `value` left alone,
    /// when the map is empty.
    void* First(void*& value);
    /// The key behind `key` in the same order, and its value in `value`; `absentEntry()`, with `value` left alone, when
    /// `key` is absent or the last.
    void* Next(void* key, void*& value);
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
    HashChains<PointerKeys> m_chains;
};

} // namespace utility
