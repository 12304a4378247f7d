#include "ut_DescriptorOutputStream.h"

#include <algorithm>
#include <cerrno>
#include <climits>

#include <poll.h>
#include <unistd.h>

namespace utility {

namespace {

bool waitUntilWritable(int fd) {
    pollfd request = {fd, POLLOUT, 0};
    return poll(&request, 1, -1) >= 0 || errno == EINTR;
}

} // namespace

DescriptorOutputStream::DescriptorOutputStream(int fd) : m_fd(fd), m_errorNumber(0), m_lastSize(0), m_lastByte('\n') {}

DescriptorOutputStream::~DescriptorOutputStream() = default;

bool DescriptorOutputStream::StartOutputStream() {
    return m_errorNumber == 0;
}

void DescriptorOutputStream::EndOutputStream() {}

bool DescriptorOutputStream::SendOutputStream(const char* data, unsigned int size) {
    if (data == nullptr && size > 0)
        return false;
    m_lastSize = size;
    if (size > 0)
        m_lastByte = data[size - 1];
    while (size > 0 && m_errorNumber == 0) {
        // A 32-bit platform refuses a write of more than INT_MAX bytes.
        const ssize_t count = write(m_fd, data, std::min<unsigned int>(size, INT_MAX));
        if (count > 0) {
            data += count;
            size -= static_cast<unsigned int>(count);
        } else if (count == 0) {
            // Trying again could go on without end.
            m_errorNumber = EIO;
        } else if (errno == EAGAIN && waitUntilWritable(m_fd)) {
            continue;
        } else if (errno != EINTR) {
            m_errorNumber = errno;
        }
    }
    return m_errorNumber == 0;
}

bool DescriptorOutputStream::isOutputStreamOpen() {
    return true;
}

bool DescriptorOutputStream::isOutputStreamInError() {
    return m_errorNumber != 0;
}

bool DescriptorOutputStream::isOutputStreamAtEnd() {
    return false;
}

} // namespace utility
