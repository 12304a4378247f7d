#pragma once

#include <sys/stat.h>

namespace test {

/// Sets the umask while it exists.
class Umask {
public:
    explicit Umask(mode_t mask) : m_previous(umask(mask)) {}
    Umask(const Umask&) = delete;
    Umask& operator=(const Umask&) = delete;
    ~Umask() {
        umask(m_previous);
    }

private:
    mode_t m_previous;
};

} // namespace test
