#pragma once

#include "ut_Export.h"

#include <cstddef>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>

#include "ut_Array.h"
#include "ut_Environment.h"
#include "ut_ItemDirectory.h"
#include "ut_ListIterator.h"
#include "ut_Map.h"
#include "ut_MapEntity.h"
#include "ut_StringDirectory.h"
#include "ut_StringMap.h"

// Ranges over the containers of the library, for `for` loops and the algorithms of the standard library.
//
// `utility::range(container)` returns a range that refers to the container, which must outlive it. It accepts every
// typed array including `TokenSet`, the directories, the maps, `Environment` and `List`. Only the ranges of `StringMap`
// and `Environment` throw: `std::bad_alloc`, if memory for a copied text is exhausted.
//
// What a loop gets:
//
// - Arrays: each element by value, a number or a pointer. The object that a pointer points to still belongs to the
//   array, if the array owns its elements. A text is a `const char*`, which is null for a null element.
// - Directories: `const char*` or `framework::Item*`, in the order of the directory, never null. Free slots are
// skipped.
// - Maps: an entry with `key` and `value`, in the order of `First` and `Next`.
// - `Environment`: an entry with copies of `name` and `value`, in the order of insertion.
// - `List`: `ListContainable*`, never null. The range holds the read lock of the list.
//
// Changing the container in the loop, except for a `List`, is safe: every step checks what the container contains then.
//
// - Elements added at the end of an array, a directory or a set of variables are not visited.
// - If an element at or before the current one is inserted or removed, the loop visits an element twice or skips one.
// - If the current key of a map is removed, the loop ends.
// - A loop ends after as many steps as the container had elements at its start.
// - A pointer that the loop got is valid as the container documents, for example until the element is removed.
//
// Threads are those of the container.
//
//     utility::IntArray ports(4);
//     ports.Append(7);
//     ports.Append(3);
//     int sum = 0;
//     for (int port : utility::range(ports)) sum += port;   // sum is 10
namespace utility {

class List;
class ListContainable;

/// A range over `Source`, a view of a container with numbered elements. `range` creates it.
///
/// `Source` has `count()` and `at(index)`, which must be safe for every index. If `Source::isSkipped` returns true for
/// an element, the range omits it.
template<typename Source>
class IndexedRange {
public:
    /// The type of the elements.
    using Element = decltype(std::declval<const Source&>().at(0));

    /// An input iterator. It refers to the container; the container must outlive it.
    class Iterator {
    public:
        /// @name Properties of an input iterator, for the algorithms of the standard library
        /// @{
        using iterator_category = std::input_iterator_tag; ///< The elements can be read once, in order.
        using value_type = Element;                        ///< The type of an element.
        using difference_type = std::ptrdiff_t;            ///< The type of a distance.
        using pointer = const Element*;                    ///< A pointer to an element.
        using reference = Element;                         ///< What `*` returns.
        /// @}

        /// Starts at `index`, or at the next element that is not skipped. Visits no index from `limit` on.
        Iterator(Source source, unsigned int index, unsigned int limit)
            : m_source(source), m_index(index), m_limit(limit) {
            skip();
        }
        /// Returns the current element; null or 0 at the end.
        Element operator*() const {
            return isAtEnd() ? Element() : m_source.at(m_index);
        }
        /// Moves to the next element; does nothing at the end.
        Iterator& operator++() {
            if (!isAtEnd()) {
                ++m_index;
                skip();
            }
            return *this;
        }
        /// Moves to the next element and returns the position before.
        Iterator operator++(int) {
            Iterator before = *this;
            ++*this;
            return before;
        }
        /// Returns whether both are at the same element, or both at the end. Both must belong to the same range.
        bool operator==(const Iterator& other) const {
            return position() == other.position();
        }
        /// Returns the opposite of `operator==`.
        bool operator!=(const Iterator& other) const {
            return !(*this == other);
        }

    private:
        // The container may have shrunk since the range was created.
        unsigned int end() const {
            const unsigned int count = m_source.count();
            return count < m_limit ? count : m_limit;
        }
        unsigned int position() const {
            const unsigned int last = end();
            return m_index < last ? m_index : last;
        }
        bool isAtEnd() const {
            return m_index >= end();
        }
        void skip() {
            while (!isAtEnd() && Source::isSkipped(m_source.at(m_index)))
                ++m_index;
        }

        Source m_source;
        unsigned int m_index;
        unsigned int m_limit;
    };

    /// Refers to the container of `source`.
    explicit IndexedRange(Source source) : m_source(source), m_limit(source.count()) {}
    /// Returns an iterator at the first element.
    Iterator begin() const {
        return Iterator(m_source, 0, m_limit);
    }
    /// Returns an iterator at the end.
    Iterator end() const {
        return Iterator(m_source, m_limit, m_limit);
    }

private:
    Source m_source;
    unsigned int m_limit;
};

/// A range over a container that is read one entry at a time. `range` creates it.
///
/// `Source` has `Entry`, `limit()`, and `first(entry)` and `next(entry)`, which set `entry` and return false at the
/// end.
template<typename Source>
class EntryRange {
public:
    /// An input iterator, which owns a copy of the current entry. It refers to the container; the container must
    /// outlive it.
    class Iterator {
    public:
        /// @name Properties of an input iterator, for the algorithms of the standard library
        /// @{
        using iterator_category = std::input_iterator_tag; ///< The elements can be read once, in order.
        using value_type = typename Source::Entry;         ///< The type of an element.
        using difference_type = std::ptrdiff_t;            ///< The type of a distance.
        using pointer = const value_type*;                 ///< A pointer to an element.
        using reference = const value_type&;               ///< What `*` returns.
        /// @}

        /// Starts at the end.
        explicit Iterator(Source source) : m_source(source) {}
        /// Starts at the first entry, and visits at most `limit` entries.
        Iterator(Source source, unsigned int limit) : m_source(source), m_left(limit) {
            if (m_left > 0 && !m_source.first(m_entry))
                finish();
        }
        /// Returns the current entry, valid until this iterator moves or is destroyed; an empty entry at the end.
        reference operator*() const {
            return m_entry;
        }
        /// Returns a pointer to what `operator*` returns.
        pointer operator->() const {
            return &m_entry;
        }
        /// Moves to the next entry; does nothing at the end.
        Iterator& operator++() {
            if (m_left > 0 && (--m_left == 0 || !m_source.next(m_entry)))
                finish();
            return *this;
        }
        /// Moves to the next entry and returns the position before.
        Iterator operator++(int) {
            Iterator before = *this;
            ++*this;
            return before;
        }
        /// Returns whether both made the same number of steps, or both are at the end. Both must belong to the same
        /// range.
        bool operator==(const Iterator& other) const {
            return m_left == other.m_left;
        }
        /// Returns the opposite of `operator==`.
        bool operator!=(const Iterator& other) const {
            return !(*this == other);
        }

    private:
        void finish() {
            m_left = 0;
            m_entry = value_type();
        }

        Source m_source;
        unsigned int m_left = 0; // the steps to the limit; 0 at the end
        value_type m_entry{};
    };

    /// Refers to the container of `source`.
    explicit EntryRange(Source source) : m_source(source) {}
    /// Returns an iterator at the first entry.
    Iterator begin() const {
        return Iterator(m_source, m_source.limit());
    }
    /// Returns an iterator at the end.
    Iterator end() const {
        return Iterator(m_source);
    }

private:
    Source m_source;
};

/// A range over a list, which is read-locked for the lifetime of the range. `range` creates it.
///
/// The rules of `ListIterator` apply: the thread of the loop must not write to the list, and other writers wait. The
/// elements can be visited once.
///
///     for (utility::ListContainable* element : utility::range(list)) show(*element);
class ListRange {
public:
    /// An input iterator, which moves the range.
    class Iterator {
    public:
        /// @name Properties of an input iterator, for the algorithms of the standard library
        /// @{
        using iterator_category = std::input_iterator_tag; ///< The elements can be read once, in order.
        using value_type = ListContainable*;               ///< The type of an element.
        using difference_type = std::ptrdiff_t;            ///< The type of a distance.
        using pointer = ListContainable* const*;           ///< A pointer to an element.
        using reference = ListContainable*;                ///< What `*` returns.
        /// @}

        /// Starts at the next element of `walk`; at the end if `walk` is null.
        explicit Iterator(ListIterator* walk) : m_walk(walk), m_element(walk != nullptr ? walk->next() : nullptr) {}
        /// Returns the current element, which the list's user owns; null at the end.
        ListContainable* operator*() const {
            return m_element;
        }
        /// Moves to the next element; does nothing at the end.
        Iterator& operator++() {
            if (m_element != nullptr)
                m_element = m_walk->next();
            return *this;
        }
        /// Moves to the next element and returns the position before.
        Iterator operator++(int) {
            const Iterator before = *this;
            ++*this;
            return before;
        }
        /// Returns whether both are at the same element, or both at the end.
        bool operator==(const Iterator& other) const {
            return m_element == other.m_element;
        }
        /// Returns the opposite of `operator==`.
        bool operator!=(const Iterator& other) const {
            return !(*this == other);
        }

    private:
        ListIterator* m_walk;
        ListContainable* m_element;
    };

    /// Waits until no thread writes to `list`, then read-locks it.
    ListRange(const List& list, SortOrder order) : m_walk(list, order) {}
    /// Returns an iterator at the next element that no iterator of this range has reached.
    Iterator begin() {
        return Iterator(&m_walk);
    }
    /// Returns an iterator at the end.
    Iterator end() {
        return Iterator(nullptr);
    }

private:
    ListIterator m_walk;
};

/// An entry of a `Map` or a `MapEntity`. The map owns neither pointer.
struct MapEntry {
    /// The key.
    void* key;
    /// The value.
    void* value;
};

/// An entry of a `StringMap`.
struct StringMapEntry {
    /// A copy of the key.
    std::string key;
    /// The value, which the map does not own.
    void* value;
};

/// A variable of an `Environment`.
struct EnvironmentEntry {
    /// A copy of the name.
    std::string name;
    /// A copy of the value.
    std::string value;
};

/// The elements of an array. Only `range` uses it.
template<typename AnyArray>
struct ArrayElements {
    /// The array.
    const AnyArray* array;
    /// Returns the number of elements.
    unsigned int count() const {
        return array->length();
    }
    /// Returns a copy of the element at `index`, as a `const char*` if it is a text.
    auto at(unsigned int index) const {
        using Stored = std::decay_t<decltype((*array)[index])>;
        using Copied = std::conditional_t<std::is_same_v<Stored, char*>, const char*, Stored>;
        return static_cast<Copied>((*array)[index]);
    }
    /// Returns false: a loop gets the null elements too.
    template<typename Element>
    static bool isSkipped(Element) {
        return false;
    }
};

/// The strings of a directory. Only `range` uses it.
struct DirectoryStrings {
    /// The directory.
    StringDirectory* directory;
    /// Returns the number of slots.
    unsigned int count() const {
        const int count = directory->NumElements();
        return count > 0 ? static_cast<unsigned int>(count) : 0;
    }
    /// Returns the string at `index`; null if the slot is free.
    const char* at(unsigned int index) const {
        return directory->ElementAt(static_cast<int>(index));
    }
    /// Returns whether a slot is free.
    static bool isSkipped(const char* text) {
        return text == nullptr;
    }
};

/// The items of a directory. Only `range` uses it.
struct DirectoryItems {
    /// The directory.
    const ItemDirectory* directory;
    /// Returns the number of items.
    unsigned int count() const {
        return directory->length();
    }
    /// Returns the item at `index` in the order of names.
    framework::Item* at(unsigned int index) const {
        return directory->getSorted(index);
    }
    /// Returns whether there is no item.
    static bool isSkipped(const framework::Item* item) {
        return item == nullptr;
    }
};

/// The entries of a `Map` or a `MapEntity`. Only `range` uses it.
template<typename AnyMap>
struct MapEntries {
    /// The type of an entry.
    using Entry = MapEntry;
    /// The map.
    AnyMap* map;
    /// Returns a number that is not less than that of the entries.
    unsigned int limit() const {
        return map->count();
    }
    /// Sets `entry` to the first entry; returns false if there is none.
    bool first(Entry& entry) const {
        entry.key = map->First(entry.value);
        return entry.key != absentEntry();
    }
    /// Sets `entry` to the entry after it; returns false if there is none.
    bool next(Entry& entry) const {
        entry.key = map->Next(entry.key, entry.value);
        return entry.key != absentEntry();
    }
};

/// The entries of a `StringMap`. Only `range` uses it.
struct StringMapEntries {
    /// The type of an entry.
    using Entry = StringMapEntry;
    /// The map.
    StringMap* map;
    /// Returns a number that is not less than that of the entries.
    unsigned int limit() const {
        return map->count();
    }
    /// Sets `entry` to the first entry; returns false if there is none.
    bool first(Entry& entry) const {
        return assign(entry, map->First(entry.value));
    }
    /// Sets `entry` to the entry after it; returns false if there is none. The key is a copy, because the entry may
    /// have been removed.
    bool next(Entry& entry) const {
        return assign(entry, map->Next(entry.key.c_str(), entry.value));
    }

private:
    static bool assign(Entry& entry, const char* key) {
        if (key == nullptr)
            return false;
        entry.key = key;
        return true;
    }
};

/// The variables of an `Environment`. Only `range` uses it.
struct EnvironmentVariables {
    /// The type of an entry.
    using Entry = EnvironmentEntry;
    /// The set of variables.
    const Environment* variables;
    /// The index of the current variable.
    unsigned int index = 0;
    /// Returns the number of variables.
    unsigned int limit() const {
        return variables->length();
    }
    /// Sets `entry` to the first variable; returns false if there is none.
    bool first(Entry& entry) {
        index = 0;
        return load(entry);
    }
    /// Sets `entry` to the next variable; returns false if there is none.
    bool next(Entry& entry) {
        ++index;
        return load(entry);
    }

private:
    // A name that fills the buffer is truncated and not terminated.
    bool load(Entry& entry) {
        if (index >= variables->length())
            return false;
        std::string name(64, '\0');
        const char* value = variables->ElementAt(index, name.data(), static_cast<unsigned int>(name.size()));
        while (name.find('\0') == std::string::npos) {
            name.assign(2 * name.size(), '\0');
            value = variables->ElementAt(index, name.data(), static_cast<unsigned int>(name.size()));
        }
        name.resize(name.find('\0'));
        entry.name = std::move(name);
        entry.value = value != nullptr ? value : "";
        return true;
    }
};

/// Returns a range over the elements of a typed array, by value.
template<typename AnyArray, typename = std::enable_if_t<std::is_base_of_v<Array, AnyArray>>>
IndexedRange<ArrayElements<AnyArray>> range(const AnyArray& array) {
    return IndexedRange<ArrayElements<AnyArray>>(ArrayElements<AnyArray>{&array});
}

/// Returns a range over the strings of `directory`, by index or slot.
inline IndexedRange<DirectoryStrings> range(StringDirectory& directory) {
    return IndexedRange<DirectoryStrings>(DirectoryStrings{&directory});
}

/// Returns a range over the items of `directory`, in the order of names.
inline IndexedRange<DirectoryItems> range(const ItemDirectory& directory) {
    return IndexedRange<DirectoryItems>(DirectoryItems{&directory});
}

/// Returns a range over the entries of `map`. Each step searches the bucket of the current key.
inline EntryRange<MapEntries<const Map>> range(const Map& map) {
    return EntryRange<MapEntries<const Map>>(MapEntries<const Map>{&map});
}

/// Returns a range over the entries of `map`. Each step searches the bucket of the current key.
inline EntryRange<MapEntries<MapEntity>> range(MapEntity& map) {
    return EntryRange<MapEntries<MapEntity>>(MapEntries<MapEntity>{&map});
}

/// Returns a range over the entries of `map`. Each step searches the bucket of the current key and copies the next key.
inline EntryRange<StringMapEntries> range(StringMap& map) {
    return EntryRange<StringMapEntries>(StringMapEntries{&map});
}

/// Returns a range over `variables`. Each step copies a name and a value.
inline EntryRange<EnvironmentVariables> range(const Environment& variables) {
    return EntryRange<EnvironmentVariables>(EnvironmentVariables{&variables});
}

/// Returns a range over the elements of `list`, which holds its read lock.
inline ListRange range(const List& list, SortOrder order = FIRST_TO_LAST) {
    return ListRange(list, order);
}

// A range would outlive a temporary container.
template<typename AnyArray, typename = std::enable_if_t<std::is_base_of_v<Array, AnyArray>>>
void range(const AnyArray&& array) = delete;
void range(const ItemDirectory&& directory) = delete;
void range(const Map&& map) = delete;
void range(const Environment&& variables) = delete;
void range(const List&& list, SortOrder order = FIRST_TO_LAST) = delete;

} // namespace utility
