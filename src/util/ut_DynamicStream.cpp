#include "ut_DynamicStream.h"

#include <algorithm>
#include <cstring>

#include "fw_Memory.h"
#include "internal/ut_Trace.h"

namespace utility {

namespace {

constexpr unsigned int pageShift = 12;
constexpr unsigned int bytesPerPage = 1U << pageShift;

// The page and offset of a byte, and the number of bytes from there to the end of the page.
struct Place {
    unsigned int page;
    unsigned int offset;
    unsigned int length;

    explicit Place(unsigned int position)
        : page(position >> pageShift), offset(position & (bytesPerPage - 1)), length(bytesPerPage - offset) {}
};

} // namespace

DynamicStream::DynamicStream(int maxSize)
    : m_maxSize(static_cast<unsigned int>(std::max(maxSize, 0))),
      m_pages(nullptr),
      m_maxPages((m_maxSize >> pageShift) + 1),
      m_pageCount(0),
      m_outputCount(0),
      m_inputCount(0) {
    VXUT_TRACE(TOKEN_DYNAMIC_STREAM, "maxPages: %d", m_maxPages);
    m_pages = static_cast<char**>(framework::Memory::StaticAlloc(m_maxPages * sizeof(char*)));
    if (m_pages == nullptr)
        m_maxPages = 0;
    std::fill_n(m_pages, m_maxPages, nullptr);
}

DynamicStream::~DynamicStream() {
    reset();
    framework::Memory::StaticFree(m_pages);
}

void DynamicStream::reset() {
    for (unsigned int page = 0; page < m_pageCount; ++page) {
        framework::Memory::StaticFree(m_pages[page]);
        m_pages[page] = nullptr;
    }
    m_pageCount = 0;
    m_outputCount = 0;
    m_inputCount = 0;
}

unsigned int DynamicStream::getSize() const {
    return (m_maxPages + (m_pageCount << 10) + 8) * 4;
}

bool DynamicStream::StartOutputStream() {
    m_outputCount = 0;
    return true;
}

void DynamicStream::EndOutputStream() {}

bool DynamicStream::SendOutputStream(const char* data, unsigned int size) {
    VXUT_TRACE(TOKEN_DYNAMIC_STREAM, "size: %d", size);
    if (m_outputCount >= m_maxSize) {
        VXUT_LOG(framework::Logger::LOG_ERROR, "not enough room");
        return false;
    }
    if (data == nullptr)
        return size == 0;

    while (size > 0) {
        const unsigned int available = m_maxSize - m_outputCount;
        VXUT_TRACE(TOKEN_DYNAMIC_STREAM, "available: %d", available);
        if (available == 0)
            return false;

        const Place at(m_outputCount);
        VXUT_TRACE(TOKEN_DYNAMIC_STREAM, "page: %d, offset: %d, length: %d", at.page, at.offset, at.length);
        if (at.page >= m_pageCount && !addPage(at.page, __PRETTY_FUNCTION__))
            return false;
        const unsigned int count = std::min(at.length, std::min(size, available));
        if (count == 0 || Debug::isDebugOn(strings::TOKEN_DYNAMIC_STREAM))
            logTransfer(count, m_outputCount, size, __PRETTY_FUNCTION__);
        if (count == 0)
            return false;
        std::memcpy(m_pages[at.page] + at.offset, data, count);
        m_outputCount += count;
        data += count;
        size -= count;
    }
    return true;
}

bool DynamicStream::addPage(unsigned int page, const char* function) {
    if (page > m_pageCount) {
        VXUT_LOG_AS(function, framework::Logger::LOG_ERROR, "out of bounds on dynamic stream");
        return false;
    }
    if (page >= m_maxPages) {
        VXUT_LOG_AS(function, framework::Logger::LOG_ERROR,
                    "tried to write past the end of the max for a dynamic stream");
        return false;
    }
    VXUT_TRACE_AS(function, TOKEN_DYNAMIC_STREAM, "allocating page: %d", page);
    if (allocatePage())
        return true;
    VXUT_LOG_AS(function, framework::Logger::LOG_ERROR, "no memory for page: %d", page);
    return false;
}

bool DynamicStream::allocatePage() {
    char* const page = static_cast<char*>(framework::Memory::StaticAlloc(bytesPerPage));
    if (page == nullptr)
        return false;
    m_pages[m_pageCount] = page;
    ++m_pageCount;
    return true;
}

void DynamicStream::logTransfer(unsigned int count, unsigned int position, unsigned int size,
                                const char* function) const {
    const Place at(position);
    if (count == 0) {
        VXUT_LOG_AS(function, framework::Logger::LOG_ERROR,
                    "nothing to transfer: page: %d, offset: %d, length: %d, size: %d, inputCount: %d, outputCount: %d",
                    at.page, at.offset, at.length, size, m_inputCount, m_outputCount);
        return;
    }
    VXUT_LOG_AS(function, framework::Logger::LOG_DEBUG,
                "transfer: %d, page: %d, offset: %d, length: %d, size: %d, inputCount: %d, outputCount: %d", count,
                at.page, at.offset, at.length, size, m_inputCount, m_outputCount);
}

bool DynamicStream::isOutputStreamOpen() {
    return true;
}

bool DynamicStream::isOutputStreamInError() {
    return false;
}

bool DynamicStream::isOutputStreamAtEnd() {
    return m_outputCount <= m_maxSize;
}

bool DynamicStream::StartInputStream() {
    m_inputCount = 0;
    return true;
}

void DynamicStream::EndInputStream() {
    m_inputCount = m_outputCount;
}

int DynamicStream::ReceiveInputStream(char* buffer, unsigned int size) {
    VXUT_TRACE(TOKEN_DYNAMIC_STREAM, "size: %d", size);
    if (m_inputCount >= m_outputCount)
        return -1;
    if (buffer == nullptr)
        return 0;

    int total = 0;
    while (size > 0 && m_inputCount < m_outputCount) {
        const unsigned int unread = m_outputCount - m_inputCount;
        const Place at(m_inputCount);
        VXUT_TRACE(TOKEN_DYNAMIC_STREAM, "page: %d, offset: %d, length: %d", at.page, at.offset, at.length);
        const unsigned int count = std::min(at.length, std::min(size, unread));
        if (count == 0 || Debug::isDebugOn(strings::TOKEN_DYNAMIC_STREAM))
            logTransfer(count, m_inputCount, size, __PRETTY_FUNCTION__);
        if (count == 0)
            return -1;
        std::memcpy(buffer, m_pages[at.page] + at.offset, count);
        m_inputCount += count;
        buffer += count;
        size -= count;
        total += static_cast<int>(count);
    }
    return total;
}

bool DynamicStream::isInputStreamOpen() {
    return true;
}

bool DynamicStream::isInputStreamInError() {
    return false;
}

bool DynamicStream::isInputStreamAtEnd() {
    return m_inputCount >= m_outputCount;
}

int DynamicStream::GetInputStreamSize() {
    return static_cast<int>(m_outputCount);
}

} // namespace utility
