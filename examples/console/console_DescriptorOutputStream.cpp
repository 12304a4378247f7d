#include "console_DescriptorOutputStream.h"

#include <cerrno>

#include <poll.h>
#include <unistd.h>

namespace console {

namespace {

bool waitUntilWritable(int fd) {
    pollfd request = {fd, POLLOUT, 0};
    return poll(&request, 1, -1) >= 0 || errno == EINTR;
}

} // namespace

DescriptorOutputStream::DescriptorOutputStream(int fd) : m_fd(fd), m_errorNumber(0), m_lastByte('\n') {}

bool DescriptorOutputStream::StartOutputStream() {
    return m_errorNumber == 0;
}

void DescriptorOutputStream::EndOutputStream() {}

bool DescriptorOutputStream::SendOutputStream(const char* data, unsigned int size) {
    if (size > 0)
        m_lastByte = data[size - 1];
    while (size > 0 && m_errorNumber == 0) {
        const ssize_t count = write(m_fd, data, size);
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

} // namespace console
