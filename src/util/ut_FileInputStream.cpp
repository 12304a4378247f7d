#include "ut_FileInputStream.h"

#include <algorithm>
#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "internal/ut_FileDescriptor.h"

namespace utility {

namespace {

constexpr unsigned int unknown = 0xFFFFFFFF;

} // namespace

FileInputStream::FileInputStream(const char* path)
    : m_fd(-1), m_path(path), m_open(false), m_error(false), m_atEnd(false), m_errno(0) {
    adopt(openFile(path, O_RDONLY, 0644));
}

FileInputStream::FileInputStream(int fd)
    : m_fd(fd), m_path(nullptr), m_open(true), m_error(false), m_atEnd(false), m_errno(0) {
    FileInputStream::StartInputStream();
}

FileInputStream::~FileInputStream() {
    if (m_open && m_path != nullptr)
        close(m_fd);
}

void FileInputStream::adopt(int fd) {
    m_fd = fd;
    m_open = fd >= 0;
    if (!m_open)
        fail();
}

int FileInputStream::Reopen() {
    if (m_open)
        close(m_fd);
    adopt(openFile(m_path, O_RDONLY, 0644));
    return m_open ? 0 : -1;
}

bool FileInputStream::Position(unsigned int offset) {
    if (!isUsable())
        return false;
    m_atEnd = false;
    return lseek(m_fd, static_cast<off_t>(offset), SEEK_SET) >= 0 || fail();
}

unsigned int FileInputStream::At() {
    if (!isUsable())
        return unknown;
    m_atEnd = false;
    const off_t offset = lseek(m_fd, 0, SEEK_CUR);
    if (offset < 0) {
        fail();
        return unknown;
    }
    return static_cast<unsigned int>(offset);
}

unsigned int FileInputStream::GetInode() {
    struct stat status = {};
    if (!m_open)
        return unknown;
    if (fstat(m_fd, &status) != 0) {
        fail();
        return unknown;
    }
    return static_cast<unsigned int>(status.st_ino);
}

unsigned int FileInputStream::GetInode(const char* path) {
    struct stat status = {};
    if (path == nullptr || stat(path, &status) != 0)
        return unknown;
    return static_cast<unsigned int>(status.st_ino);
}

bool FileInputStream::StartInputStream() {
    return Position(0);
}

void FileInputStream::EndInputStream() {
    m_atEnd = true;
}

int FileInputStream::ReceiveInputStream(char* buffer, unsigned int size) {
    if (!isUsable() || buffer == nullptr)
        return -1;
    // Keep the count of one read within an int.
    const ssize_t count = read(m_fd, buffer, std::min(size, static_cast<unsigned int>(INT_MAX)));
    if (count < 0) {
        fail();
        return -1;
    }
    if (count == 0)
        m_atEnd = true;
    return static_cast<int>(count);
}

bool FileInputStream::isInputStreamOpen() {
    return m_open;
}

bool FileInputStream::isInputStreamInError() {
    if (m_error)
        return true;
    struct stat status = {};
    if (m_path == nullptr) {
        errno = ENOENT;
        fail();
    } else if (stat(m_path, &status) != 0) {
        fail();
    }
    return m_error;
}

bool FileInputStream::isInputStreamAtEnd() {
    return m_atEnd;
}

int FileInputStream::GetInputStreamSize() {
    struct stat status = {};
    if (!m_open)
        return -1;
    if (fstat(m_fd, &status) != 0) {
        fail();
        return -1;
    }
    return status.st_size <= INT_MAX ? static_cast<int>(status.st_size) : -1;
}

bool FileInputStream::fail() {
    m_errno = errno;
    m_error = true;
    return false;
}

} // namespace utility
