#include "fw_FSUMemory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

#include "internal/fw_Text.h"

namespace framework {

struct alignas(std::max_align_t) FSUMemory::Block {
    Block* next;
    char* free;
    unsigned long room;

    static Block* make(unsigned long size) {
        void* storage = StaticAlloc(sizeof(Block) + size);
        if (storage == nullptr)
            return nullptr;
        return new (storage) Block{nullptr, static_cast<char*>(storage) + sizeof(Block), size};
    }

    void* take(unsigned long size) {
        void* piece = free;
        free += size;
        room -= size;
        return piece;
    }
};

static_assert(__STDCPP_DEFAULT_NEW_ALIGNMENT__ >= alignof(std::max_align_t), "blocks are aligned for any type");

namespace {

constexpr unsigned long alignment = alignof(std::max_align_t);
// Most pools hold a few short texts, for which a block of the full size would be wasted.
constexpr unsigned int firstBlock = 224;
constexpr unsigned int largestBlock = 1U << 20;
constexpr unsigned long largestPiece = static_cast<unsigned long>(PTRDIFF_MAX) - 1024;

unsigned long aligned(unsigned long size) {
    return (size + alignment - 1) / alignment * alignment;
}

} // namespace

FSUMemory::FSUMemory(unsigned int blockSize, unsigned int /*blockCount*/)
    : m_blocks(nullptr), m_blockSize(std::min(blockSize, largestBlock)) {}

FSUMemory::~FSUMemory() {
    reset();
}

void* FSUMemory::Alloc(unsigned long size) {
    if (size > largestPiece)
        return nullptr;
    size = aligned(size > 0 ? size : 1);
    if (m_blocks != nullptr && size <= m_blocks->room)
        return m_blocks->take(size);
    const bool ownBlock = size > m_blockSize;
    const unsigned int blockSize = m_blocks != nullptr ? m_blockSize : std::min(m_blockSize, firstBlock);
    Block* block = Block::make(std::max(size, aligned(blockSize)));
    if (block == nullptr)
        return nullptr;
    if (ownBlock && m_blocks != nullptr) {
        // Insert after the current block, which still has space for smaller pieces.
        block->next = m_blocks->next;
        m_blocks->next = block;
    } else {
        block->next = m_blocks;
        m_blocks = block;
    }
    return block->take(size);
}

char* FSUMemory::AllocString(const char* text) {
    return copyText(text, wholeText, [this](unsigned long size) { return Alloc(size); });
}

char* FSUMemory::AllocString(const char* text, unsigned int length) {
    return copyText(text, length, [this](unsigned long size) { return Alloc(size); });
}

void FSUMemory::reset() {
    while (m_blocks != nullptr) {
        Block* block = m_blocks;
        m_blocks = block->next;
        StaticFree(block);
    }
}

void* FSUMemory::allocate(unsigned long size) {
    return Alloc(size);
}

void FSUMemory::release(const void* /*piece*/) {}

} // namespace framework
