#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace test {

/// Owns a descriptor and closes it on destruction.
///
///     test::Descriptor file(open(path.c_str(), O_RDONLY));
class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {
        if (fd < 0)
            throw std::runtime_error("cannot open a descriptor");
    }
    Descriptor(Descriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        close();
    }

    int number() const {
        return m_fd;
    }
    void close() {
        if (m_fd >= 0)
            ::close(m_fd);
        m_fd = -1;
    }
    off64_t offset() const {
        return lseek64(m_fd, 0, SEEK_CUR);
    }
    /// The bytes that one non-blocking read returns, at most 65,536.
    std::string readAvailable() const {
        char piece[65536];
        const int flags = fcntl(m_fd, F_GETFL);
        fcntl(m_fd, F_SETFL, flags | O_NONBLOCK);
        const ssize_t count = ::read(m_fd, piece, sizeof piece);
        fcntl(m_fd, F_SETFL, flags);
        return count > 0 ? std::string(piece, static_cast<std::size_t>(count)) : std::string();
    }

private:
    int m_fd;
};

/// Owns both ends of a pipe.
struct Pipe {
    Pipe() : Pipe(make()) {}

    Descriptor reader;
    Descriptor writer;

private:
    explicit Pipe(std::pair<int, int> ends) : reader(ends.first), writer(ends.second) {}
    static std::pair<int, int> make() {
        int ends[2];
        if (pipe(ends) != 0)
            throw std::runtime_error("cannot create a pipe");
        return {ends[0], ends[1]};
    }
};

} // namespace test
