#include "ut_NullStream.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace utility {

NullStream::NullStream(unsigned int inputSize)
    : m_inputSize(inputSize),
      m_inputRemaining(0),
      m_inputOpen(false),
      m_outputOpen(false),
      m_outputCount(0),
      m_inputCount(0) {}

NullStream::~NullStream() = default;

bool NullStream::StartInputStream() {
    m_inputOpen = true;
    m_inputRemaining = m_inputSize;
    return true;
}

void NullStream::EndInputStream() {
    m_inputRemaining = 0;
    m_inputOpen = false;
}

int NullStream::ReceiveInputStream(char* buffer, unsigned int size) {
    if (buffer == nullptr)
        return 0;
    const unsigned int count = std::min({size, m_inputRemaining, static_cast<unsigned int>(INT_MAX)});
    std::memset(buffer, 0, count);
    m_inputRemaining -= count;
    m_inputCount += count;
    return static_cast<int>(count);
}

bool NullStream::isInputStreamOpen() {
    return m_inputOpen;
}

bool NullStream::isInputStreamInError() {
    return false;
}

bool NullStream::isInputStreamAtEnd() {
    return m_inputRemaining == 0;
}

bool NullStream::StartOutputStream() {
    m_outputOpen = true;
    return m_outputOpen;
}

void NullStream::EndOutputStream() {
    m_outputOpen = false;
}

bool NullStream::SendOutputStream(const char*, unsigned int size) {
    if (m_outputOpen)
        m_outputCount += size;
    return m_outputOpen;
}

bool NullStream::isOutputStreamOpen() {
    return m_outputOpen;
}

bool NullStream::isOutputStreamInError() {
    return false;
}

bool NullStream::isOutputStreamAtEnd() {
    return false;
}

} // namespace utility
