#pragma once

#include <cerrno>

namespace framework {

/// Saves `errno`, and restores it at the end of the scope.
class ErrnoGuard {
public:
    /// Saves `errno`.
    ErrnoGuard() : m_errno(errno) {}
    ErrnoGuard(const ErrnoGuard&) = delete;
    ErrnoGuard& operator=(const ErrnoGuard&) = delete;
    /// Restores `errno`.
    ~ErrnoGuard() {
        errno = m_errno;
    }

    /// Returns the saved value.
    int value() const {
        return m_errno;
    }

private:
    int m_errno;
};

} // namespace framework
