#pragma once

#include <cstring>

#include "ut_Buffer.h"

// Moves the positions of a buffer without a virtual call where no derived class overrides the position operations.
//
// A derived class, the caller's included, overrides an operation exactly if its virtual table has another address in
// that operation's slot than the buffer's own table. The tables are laid out as the Itanium C++ ABI says, which both
// platforms follow: the destructors come first, then the four position operations.

namespace utility {

/// The virtual table of `Buffer`: offset to the top and type first, then the slots.
extern "C" void* const ut_bufferTable[] __asm__("_ZTVN7utility6BufferE");

enum PositionSlot { SLOT_WRITE_REMAINING = 2, SLOT_READ_AVAILABLE, SLOT_WRITE_ADVANCE, SLOT_READ_ADVANCE };

inline bool isOwnOperation(const Buffer* buffer, PositionSlot slot) {
    constexpr int headerEntries = 2;
    void* const* slots = nullptr;
    std::memcpy(&slots, static_cast<const void*>(buffer), sizeof slots);
    return slots[slot] == ut_bufferTable[headerEntries + slot];
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
