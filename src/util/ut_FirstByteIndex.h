#pragma once

#include "ut_Export.h"

#include <cstdint>
#include <cstring>

namespace utility {

/// Where in a sorted sequence of names those that begin with a given byte stand, and the searches that start there.
///
/// The index holds no names: it counts what its owner says was added and removed, and asks the owner's function for the
/// name at a position. Names are ordered as `strcmp` orders them, so by bytes from 0 to 255 on every platform. At most
/// 32,767 names can be counted; the owner asks `isFull` first. One thread at a time. Nothing is thrown.
/// For the directories of the library; their callers have no use for it.
///
///     utility::FirstByteIndex index;
///     const char* names[] = {"a", "ab", "b"};
///     for (const char* name : names) index.added(utility::FirstByteIndex::firstByte(name));
///     index.entry('b');                                            // 2
///     index.find("ab", [&](int position) { return names[position]; });   // 1
class FirstByteIndex {
public:
    FirstByteIndex() : m_entries() {}

    /// The first byte of `name`; that of an empty text when `name` is null.
    static unsigned char firstByte(const char* name) {
        return static_cast<unsigned char>(name != nullptr ? *name : 0);
    }

    /// The position of the first name that begins with `byte` or a greater one; the count of names for 256.
    int entry(int byte) const {
        return m_entries[byte];
    }
    bool isFull() const {
        return m_entries[BYTES] == INT16_MAX;
    }

    /// Counts a name that begins with `byte`.
    void added(unsigned char byte) {
        for (int above = byte + 1; above <= BYTES; ++above)
            ++m_entries[above];
    }
    /// Takes the name that stood at `position` and began with `byte` off the count.
    void removed(unsigned char byte, int position) {
        for (int above = byte + 1; above <= BYTES; ++above) {
            if (m_entries[above] > position)
                --m_entries[above];
        }
    }
    void clear() {
        std::memset(m_entries, 0, sizeof m_entries);
    }

    /// The position of a name equal to `name`, or -1. Halves the range of the first byte, with one comparison each.
    template<class NameAt>
    int find(const char* name, NameAt nameAt) const {
        const unsigned char byte = firstByte(name);
        int start = m_entries[byte];
        int end = m_entries[byte + 1];
        while (start < end) {
            const int middle = start + (end - start) / 2;
            const int order = std::strcmp(name, nameAt(middle));
            if (order == 0)
                return middle;
            if (order > 0)
                start = middle + 1;
            else
                end = middle;
        }
        return -1;
    }

    /// The position of the first name equal to `name`, or -1.
    template<class NameAt>
    int findFirst(const char* name, NameAt nameAt) const {
        const unsigned char byte = firstByte(name);
        for (int position = m_entries[byte]; position < m_entries[byte + 1]; ++position) {
            const int order = std::strcmp(name, nameAt(position));
            if (order <= 0)
                return order == 0 ? position : -1;
        }
        return -1;
    }

    /// The position of the first name that is greater than `name`: where it goes, behind its equals.
    template<class NameAt>
    int insertionPoint(const char* name, NameAt nameAt) const {
        const unsigned char byte = firstByte(name);
        int start = m_entries[byte];
        int end = m_entries[byte + 1];
        while (start < end) {
            const int middle = start + (end - start) / 2;
            if (std::strcmp(name, nameAt(middle)) >= 0)
                start = middle + 1;
            else
                end = middle;
        }
        return start;
    }

private:
    static const int BYTES = 256;

    std::int16_t m_entries[BYTES + 1];
};

} // namespace utility
