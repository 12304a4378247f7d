#include "ut_VirtualPutStream.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "fw_KnownStrings.h"
#include "fw_ThreadInfo.h"
#include "internal/ut_Failure.h"
#include "internal/ut_OwnPositions.h"
#include "internal/ut_Trace.h"

namespace utility {

namespace {

int threadNumber() {
    const framework::ThreadInfo* thread = framework::ThreadInfo::getMyself();
    return thread != nullptr ? thread->getNum() : 0;
}

const char* truth(bool value) {
    return value ? pGStrue : pGSfalse;
}

// The `WriteRemaining` of this class, as the virtual tables of its objects have it.
#if __SIZEOF_POINTER__ == 8
extern "C" VXUT_HIDDEN void
ut_virtualWriteRemaining() __asm__("_ZTv0_n32_NK7utility16VirtualPutStream14WriteRemainingEv");
#else
extern "C" VXUT_HIDDEN void
ut_virtualWriteRemaining() __asm__("_ZTv0_n16_NK7utility16VirtualPutStream14WriteRemainingEv");
#endif

// Writes `count` bytes, which fit in the buffer, and may come from it.
void append(Buffer& buffer, const char* data, int count) {
    if (count > 0)
        std::memmove(buffer.pHead(), data, static_cast<std::size_t>(count));
    buffer.WriteAdvance(count);
}

} // namespace

VirtualPutStream::VirtualPutStream(framework::OutputStream& target, int size, int flushThreshold)
    : m_target(&target), m_flushThreshold(flushThreshold), m_holdOutput(false), m_transferred(0), m_trace(false) {
    setSize(size);
    allocBuffer();
}

VirtualPutStream::VirtualPutStream(framework::OutputStream& target, char* buffer, int size, int flushThreshold)
    : PutStream(buffer, size),
      m_target(&target),
      m_flushThreshold(flushThreshold),
      m_holdOutput(false),
      m_transferred(0),
      m_trace(false) {}

VirtualPutStream::VirtualPutStream(int flushThreshold)
    : m_target(nullptr), m_flushThreshold(flushThreshold), m_holdOutput(false), m_transferred(0), m_trace(false) {}

VirtualPutStream::~VirtualPutStream() {
    VXUT_TRACE_IF(m_trace, "(%d) transferred: %d", threadNumber(), m_transferred);
}

bool VirtualPutStream::isTargetUsable() const {
    return m_target != nullptr && m_target->isOutputStreamOpen() && !m_target->isOutputStreamInError();
}

void VirtualPutStream::countTransferred(int count) {
    m_transferred = static_cast<int>(static_cast<unsigned int>(m_transferred) + static_cast<unsigned int>(count));
}

inline bool VirtualPutStream::mustFlush() const {
    return distance(ReadPosition(), WritePosition()) >= m_flushThreshold;
}

int VirtualPutStream::WriteRemaining() const {
    // Flush here: every write operation calls this first.
    return mustFlush() ? spaceAfterFlush() : distance(WritePosition(), Size());
}

void VirtualPutStream::FlushOutputStream() {
    VXUT_TRACE_IF(m_trace, "(%d)", threadNumber());
    const int held = boundedReadable(ReadAvailable());
    if (held == 0) {
        VXUT_TRACE_IF(m_trace, "(%d) rewind\n", threadNumber());
        Rewind();
        return;
    }
    if (!isTargetUsable()) {
        VXUT_TRACE_IF(m_trace, "(%d) discarding virtual stream output %d\n", threadNumber(), held);
        Rewind();
        return;
    }
    if (!m_target->SendOutputStream(pTail(), static_cast<unsigned int>(held))) {
        VXUT_TRACE_IF(m_trace, "(%d) Failed - to flush %d bytes, open: %s, inError: %s\n", threadNumber(), held,
                      truth(m_target->isOutputStreamOpen()), truth(m_target->isOutputStreamInError()));
        return;
    }
    VXUT_TRACE_IF(m_trace, "(%d) [Flushed %d bytes]\n", threadNumber(), held);
    countTransferred(held);
    ReadAdvance(held);
    Consolidate();
    VXUT_TRACE_IF(m_trace, "(%d) now have %d at tail %d head %d\n", threadNumber(), Buffer::ReadAvailable(),
                  ReadPosition(), WritePosition());
}

bool VirtualPutStream::SendOutputStream(const char* data, unsigned int size) {
    if (data == nullptr && size > 0)
        return false;
    if (!m_holdOutput && Buffer::ReadAvailable() < 1)
        return isTargetUsable() && m_target->SendOutputStream(data, size);
    while (size > 0 && isTargetUsable()) {
        const unsigned int count = std::min(size, static_cast<unsigned int>(boundedRoom(WriteRemaining())));
        if (count == 0)
            return false;
        append(*this, data, static_cast<int>(count));
        data += count;
        size -= count;
    }
    WriteRemaining();
    return size == 0;
}

// A write that does not flush first and fits. Writes nothing if a derived class overrides a position operation.
inline bool VirtualPutStream::appendDirectly(const char* data, int length) {
    if (operationOf(this, SLOT_WRITE_REMAINING) != reinterpret_cast<void*>(&ut_virtualWriteRemaining) ||
        !isOwnOperation(this, SLOT_WRITE_ADVANCE) || mustFlush() || length < 1 || boundedRoom(length) != length)
        return false;
    std::memmove(pHead(), data, static_cast<std::size_t>(length));
    setWritePosition(WritePosition() + length);
    if (mustFlush())
        FlushOutputStream();
    return true;
}

void VirtualPutStream::PutB(const char* data, int length) {
    if (data == nullptr || appendDirectly(data, length))
        return;
    int space = boundedRoom(WriteRemaining());
    while (length > 0) {
        const int count = std::min(length, space);
        append(*this, data, count);
        data += count;
        length -= count;
        space = boundedRoom(WriteRemaining());
        if (space == 0 && length > 0)
            space = spaceAfterRetry();
        if (space == 0)
            break;
    }
    if (length < 1)
        return;
    if (isNoThrow()) {
        framework::Logger::StaticLog(framework::Logger::LOG_ERROR,
                                     "PutStream::PutB: Didn't fit. size=%d remaining=%d msg='%.*s'", length, space,
                                     std::min(length, 200), data);
        return;
    }
    char text[200];
    std::snprintf(text, sizeof text, "Didn't fit. size=%d remaining=%d msg='%.*s'", length, space, std::min(length, 90),
                  data);
    VXUT_THROW(FAILURE_BUFFER, text);
}

int VirtualPutStream::spaceAfterFlush() const {
    const_cast<VirtualPutStream*>(this)->FlushOutputStream();
    return distance(WritePosition(), Size());
}

int VirtualPutStream::spaceAfterRetry() const {
    return isTargetUsable() ? boundedRoom(WriteRemaining()) : 0;
}

bool VirtualPutStream::StartOutputStream() {
    EndOutputStream();
    Rewind();
    m_transferred = 0;
    return m_target != nullptr && m_target->StartOutputStream();
}

void VirtualPutStream::EndOutputStream() {
    FlushOutputStream();
    if (m_target != nullptr)
        m_target->EndOutputStream();
}

bool VirtualPutStream::isOutputStreamOpen() {
    return m_target != nullptr && m_target->isOutputStreamOpen();
}

bool VirtualPutStream::isOutputStreamInError() {
    return m_target != nullptr && m_target->isOutputStreamInError();
}

bool VirtualPutStream::isOutputStreamAtEnd() {
    return m_target != nullptr && m_target->isOutputStreamAtEnd();
}

} // namespace utility
