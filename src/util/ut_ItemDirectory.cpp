#include "ut_ItemDirectory.h"

#include <algorithm>
#include <functional>

#include "fw_Item.h"
#include "fw_StringRepository.h"

namespace utility {

namespace {

const char* textOrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

const char* textOf(stringtoken token) {
    return textOrEmpty(strings::StringRepository::toString(token));
}

} // namespace

// Returns the name at a sorted position.
struct ItemDirectory::SortedNames {
    const ItemDirectory& directory;

    const char* operator()(int position) const {
        const unsigned short place = directory.m_sorted[static_cast<unsigned int>(position)];
        return textOrEmpty(directory.m_items[place]->getNameString());
    }
};

ItemDirectory::ItemDirectory(unsigned int initialCapacity) : m_items(initialCapacity), m_sorted(initialCapacity) {}

ItemDirectory::~ItemDirectory() = default;

int ItemDirectory::add(framework::Item* item) {
    if (item == nullptr || m_index.isFull())
        return -1;
    const char* const name = textOrEmpty(item->getNameString());
    const unsigned int position = m_items.length();
    const int sortedPosition = m_index.insertionPoint(name, SortedNames{*this});
    m_items.Append(item);
    try {
        m_sorted.InsertAt(static_cast<unsigned int>(sortedPosition), static_cast<unsigned short>(position));
    } catch (...) {
        m_items.truncate(position);
        throw;
    }
    m_index.added(FirstByteIndex::firstByte(name));
    return static_cast<int>(position);
}

void ItemDirectory::remove(stringtoken nameToken) {
    const char* const name = textOf(nameToken);
    const int sortedPosition = m_index.scanFirst(name, SortedNames{*this});
    if (sortedPosition < 0)
        return;
    const unsigned int entry = static_cast<unsigned int>(sortedPosition);
    const unsigned short position = m_sorted[entry];
    m_items.DeleteAt(position);
    m_sorted.DeleteAt(entry);
    for (unsigned int other = 0; other < m_sorted.length(); ++other) {
        if (m_sorted[other] > position)
            --m_sorted[other];
    }
    m_index.removed(FirstByteIndex::firstByte(name), sortedPosition);
}

void ItemDirectory::replace(stringtoken nameToken, framework::Item* item) {
    if (item == nullptr)
        return;
    const int position = find(nameToken);
    if (position >= 0)
        m_items.SetAt(static_cast<unsigned int>(position), item);
}

int ItemDirectory::find(stringtoken nameToken) const {
    const int sortedPosition = m_index.find(textOf(nameToken), SortedNames{*this});
    return sortedPosition >= 0 ? m_sorted[static_cast<unsigned int>(sortedPosition)] : -1;
}

framework::Item* ItemDirectory::get(stringtoken nameToken) const {
    const int position = find(nameToken);
    return position >= 0 ? m_items[static_cast<unsigned int>(position)] : nullptr;
}

unsigned int ItemDirectory::length() const {
    return m_items.length();
}

framework::Item* ItemDirectory::getSorted(unsigned int i) const {
    return i < m_sorted.length() ? m_items[m_sorted[i]] : nullptr;
}

void ItemDirectory::removeAll() {
    m_index.clear();
    m_sorted.truncate(0);
    m_items.truncate(0);
}

void ItemDirectory::deleteAll() {
    clearRepeatedItems();
    // Clear the index first, so that an item that removes itself in its destructor is not found.
    m_index.clear();
    m_sorted.truncate(0);
    for (unsigned int position = 0; position < m_items.length(); ++position)
        delete m_items[position];
    removeAll();
}

void ItemDirectory::clearRepeatedItems() {
    if (m_sorted.length() < 2)
        return;
    unsigned short* const positions = &m_sorted[0];
    unsigned short* const end = positions + m_sorted.length();
    std::sort(positions, end, [this](unsigned short left, unsigned short right) {
        return std::less<framework::Item*>()(m_items[left], m_items[right]);
    });
    for (unsigned short* position = positions + 1; position != end; ++position) {
        if (m_items[*position] == m_items[position[-1]])
            m_items[position[-1]] = nullptr;
    }
}

} // namespace utility
