#include "ut_Array.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "fw_Memory.h"
#include "internal/ut_Failure.h"
#include "internal/ut_Trace.h"

namespace utility {

namespace {

constexpr unsigned int growthStep = 20;

bool isCountable(unsigned int size, unsigned int grow, std::size_t elementSize) {
    unsigned int slots = 0;
    std::size_t bytes = 0;
    return !__builtin_add_overflow(size, grow, &slots) && !__builtin_mul_overflow(slots, elementSize, &bytes);
}

} // namespace

Array::Array(unsigned int) : m_length(0), m_size(0), m_block(nullptr) {}

Array::~Array() = default;

void Array::sort() {}

void Array::truncate(unsigned int length) {
    if (m_length >= length)
        m_length = length;
}

void Array::allocateBlock(unsigned int capacity, std::size_t elementSize) {
    m_block = realloc(nullptr, &m_size, capacity, elementSize);
}

void Array::copyBlock(const Array& other, std::size_t elementSize) {
    allocateBlock(other.m_size, elementSize);
    std::memcpy(m_block, other.m_block, other.m_length * elementSize);
    m_length = other.m_length;
}

void Array::growBlock(std::size_t elementSize, unsigned int count) {
    if (std::uint64_t{m_length} + count >= m_size)
        m_block = realloc(m_block, &m_size, std::max(growthStep, count), elementSize);
}

bool Array::growInSteps(std::uint64_t needed, std::size_t elementSize) {
    if (needed <= m_size)
        return true;
    const std::uint64_t steps = (needed - m_size + growthStep - 1) / growthStep;
    if (steps * growthStep > std::numeric_limits<unsigned int>::max())
        return false;
    const auto added = static_cast<unsigned int>(steps * growthStep);
    if (!isCountable(m_size, added, elementSize))
        return false;

    const std::size_t oldBytes = m_size * elementSize;
    const std::size_t addedBytes = added * elementSize;
    char* const block = static_cast<char*>(framework::Memory::StaticAlloc(oldBytes + addedBytes));
    if (block == nullptr)
        return false;
    std::memcpy(block, m_block, oldBytes);
    std::memset(block + oldBytes, 0, addedBytes);
    framework::Memory::StaticFree(m_block);
    m_block = block;
    m_size += added;
    return true;
}

bool Array::appendBlock(const void* elements, unsigned int count, std::size_t elementSize) {
    if (!growInSteps(std::uint64_t{m_length} + count, elementSize))
        return false;
    if (count > 0)
        std::memcpy(static_cast<char*>(m_block) + m_length * elementSize, elements, count * elementSize);
    m_length += count;
    return true;
}

void Array::freeBlock() {
    framework::Memory::StaticFree(m_block);
}

void* Array::realloc(void* old, unsigned int* size, unsigned int grow, size_t elementSize) {
    if (grow == 0)
        grow = growthStep;
    if (!isCountable(*size, grow, elementSize))
        VXUT_THROW(FAILURE_ARRAY_STORAGE, "");

    const unsigned int newSize = *size + grow;
    const std::size_t oldBytes = *size * elementSize;
    const std::size_t newBytes = newSize * elementSize;
    char* const block = static_cast<char*>(framework::Memory::StaticAlloc(newBytes));
    VXUT_TRACE(TOKEN_ARRAY, "growing array from %d to %d, old [%p], new [%p]", static_cast<int>(oldBytes),
               static_cast<int>(newBytes), old, static_cast<void*>(block));
    if (block == nullptr)
        VXUT_THROW(FAILURE_ARRAY_STORAGE, "");

    if (old != nullptr) {
        VXUT_TRACE(TOKEN_ARRAY, "copy from [%p] to [%p] of %d bytes", old, static_cast<void*>(block),
                   static_cast<int>(oldBytes));
        std::memcpy(block, old, oldBytes);
        const std::size_t clearBytes = grow * elementSize;
        VXUT_TRACE(TOKEN_ARRAY, "clear memory at [%p], %d bytes", static_cast<void*>(block + oldBytes),
                   static_cast<int>(clearBytes));
        std::memset(block + oldBytes, 0, clearBytes);
        framework::Memory::StaticFree(old);
    }
    *size = newSize;
    return block;
}

} // namespace utility
