#pragma once

#include "ut_Export.h"

#include <cstdint>
#include <cstring>

namespace utility {

/// An index of a sorted sequence of names by their first byte, with the searches that use it.
///
/// For each byte, the index stores the position of the first name that begins with it. It does not store names: its
/// owner calls `added` and `removed` for each name, and passes the searches a function that returns the name at a
/// position. Names are ordered as by `strcmp`: by bytes from 0 to 255 on every platform. At most 32,767 names can be
/// counted: the owner checks `isFull` before adding one. Not thread-safe. Does not throw. Internal to the library's
/// directories.
///
///     utility::FirstByteIndex index;
///     const char* names[] = {"a", "ab", "b"};
///     for (const char* name : names) index.added(utility::FirstByteIndex::firstByte(name));
///     index.entry('b');                                            // 2
///     index.find("ab", [&](int position) { return names[position]; });   // 1
class FirstByteIndex {
public:
    /// Creates the index of no names.
    FirstByteIndex() : m_entries() {}

    /// Returns the first byte of `name`, or 0 if `name` is null.
    static unsigned char firstByte(const char* name) {
        return static_cast<unsigned char>(name != nullptr ? *name : 0);
    }

    /// Returns the position of the first name that begins with `byte` or a greater byte. `byte` is 0 to 256;
    /// `entry(256)` is the number of names.
    int entry(int byte) const {
        return m_entries[byte];
    }
    /// Returns whether the index counts 32,767 names, the maximum.
    bool isFull() const {
        return m_entries[byteCount] == INT16_MAX;
    }

    /// Counts a name that begins with `byte`. The index must not be full.
    void added(unsigned char byte) {
        for (int above = byte + 1; above <= byteCount; ++above)
            ++m_entries[above];
    }
    /// Removes one name, which was at `position` and begins with `byte`, from the counts.
    void removed(unsigned char byte, int position) {
        for (int above = byte + 1; above <= byteCount; ++above) {
            if (m_entries[above] > position)
                --m_entries[above];
        }
    }
    /// Resets the index to no names.
    void clear() {
        std::memset(m_entries, 0, sizeof m_entries);
    }

    /// Returns the position of a name equal to `name`, or -1. Binary search in the range of the first byte, with one
    /// comparison per step. `nameAt(position)` returns the name at `position`.
    template<typename NameAt>
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

    /// Returns the position of the first name equal to `name`, or -1. Binary search in the range of the first byte.
    template<typename NameAt>
    int findFirst(const char* name, NameAt nameAt) const {
        const unsigned char byte = firstByte(name);
        int start = m_entries[byte];
        int end = m_entries[byte + 1];
        bool found = false;
        while (start < end) {
            const int middle = start + (end - start) / 2;
            const int order = std::strcmp(name, nameAt(middle));
            found = found || order == 0;
            if (order > 0)
                start = middle + 1;
            else
                end = middle;
        }
        return found ? start : -1;
    }

    /// Does what `findFirst` does, but compares name by name from the start of the range, for an owner with names that
    /// a caller's class supplies: it sees which names are read.
    template<typename NameAt>
    int scanFirst(const char* name, NameAt nameAt) const {
        const unsigned char byte = firstByte(name);
        for (int position = m_entries[byte]; position < m_entries[byte + 1]; ++position) {
            const int order = std::strcmp(name, nameAt(position));
            if (order <= 0)
                return order == 0 ? position : -1;
        }
        return -1;
    }

    /// Returns the position of the first name greater than `name`, which is where `name` is to be inserted: after its
    /// equals.
    template<typename NameAt>
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
    static constexpr int byteCount = 256;

    std::int16_t m_entries[byteCount + 1];
};

} // namespace utility
