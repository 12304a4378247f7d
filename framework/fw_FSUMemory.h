#pragma once

#include "fw_Memory.h"

namespace framework {

/// A memory pool that frees all its pieces at once.
///
/// The pool owns every piece until `reset` or its destruction. One thread at a time. A failed allocation returns null.
///
///     framework::FSUMemory pool(2048, 20);
///     char* copy = pool.AllocString("volume");   // lives as long as the pool
class VXFW_EXPORT FSUMemory : public Memory {
public:
    /// Creates an empty pool. Both arguments are hints: the pool accepts pieces of any size and number.
    /// - `blockSize`: the size in bytes of the blocks from which pieces are taken, at most 1 MiB. The first block may
    ///   be smaller. A larger piece gets a block of its own.
    /// - `blockCount`: the expected number of blocks.
    FSUMemory(unsigned int blockSize, unsigned int blockCount);
    FSUMemory(const FSUMemory&) = delete;
    FSUMemory& operator=(const FSUMemory&) = delete;
    /// Frees every piece.
    ~FSUMemory() override;

    /// Returns `size` bytes aligned for any type, or null if the allocation fails.
    void* Alloc(unsigned long size);
    /// Returns a NUL-terminated copy of `text`, or null if `text` is null or the allocation fails.
    char* AllocString(const char* text);
    /// Returns a NUL-terminated copy of at most `length` bytes of `text`, or null if `text` is null or the allocation
    /// fails.
    char* AllocString(const char* text, unsigned int length);
    /// Frees every piece. The pool can be used again.
    void reset();

    /// Does what `Alloc` does.
    void* allocate(unsigned long size) override;
    /// Does nothing: `reset` and the destructor free the pieces.
    void release(const void* piece) override;

private:
    struct Block;

    Block* m_blocks;
    unsigned int m_blockSize;
};

} // namespace framework
