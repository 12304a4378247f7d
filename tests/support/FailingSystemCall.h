#pragma once

#include <cstddef>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace test {

/// The exit status of a child in which no system call can be made to fail.
constexpr int cannotFilter = 77;

namespace detail {

template<std::size_t count>
void installFilter(sock_filter (&instructions)[count]) {
    const sock_fprog filter = {count, instructions};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0)
        _exit(cannotFilter);
}

} // namespace detail

/// Makes every system call `number` of this process, and of the programs it runs, fail with `error`. Ends a process in
/// which that is not possible with the status `cannotFilter`. For child processes.
inline void failSystemCall(unsigned int number, unsigned int error) {
    sock_filter instructions[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    detail::installFilter(instructions);
}

/// Makes only calls with `argument` as first argument fail.
inline void failSystemCall(unsigned int number, unsigned int error, unsigned int argument) {
    sock_filter instructions[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, argument, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | error),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    detail::installFilter(instructions);
}

} // namespace test
