#pragma once

#include "fw_Export.h"

namespace framework {

/// A source of memory, and the memory services of the whole process.
///
/// Who takes a piece gives it back to the same source. The static services are safe from any thread and never throw: a
/// failure is null. They count what is outstanding, so that a test can show that nothing leaks.
///
///     char* copy = framework::Memory::StaticAllocString("volume");
///     framework::Memory::StaticFreeString(copy);
class VXFW_EXPORT Memory {
public:
    virtual ~Memory();

    /// `size` bytes aligned for any type, or null.
    virtual void* allocate(unsigned long size) = 0;
    /// Takes back a piece that `allocate` gave; null does nothing.
    virtual void release(const void* piece) = 0;

    /// `size` bytes from the process, or null. They may also be released with the global delete operator; the count of
    /// outstanding pieces then stays one too high.
    static void* StaticAlloc(unsigned long size);
    /// Releases what `StaticAlloc` gave; null does nothing.
    static void StaticFree(const void* piece);
    /// A terminated copy of `text`; null for a null text or a failure. Released with `StaticFreeString`.
    static char* StaticAllocString(const char* text);
    /// A terminated copy of the first `length` characters of `text`, or of all when it is shorter.
    /// Null for a null text or a failure.
    static char* StaticAllocString(const char* text, unsigned int length);
    /// Releases what `StaticAllocString` gave; null does nothing.
    static void StaticFreeString(const void* text);

    /// How many pieces and strings of the static services are not yet released.
    static long staticOutstanding();
};

} // namespace framework
