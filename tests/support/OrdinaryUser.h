#pragma once

#include <stdexcept>

#include <grp.h>
#include <unistd.h>

namespace test {

/// Drops root privileges in this process permanently; does nothing if it is not root. For child processes.
inline void becomeOrdinaryUser() {
    const unsigned int nobody = 65534;
    if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0))
        throw std::runtime_error("cannot drop root privileges");
}

} // namespace test
