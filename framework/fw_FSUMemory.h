#pragma once

#include "fw_Memory.h"

namespace framework {

/// A pool whose pieces are freed all at once.
///
/// The pool owns every piece until `reset` or its destruction. One thread at a time. A failure is null.
///
///     framework::FSUMemory pool(2048, 20);
///     char* copy = pool.AllocString("volume");   // lives as long as the pool
class VXFW_EXPORT FSUMemory : public Memory {
public:
    /// Hints for growth: the bytes of a block and how many blocks are expected. Any size and count of pieces works.
    FSUMemory(unsigned int blockSize, unsigned int blockCount);
    FSUMemory(const FSUMemory&) = delete;
    FSUMemory& operator=(const FSUMemory&) = delete;
    ~FSUMemory() override;

    /// `size` bytes aligned for any type, or null.
    void* Alloc(unsigned long size);
    /// A terminated copy of `text`; null for a null text or a failure.
    char* AllocString(const char* text);
    /// A terminated copy of the first `length` characters of `text`, or of all when it is shorter.
    /// Null for a null text or a failure.
    char* AllocString(const char* text, unsigned int length);
    /// Frees every piece; the pool can be used again.
    void reset();

    void* allocate(unsigned long size) override;
    /// Does nothing: a piece goes with its pool.
    void release(const void* piece) override;

private:
    struct Block;

    Block* m_blocks;
    unsigned int m_blockSize;
};

} // namespace framework
