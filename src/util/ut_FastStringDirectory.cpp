#include "ut_FastStringDirectory.h"

#include <algorithm>
#include <cstdint>

#include "fw_Memory.h"

namespace utility {

namespace {

constexpr int noSlot = -1;

// The free slots form a linked list: a free slot contains the number of the next free slot in place of its string.
char* linkTo(int slot) {
    return reinterpret_cast<char*>(static_cast<std::intptr_t>(slot));
}

int linkedSlot(const char* value) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(value));
}

} // namespace

// Returns the string at a sorted position.
struct FastStringDirectory::SortedStrings {
    const FastStringDirectory& directory;

    const char* operator()(int position) const {
        const short slot = directory.m_sorted[static_cast<unsigned int>(position)];
        return directory.m_strings.ElementAt(static_cast<unsigned int>(slot));
    }
};

FastStringDirectory::FastStringDirectory(int initialCapacity)
    : StringDirectory(initialCapacity),
      m_sorted(static_cast<unsigned int>(std::max(initialCapacity, 0))),
      m_firstFree(noSlot) {}

FastStringDirectory::~FastStringDirectory() {
    while (m_firstFree != noSlot) {
        char*& value = m_strings[static_cast<unsigned int>(m_firstFree)];
        m_firstFree = linkedSlot(value);
        value = nullptr;
    }
}

int FastStringDirectory::Add(const char* s) {
    if (s == nullptr || m_index.isFull())
        return -1;
    const int position = m_index.insertionPoint(s, SortedStrings{*this});
    const int slot = takeSlot(s);
    if (slot < 0)
        return -1;
    try {
        m_sorted.InsertAt(static_cast<unsigned int>(position), static_cast<short>(slot));
    } catch (...) {
        // Only a new slot can make `m_sorted` grow, so the string is the last one: remove it.
        m_strings.DeleteAt(static_cast<unsigned int>(slot));
        throw;
    }
    m_index.added(FirstByteIndex::firstByte(s));
    return slot;
}

int FastStringDirectory::takeSlot(const char* s) {
    if (m_firstFree == noSlot)
        return StringDirectory::Add(s);
    char* const copy = framework::Memory::StaticAllocString(s);
    if (copy == nullptr)
        return -1;
    const int slot = m_firstFree;
    char*& value = m_strings[static_cast<unsigned int>(slot)];
    m_firstFree = linkedSlot(value);
    value = copy;
    return slot;
}

void FastStringDirectory::freeSlot(int slot) {
    char*& value = m_strings[static_cast<unsigned int>(slot)];
    framework::Memory::StaticFreeString(value);
    value = linkTo(m_firstFree);
    m_firstFree = slot;
}

void FastStringDirectory::Delete(const char* s) {
    if (s == nullptr)
        return;
    const int position = m_index.findFirst(s, SortedStrings{*this});
    if (position < 0)
        return;
    // `s` may be the string to be deleted: read its first byte now.
    const unsigned char byte = FirstByteIndex::firstByte(s);
    const unsigned int entry = static_cast<unsigned int>(position);
    freeSlot(m_sorted[entry]);
    m_sorted.DeleteAt(entry);
    m_index.removed(byte, position);
}

int FastStringDirectory::Find(const char* s) {
    if (s == nullptr)
        return -1;
    const int position = m_index.find(s, SortedStrings{*this});
    return position >= 0 ? m_sorted[static_cast<unsigned int>(position)] : -1;
}

const char* FastStringDirectory::ElementAt(int slot) {
    const char* value = StringDirectory::ElementAt(slot);
    return isFreeSlot(value) ? nullptr : value;
}

bool FastStringDirectory::isFreeSlot(const char* value) const {
    return value == linkTo(noSlot) || reinterpret_cast<std::uintptr_t>(value) < m_strings.length();
}

} // namespace utility
