#include "internal/ut_WriteHead.h"

#include <algorithm>
#include <cstring>

#include "ut_Buffer.h"

namespace utility {

WriteHead::WriteHead(Buffer& buffer) : m_buffer(buffer), m_start(&m_dummy), m_capacity(0), m_dummy(0) {
    const int remaining = buffer.WriteRemaining();
    const int position = buffer.WritePosition();
    if (buffer.pBuffer() == nullptr || position < 0 || position >= buffer.Size())
        return;
    m_start = buffer.pHead();
    m_capacity = static_cast<unsigned int>(std::clamp(remaining, 0, buffer.Size() - position));
}

void WriteHead::advance(const char* text) {
    m_buffer.WriteAdvance(text != nullptr ? static_cast<int>(strnlen(text, m_capacity)) : 0);
}

} // namespace utility
