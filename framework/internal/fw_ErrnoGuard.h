#pragma once

#include <cerrno>

namespace framework {

/// Restores `errno` at the end of the scope to its value at the beginning.
class ErrnoGuard {
public:
    ErrnoGuard() : m_errno(errno) {}
    ErrnoGuard(const ErrnoGuard&) = delete;
    ErrnoGuard& operator=(const ErrnoGuard&) = delete;
    ~ErrnoGuard() {
        errno = m_errno;
    }

    /// Returns the value that `errno` will have again.
    int value() const {
        return m_errno;
    }

private:
    int m_errno;
};

} // namespace framework
