#include "ut_FileOutputStream.h"

#include <algorithm>
#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <unistd.h>

#include "internal/ut_FileDescriptor.h"

namespace utility {

FileOutputStream::FileOutputStream(const char* path, bool append, unsigned int mode)
    : m_fd(-1), m_path(path), m_open(false), m_error(false), m_atEnd(false), m_errno(0) {
    m_fd = openFile(path, O_WRONLY | O_CREAT | (append ? O_APPEND : O_TRUNC), mode);
    m_open = m_fd >= 0;
    if (!m_open)
        fail();
}

FileOutputStream::FileOutputStream(int fd)
    : m_fd(fd), m_path(nullptr), m_open(true), m_error(false), m_atEnd(false), m_errno(0) {
    FileOutputStream::StartOutputStream();
}

FileOutputStream::~FileOutputStream() {
    if (m_open && m_path != nullptr)
        close(m_fd);
}

bool FileOutputStream::StartOutputStream() {
    if (!m_open || m_error)
        return false;
    m_atEnd = false;
    return lseek(m_fd, 0, SEEK_SET) >= 0 || fail();
}

void FileOutputStream::EndOutputStream() {
    m_atEnd = true;
}

bool FileOutputStream::SendOutputStream(const char* data, unsigned int size) {
    if (!m_open || m_error || data == nullptr)
        return true;
    // A 32-bit platform refuses a write of more than INT_MAX bytes.
    const ssize_t count = write(m_fd, data, std::min<unsigned int>(size, INT_MAX));
    if (count < 0) {
        fail();
        return true;
    }
    return static_cast<unsigned int>(count) == size;
}

bool FileOutputStream::isOutputStreamOpen() {
    return m_open;
}

bool FileOutputStream::isOutputStreamInError() {
    return m_error;
}

bool FileOutputStream::isOutputStreamAtEnd() {
    return m_atEnd;
}

bool FileOutputStream::fail() {
    m_errno = errno;
    m_error = true;
    return false;
}

} // namespace utility
