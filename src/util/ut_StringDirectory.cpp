#include "ut_StringDirectory.h"

#include <algorithm>
#include <cstring>

#include "ut_BufferStream.h"

namespace utility {

StringDirectory::StringDirectory(int initialCapacity)
    : m_strings(static_cast<unsigned int>(std::max(initialCapacity, 0))) {}

StringDirectory::~StringDirectory() = default;

int StringDirectory::Add(const char* s) {
    if (s == nullptr)
        return -1;
    const unsigned int index = m_strings.length();
    m_strings.Append(s);
    if (m_strings[index] == nullptr) {
        m_strings.DeleteAt(index);
        return -1;
    }
    return static_cast<int>(index);
}

void StringDirectory::Delete(const char* s) {
    if (s == nullptr)
        return;
    const int index = Find(s);
    if (index >= 0)
        m_strings.DeleteAt(static_cast<unsigned int>(index));
}

const char* StringDirectory::Lookup(const char* s) {
    const int index = Find(s);
    return index >= 0 ? ElementAt(index) : nullptr;
}

int StringDirectory::Find(const char* s) {
    if (s == nullptr)
        return -1;
    for (unsigned int index = 0; index < m_strings.length(); ++index) {
        const char* const text = m_strings[index];
        if (text == nullptr || std::strcmp(text, s) != 0)
            return static_cast<int>(index);
    }
    return -1;
}

int StringDirectory::NumElements() {
    return static_cast<int>(m_strings.length());
}

const char* StringDirectory::ElementAt(int i) {
    return i >= 0 ? m_strings.ElementAt(static_cast<unsigned int>(i)) : nullptr;
}

void StringDirectory::ToBuffer(BufferStream& out) {
    out.Rewind();
    for (int index = 0; index < NumElements(); ++index) {
        const char* text = ElementAt(index);
        out.PutS(text != nullptr ? text : "-null-");
        out.PutC('\n');
    }
}

} // namespace utility
