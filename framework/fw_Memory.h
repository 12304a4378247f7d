#pragma once

#include "fw_Export.h"

namespace framework {

/// A source of memory, and the process-wide memory services.
///
/// A piece is released to the source that allocated it. The static services may be called from any thread and return
/// null on failure. They count the outstanding pieces, so that tests can detect leaks.
///
///     char* copy = framework::Memory::StaticAllocString("volume");
///     framework::Memory::StaticFreeString(copy);
class VXFW_EXPORT Memory {
public:
    virtual ~Memory();

    /// Returns `size` bytes aligned for any type, or null if the allocation fails.
    virtual void* allocate(unsigned long size) = 0;
    /// Releases a piece that `allocate` returned; null is ignored.
    virtual void release(const void* piece) = 0;

    /// Returns `size` bytes, or null if the allocation fails. A caller may also release them with the global delete
    /// operator, but the count of outstanding pieces then stays one too high.
    static void* StaticAlloc(unsigned long size);
    /// Releases what `StaticAlloc` returned; null is ignored.
    static void StaticFree(const void* piece);
    /// Returns a NUL-terminated copy of `text`, to be released with `StaticFreeString`, or null if `text` is null or
    /// the allocation fails.
    static char* StaticAllocString(const char* text);
    /// Returns a NUL-terminated copy of at most `length` bytes of `text`, to be released with `StaticFreeString`, or
    /// null if `text` is null or the allocation fails.
    static char* StaticAllocString(const char* text, unsigned int length);
    /// Releases what `StaticAllocString` returned; null is ignored.
    static void StaticFreeString(const void* text);

    /// Returns the number of pieces and strings that the static services have allocated and not yet released.
    static long staticOutstanding();
};

} // namespace framework
