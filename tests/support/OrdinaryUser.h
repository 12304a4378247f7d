#pragma once

#include <grp.h>
#include <unistd.h>

#include <stdexcept>

namespace test {

/// Gives up the rights of root in this process, for good; nothing to do for anyone else. For child processes.
inline void becomeOrdinaryUser() {
    const unsigned int nobody = 65534;
    if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0))
        throw std::runtime_error("cannot give up the rights of root");
}

} // namespace test
