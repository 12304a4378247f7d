#include "ut_VirtualGetStream.h"

#include <algorithm>
#include <cstring>

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
#include "internal/ut_Trace.h"

namespace utility {

namespace {

constexpr int maxFailures = 1000;

const char* truth(bool value) {
    return value ? pGStrue : pGSfalse;
}

// Offsets wrap around at 32 bits, as the callers' unsigned offsets do.
int sum(int a, int b) {
    return static_cast<int>(static_cast<unsigned int>(a) + static_cast<unsigned int>(b));
}

int difference(unsigned int a, int b) {
    return static_cast<int>(a - static_cast<unsigned int>(b));
}

} // namespace

VirtualGetStream::VirtualGetStream(framework::InputStream& source, int size, int keepBehind, int lowWater, char* buffer)
    : VirtualGetStream(keepBehind, lowWater) {
    m_source = &source;
    if (buffer == nullptr) {
        setSize(size);
        allocBuffer();
        return;
    }
    supplyStorage(buffer, size, false);
    if (size < 1)
        return;
    buffer[0] = 0;
    buffer[size - 1] = 0;
}

VirtualGetStream::VirtualGetStream(int keepBehind, int lowWater)
    : m_source(nullptr),
      m_keepBehind(keepBehind),
      m_lowWater(lowWater),
      m_maxIndex(0),
      m_base(0),
      m_received(0),
      m_waitForData(true),
      m_trace(false),
      m_terminator(0) {}

VirtualGetStream::~VirtualGetStream() = default;

void VirtualGetStream::dropRead() {
    if (m_maxIndex > ReadPosition()) {
        // Call the base class: `ReadAvailable` of this class would start a nested refill.
        const long long unneeded = static_cast<long long>(m_maxIndex) - ReadPosition() - m_keepBehind;
        const long long drop = std::min<long long>(unneeded, boundedReadable(Buffer::ReadAvailable()));
        if (drop > 0)
            ReadAdvance(static_cast<int>(drop));
    }
    m_base = sum(m_base, ReadPosition());
    m_maxIndex = std::max(m_maxIndex - std::max(ReadPosition(), 0), 0);
    Consolidate();
}

void VirtualGetStream::load() {
    dropRead();
    VXUT_TRACE_IF(m_trace, "Open: %s InError: %s AtEnd: %s", truth(isSourceOpen()), truth(isSourceInError()),
                  truth(isSourceAtEnd()));
    // A source that fails may still call itself good: limit the retries, unless data is waited for.
    int failures = 0;
    while (failures < maxFailures && isSourceGood()) {
        const int space = boundedRoom(WriteRemaining());
        if (space == 0)
            return;
        const int got = receive(space, __PRETTY_FUNCTION__);
        if (got > 0)
            return;
        if (m_waitForData)
            continue;
        if (got == 0) {
            VXUT_LOG(framework::Logger::LOG_ERROR, "Response not received: Timed out");
            m_source->EndInputStream();
            return;
        }
        ++failures;
    }
}

int VirtualGetStream::receive(int space, const char* function) {
    VXUT_TRACE_IF_AS(function, m_trace, "fill at %d, for %d", WritePosition(), space);
    const int got = m_source->ReceiveInputStream(pHead(), static_cast<unsigned int>(space));
    VXUT_TRACE_IF_AS(function, m_trace, "got %d", got);
    if (got < 1)
        return got;
    VXUT_TRACE_IF_AS(function, m_trace, "received %d", got);
    m_received = sum(m_received, got);
    WriteAdvance(got);
    return got;
}

int VirtualGetStream::ReadAvailable() const {
    if (Buffer::ReadAvailable() < m_lowWater && isSourceOpen())
        const_cast<VirtualGetStream*>(this)->load();
    return Buffer::ReadAvailable();
}

int VirtualGetStream::ReceiveInputStream(char* buffer, unsigned int size) {
    VXUT_TRACE_IF(m_trace, "requesting %d bytes", static_cast<int>(size));
    unsigned int held = static_cast<unsigned int>(boundedReadable(Buffer::ReadAvailable()));
    if (size > held) {
        load();
        held = static_cast<unsigned int>(boundedReadable(Buffer::ReadAvailable()));
    }
    VXUT_TRACE_IF(m_trace, "%d bytes available", static_cast<int>(held));
    if (held == 0 || buffer == nullptr)
        return 0;
    const unsigned int count = std::min(held, size);
    VXUT_TRACE_IF(m_trace, "moving %d bytes", static_cast<int>(count));
    std::memmove(buffer, pTail(), count);
    ReadAdvance(static_cast<int>(count));
    return static_cast<int>(count);
}

bool VirtualGetStream::isHeld(int position) const {
    return position >= 0 && position >= ReadPosition() && position <= std::min(WritePosition(), Size());
}

char& VirtualGetStream::operator[](unsigned int index) {
    VXUT_TRACE_IF(m_trace, "[%d]", static_cast<int>(index));
    int position = difference(index, m_base);
    m_maxIndex = std::max(m_maxIndex, position);
    if (static_cast<long long>(WritePosition()) - m_maxIndex < m_lowWater && isSourceOpen() && !isSourceAtEnd()) {
        load();
        position = difference(index, m_base);
    }
    if (!isHeld(position) || pBuffer() == nullptr) {
        VXUT_LOG(framework::Logger::LOG_ERROR,
                 "accessing offset %d, index %d from base %d [%d/%d], ReadAvail: %d, WriteRemain: %d", position,
                 static_cast<int>(index), m_base, ReadPosition(), WritePosition(), Buffer::ReadAvailable(),
                 WriteRemaining());
        VXUT_THROW(FAILURE_STREAM_INDEX, "");
    }
    if (position == WritePosition()) {
        // No byte was received here yet: show a NUL instead of old content of the storage.
        if (!isTerminable()) {
            m_terminator = 0;
            return m_terminator;
        }
        terminate();
    }
    return pBuffer()[position];
}

void VirtualGetStream::MoveTo(unsigned int offset) {
    VXUT_TRACE_IF(m_trace, "[%d]", static_cast<int>(offset));
    const int position = difference(offset, m_base);
    if (!isHeld(position))
        VXUT_THROW(FAILURE_STREAM_INDEX, "");
    setReadPosition(position);
    Consolidate();
    m_maxIndex = 0;
    m_base = 0;
    VXUT_TRACE_IF(m_trace, "at: %d read %d write", Buffer::ReadAvailable(), WriteRemaining());
}

void VirtualGetStream::MoveTo() {
    MoveTo(static_cast<unsigned int>(sum(m_base, ReadPosition())));
}

bool VirtualGetStream::StartInputStream() {
    m_received = 0;
    if (m_source == nullptr || !m_source->StartInputStream())
        return false;
    load();
    return true;
}

void VirtualGetStream::EndInputStream() {
    if (m_source != nullptr)
        m_source->EndInputStream();
    Rewind();
    m_base = 0;
    m_maxIndex = 0;
}

bool VirtualGetStream::isInputStreamOpen() {
    return isSourceOpen();
}

bool VirtualGetStream::isInputStreamInError() {
    return isSourceInError();
}

bool VirtualGetStream::isInputStreamAtEnd() {
    return Buffer::ReadAvailable() < 1 && isSourceAtEnd();
}

} // namespace utility
