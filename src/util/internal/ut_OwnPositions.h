#pragma once

#include <climits>
#include <cstring>

#include "ut_Buffer.h"

// Devirtualizes the position operations of a buffer: calls them directly where no derived class overrides them.
// Internal.
//
// A derived class, which may be the caller's, overrides an operation if and only if the address in that operation's
// slot of its virtual table differs from the one in the table of `Buffer`. The layout is that of the Itanium C++ ABI,
// which both platforms use: the two destructors, then the four position operations.

namespace utility {

/// The virtual table of `Buffer`: offset to top and type information, then the slots.
extern "C" void* const ut_bufferTable[] __asm__("_ZTVN7utility6BufferE");

/// The slots of the position operations in the virtual table, counted from the first virtual operation.
enum PositionSlot { SLOT_WRITE_REMAINING = 2, SLOT_READ_AVAILABLE, SLOT_WRITE_ADVANCE, SLOT_READ_ADVANCE };

/// Returns the address of the operation of `buffer` in `slot`.
inline void* operationOf(const Buffer* buffer, PositionSlot slot) {
    void* const* slots = nullptr;
    std::memcpy(&slots, static_cast<const void*>(buffer), sizeof slots);
    return slots[slot];
}

/// Returns whether the class of `buffer` does not override the operation in `slot`.
inline bool isOwnOperation(const Buffer* buffer, PositionSlot slot) {
    constexpr int headerEntries = 2;
    return operationOf(buffer, slot) == ut_bufferTable[headerEntries + slot];
}

/// Returns `to` minus `from`, saturated.
inline int distance(int from, int to) {
    int difference = 0;
    if (__builtin_sub_overflow(to, from, &difference))
        return to < from ? INT_MIN : INT_MAX;
    return difference;
}

inline bool Buffer::hasOwnWriting() const {
    return isOwnOperation(this, SLOT_WRITE_REMAINING) && isOwnOperation(this, SLOT_WRITE_ADVANCE);
}

inline bool Buffer::hasOwnReading() const {
    return isOwnOperation(this, SLOT_READ_AVAILABLE) && isOwnOperation(this, SLOT_READ_ADVANCE);
}

inline int Buffer::writeRemaining() const {
    int remaining = 0;
    if (isOwnOperation(this, SLOT_WRITE_REMAINING) && !__builtin_sub_overflow(m_size, m_head, &remaining))
        return remaining;
    return WriteRemaining();
}

inline int Buffer::readAvailable() const {
    int available = 0;
    if (isOwnOperation(this, SLOT_READ_AVAILABLE) && !__builtin_sub_overflow(m_head, m_tail, &available))
        return available;
    return ReadAvailable();
}

inline void Buffer::writeAdvance(int n) {
    int head = 0;
    if (isOwnOperation(this, SLOT_WRITE_ADVANCE) && n >= 0 && !__builtin_add_overflow(m_head, n, &head) &&
        head <= m_size)
        m_head = head;
    else
        WriteAdvance(n);
}

inline void Buffer::readAdvance(int n) {
    int tail = 0;
    if (isOwnOperation(this, SLOT_READ_ADVANCE) && n >= 0 && !__builtin_add_overflow(m_tail, n, &tail) &&
        tail <= m_head)
        m_tail = tail;
    else
        ReadAdvance(n);
}

inline char* Buffer::claimHead(int n) {
    if (!hasOwnWriting() || n < 0 || boundedRoom(n) != n)
        return nullptr;
    char* const start = m_storage + m_head;
    m_head += n;
    return start;
}

inline char* Buffer::claimTail(int n) {
    if (!hasOwnReading() || n < 0 || boundedReadable(n) != n)
        return nullptr;
    char* const start = m_storage + m_tail;
    m_tail += n;
    return start;
}

inline bool Buffer::putDirectly(char c) {
    char* const head = claimHead(1);
    if (head == nullptr)
        return false;
    *head = c;
    terminate();
    return true;
}

inline bool Buffer::putDirectly(const char* text, int nuls) {
    const int space = boundedRoom(m_size);
    if (space < 1 || !hasOwnWriting())
        return false;
    const void* const end = std::memchr(text, 0, static_cast<std::size_t>(space));
    if (end == nullptr)
        return false;
    const auto length = static_cast<std::size_t>(static_cast<const char*>(end) - text);
    char* const head = m_storage + m_head;
    std::memcpy(head, text, length);
    head[length] = 0;
    m_head += static_cast<int>(length) + nuls;
    return true;
}

} // namespace utility
