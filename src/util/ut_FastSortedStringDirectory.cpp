#include "ut_FastSortedStringDirectory.h"

namespace utility {

namespace {

// Returns the string at a sorted position.
struct SortedStrings {
    const StringArray& strings;

    const char* operator()(int position) const {
        return strings.ElementAt(static_cast<unsigned int>(position));
    }
};

} // namespace

FastSortedStringDirectory::FastSortedStringDirectory(int initialCapacity) : StringDirectory(initialCapacity) {}

FastSortedStringDirectory::~FastSortedStringDirectory() = default;

int FastSortedStringDirectory::Add(const char* s) {
    if (s == nullptr || m_index.isFull())
        return -1;
    const int position = m_index.insertionPoint(s, SortedStrings{m_strings});
    const unsigned int slot = static_cast<unsigned int>(position);
    m_strings.InsertAt(slot, s);
    if (m_strings[slot] == nullptr) {
        m_strings.DeleteAt(slot);
        return -1;
    }
    m_index.added(FirstByteIndex::firstByte(s));
    return position;
}

void FastSortedStringDirectory::Delete(const char* s) {
    if (s == nullptr)
        return;
    const int position = m_index.findFirst(s, SortedStrings{m_strings});
    if (position < 0)
        return;
    // `s` may be the string to be deleted: read its first byte now.
    const unsigned char byte = FirstByteIndex::firstByte(s);
    m_strings.DeleteAt(static_cast<unsigned int>(position));
    m_index.removed(byte, position);
}

int FastSortedStringDirectory::Find(const char* s) {
    return s != nullptr ? m_index.find(s, SortedStrings{m_strings}) : -1;
}

} // namespace utility
