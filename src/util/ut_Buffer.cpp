#include "ut_Buffer.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "fw_Container.h"
#include "fw_Memory.h"
#include "internal/ut_Failure.h"
#include "internal/ut_Trace.h"
#include "internal/ut_Utf8.h"

namespace utility {

namespace {

int saturated(long long value) {
    return static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX));
}

// Saturates, so that an advance that would overflow is refused as out of range.
int moved(int position, int n) {
    return saturated(static_cast<long long>(position) + n);
}

int distance(int from, int to) {
    return saturated(static_cast<long long>(to) - from);
}

// The length of the incomplete UTF-8 character at the end of `text`, 0 to 3: without it, the text is printable. Returns
// -1 if no such length makes the text printable.
int partialCharacterLength(const char* text, int length) {
    for (int partial = 0; partial <= std::min(length, 3); ++partial) {
        if (isPrintableUtf8(text, static_cast<unsigned int>(length - partial), "", "\t\n\r"))
            return partial;
    }
    return -1;
}

} // namespace

Buffer::Buffer()
    : m_kind(STORAGE_NONE),
      m_size(0),
      m_storage(nullptr),
      m_head(0),
      m_tail(0),
      m_noThrow(false),
      m_terminated(true),
      m_links(0) {}

Buffer::~Buffer() {
    if (m_storage == nullptr)
        return;
    if (m_kind == STORAGE_MALLOC) {
        std::free(m_storage);
    } else if (m_kind == STORAGE_MEMORY && framework::Container::getMemory() != nullptr) {
        framework::Container::getMemory()->release(m_storage);
    }
}

int Buffer::WriteRemaining() const {
    return distance(m_head, m_size);
}

int Buffer::ReadAvailable() const {
    return distance(m_tail, m_head);
}

void Buffer::WriteAdvance(int n) {
    m_head = moved(m_head, n);
    if (m_head <= m_size && n >= 0)
        return;
    // Leave the position moved: callers see how far the write exceeded the capacity.
    if (!m_noThrow)
        VXUT_THROW(FAILURE_BUFFER, "");
    if (m_head < m_tail)
        m_head = m_tail;
    // Check the capacity last: a refused advance may have left the read position beyond it.
    if (m_head > m_size)
        m_head = m_size;
}

void Buffer::ReadAdvance(int n) {
    m_tail = moved(m_tail, n);
    if (m_tail <= m_head && n >= 0)
        return;
    if (!m_noThrow)
        VXUT_THROW(FAILURE_BUFFER, "");
    if (m_tail < 0) {
        m_tail = 0;
    } else if (m_tail > m_head) {
        m_tail = m_head;
    }
}

void Buffer::allocBuffer() {
    framework::Memory* memory = framework::Container::getMemory();
    m_kind = memory != nullptr ? STORAGE_MEMORY : STORAGE_MALLOC;
    m_storage = nullptr;
    m_terminated = true;
    if (m_size >= 0) {
        const std::size_t bytes = static_cast<std::size_t>(m_size) + 1;
        m_storage = static_cast<char*>(memory != nullptr ? memory->allocate(bytes) : std::malloc(bytes));
    }
    if (m_storage != nullptr) {
        m_storage[0] = 0;
        m_storage[m_size] = 0;
        return;
    }
    m_size = 0;
    if (!m_noThrow)
        VXUT_THROW(FAILURE_BUFFER_STORAGE, "");
    VXUT_LOG(framework::Logger::LOG_ERROR, "Buffer was not allocated");
}

void Buffer::Rewind() {
    m_head = 0;
    m_tail = 0;
    terminate();
}

void Buffer::Consolidate() {
    const int unread = boundedReadable(distance(m_tail, m_head));
    if (unread < 1) {
        Rewind();
        return;
    }
    std::memmove(m_storage, m_storage + m_tail, static_cast<std::size_t>(unread));
    m_head = unread;
    m_tail = 0;
}

void Buffer::CopyFrom(Buffer* source) {
    if (source == nullptr)
        return;
    int n = source->ReadAvailable();
    const int remaining = WriteRemaining();
    if (remaining < n) {
        if (!m_noThrow)
            VXUT_THROW(FAILURE_BUFFER, "");
        n = remaining;
    }
    n = boundedRoom(source->boundedReadable(n));
    if (n > 0)
        std::memmove(pHead(), source->pTail(), static_cast<std::size_t>(n));
    WriteAdvance(n);
    terminate();
    source->ReadAdvance(n);
}

bool Buffer::truncatePartialUtf8() {
    const int length = distance(m_tail, m_head);
    if (length < 0) {
        framework::Logger::StaticLog(framework::Logger::LOG_ERROR, "truncatePartialUtf8: bug!");
        return false;
    }
    int partial = -1;
    // After a failure, the positions may be outside the storage.
    if (boundedReadable(length) == length)
        partial = partialCharacterLength(m_storage != nullptr ? m_storage + m_tail : "", length);
    if (partial >= 0) {
        m_head -= partial;
        terminate();
        return true;
    }
    framework::Logger::StaticLog(framework::Logger::LOG_ERROR,
                                 "truncatePartialUtf8: String is not a printable UTF-8 string: '%.*s'",
                                 std::clamp(std::min(m_head, m_size), 0, 200), m_storage != nullptr ? m_storage : "");
    return false;
}

void Buffer::supplyStorage(char* storage, int capacity, bool terminated) {
    m_kind = STORAGE_CALLER;
    m_storage = storage;
    m_size = std::max(capacity, 0);
    m_terminated = terminated && capacity >= 0;
}

void Buffer::supplyArray(char* array, int size) {
    supplyStorage(array, size > 0 ? size - 1 : -1, true);
    if (array == nullptr || size < 1)
        return;
    array[0] = 0;
    array[size - 1] = 0;
}

void* Buffer::operator new(std::size_t size) noexcept {
    framework::Memory* memory = framework::Container::getMemory();
    return memory != nullptr ? memory->allocate(size) : std::malloc(size);
}

void Buffer::operator delete(void* object) noexcept {
    if (object == nullptr)
        return;
    framework::Memory* memory = framework::Container::getMemory();
    if (memory != nullptr) {
        memory->release(object);
    } else {
        std::free(object);
    }
}

} // namespace utility
