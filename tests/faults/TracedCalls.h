#pragma once

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test {

// Makes single system calls of a process, and of the processes it starts, fail: those that the C library makes on its
// own, as for a stream of <cstdio>, included. Needs the right to trace child processes, on x86-64.

/// What to do with a call.
struct Fault {
    long number;   ///< of the system call, SYS_...
    unsigned nth;  ///< which of these calls, from 1; 0 for none
    int error;     ///< the errno that the call fails with; 0 if it is to transfer half of what was asked for
    bool isHidden; ///< the call is carried out and its result is replaced
};

struct FaultKind {
    long number;
    const char* name;
    std::vector<int> errors; ///< 0 for a short transfer
    bool isHidden = false;
};

/// The system calls that can be made to fail, and how.
inline const std::vector<FaultKind>& faultKinds() {
    static const std::vector<FaultKind> kinds = {
#if defined(__x86_64__)
        {SYS_open, "open", {EACCES, EMFILE, EINTR, ENOSPC}},
        {SYS_openat, "openat", {EACCES, EMFILE, EINTR, ENOSPC}},
        {SYS_read, "read", {EIO, EINTR, 0}},
        {SYS_write, "write", {ENOSPC, EIO, EINTR, 0}},
        {SYS_writev, "writev", {EIO, EINTR}},
        {SYS_close, "close", {EIO, EINTR}, true}, // the descriptor is closed nevertheless
        {SYS_lseek, "lseek", {ESPIPE, EINVAL}},
        {SYS_fcntl, "fcntl", {EBADF, EMFILE}},
        {SYS_fstat, "fstat", {EIO, ENOMEM}},
        {SYS_stat, "stat", {EACCES, EIO}},
        {SYS_newfstatat, "newfstatat", {EIO, ENOMEM}},
        {SYS_statx, "statx", {EIO, ENOMEM}},
        {SYS_access, "access", {EACCES, EIO}},
        {SYS_faccessat, "faccessat", {EACCES, EIO}},
        {SYS_mkdir, "mkdir", {EACCES, ENOSPC}},
        {SYS_rmdir, "rmdir", {EACCES, EIO}},
        {SYS_getdents64, "getdents64", {EIO, ENOMEM}},
        {SYS_poll, "poll", {ENOMEM, EINTR}},
        {SYS_pipe2, "pipe2", {EMFILE, ENFILE}},
        {SYS_clone, "clone", {EAGAIN, ENOMEM}},
        {SYS_clone3, "clone3", {EAGAIN, ENOMEM}},
        {SYS_vfork, "vfork", {EAGAIN, ENOMEM}},
        {SYS_execve, "execve", {ENOMEM, EACCES, E2BIG}},
        {SYS_dup2, "dup2", {EBADF, EINTR}},
        {SYS_wait4, "wait4", {EINTR}},
        {SYS_wait4, "wait4", {ECHILD}, true}, // another thread was faster
        {SYS_mmap, "mmap", {ENOMEM}},
        {SYS_munmap, "munmap", {ENOMEM}},
        {SYS_fchmod, "fchmod", {EPERM, EIO}},
        {SYS_unlink, "unlink", {EACCES, EIO}},
        {SYS_unlinkat, "unlinkat", {EACCES, EIO}},
        {SYS_rename, "rename", {EACCES, EIO}},
        {SYS_fsync, "fsync", {EIO, ENOSPC, EINTR}},
        {SYS_syncfs, "syncfs", {EIO, ENOSPC}},
        {SYS_ftruncate, "ftruncate", {EIO, EINTR}},
        {SYS_copy_file_range, "copy_file_range", {EIO, ENOSPC, EINTR}},
        {SYS_fadvise64, "fadvise64", {EINVAL}},
        {SYS_clock_gettime, "clock_gettime", {EINVAL}},
        {SYS_rt_sigaction, "rt_sigaction", {EINVAL}},
        {SYS_sigaltstack, "sigaltstack", {ENOMEM}},
        {SYS_prlimit64, "prlimit64", {EPERM}},
        {SYS_ioctl, "ioctl", {EIO, EINTR}},
        {SYS_socket, "socket", {EMFILE, EACCES}},
        {SYS_bind, "bind", {EACCES}},
        {SYS_sendto, "sendto", {ENOBUFS, EINTR}},
        {SYS_recvmsg, "recvmsg", {ENOBUFS, EINTR}},
        {SYS_getsockname, "getsockname", {ENOBUFS}},
        {SYS_sched_getaffinity, "sched_getaffinity", {EINVAL}},
        {SYS_sysinfo, "sysinfo", {EFAULT}},
        {SYS_uname, "uname", {EFAULT}},
        {SYS_chdir, "chdir", {EACCES}},
        {SYS_getcwd, "getcwd", {ENOENT}},
        {SYS_statfs, "statfs", {EIO}},
        {SYS_readlink, "readlink", {EIO}},
#endif
    };
    return kinds;
}

inline std::string nameOf(const Fault& fault) {
    std::string name = "call " + std::to_string(fault.number);
    for (const FaultKind& kind : faultKinds())
        if (kind.number == fault.number)
            name = kind.name;
    return name + " " + std::to_string(fault.nth) +
           (fault.error != 0 ? std::string(": ") + strerrorname_np(fault.error) : ": short");
}

struct Traced {
    int status = -1;                 ///< of the process, as `waitpid` gives it
    bool hasHung = false;            ///< it was killed at the time limit
    bool wasHit = false;             ///< the fault took place
    std::map<long, unsigned> counts; ///< of the calls that could have failed
};

/// Runs a process with one fault.
///
///     const test::Traced traced = test::TracedRun([] { return run(); }, {SYS_read, 1, EIO, false}).result();
class TracedRun {
public:
    enum Watch {
        WHERE_MARKED, ///< between pairs of calls of `mark()`
        WHOLE_PROGRAM ///< from the first `fcntl` on, which the dynamic linker does not make
    };

    /// `body` runs in a child process; its result is the exit status.
    TracedRun(const std::function<int()>& body, const Fault& fault, Watch watch = WHERE_MARKED, int seconds = 20)
        : m_fault(fault), m_watch(watch) {
        std::fflush(nullptr);
        m_root = fork();
        if (m_root < 0)
            throw std::runtime_error("cannot fork");
        if (m_root == 0) {
            if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
                _exit(cannotTrace);
            raise(SIGSTOP);
            const int status = body();
            std::fflush(nullptr);
            _exit(status);
        }
        run(seconds);
    }
    TracedRun(const TracedRun&) = delete;
    TracedRun& operator=(const TracedRun&) = delete;

    const Traced& result() const {
        return m_result;
    }

    /// Begins or ends what is watched of `body`.
    static void mark() {
        syscall(SYS_getppid);
    }

    static constexpr int cannotTrace = 78;

    /// Whether this process may trace its children on this platform.
    static bool isPossible() {
#if defined(__x86_64__)
        const Traced traced = TracedRun([] { return 7; }, {0, 0, 0, false}).result();
        return WIFEXITED(traced.status) && WEXITSTATUS(traced.status) == 7;
#else
        return false;
#endif
    }

private:
#if defined(__x86_64__)
    struct State {
        bool isInCall = false;
        bool replaces = false;
    };

    void run(int seconds) {
        const Alarm alarm(seconds);
        std::map<pid_t, State> tracees;
        for (;;) {
            int status = 0;
            const pid_t pid = waitpid(-1, &status, __WALL);
            if (pid < 0 && errno == EINTR) {
                // Until all are gone.
                m_result.hasHung = true;
                kill(m_root, SIGKILL);
                for (const auto& tracee : tracees)
                    kill(tracee.first, SIGKILL);
                continue;
            }
            if (pid < 0)
                return;
            if (!WIFSTOPPED(status)) {
                tracees.erase(pid);
                if (pid == m_root)
                    m_result.status = status;
                continue;
            }
            step(pid, status, tracees);
        }
    }

    void step(pid_t pid, int status, std::map<pid_t, State>& tracees) {
        const bool isNew = tracees.count(pid) == 0;
        State& state = tracees[pid];
        if (isNew)
            ptrace(PTRACE_SETOPTIONS, pid, nullptr,
                   PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK |
                       PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC);
        int signal = WSTOPSIG(status);
        if (signal == (SIGTRAP | 0x80)) {
            state.isInCall = !state.isInCall;
            user_regs_struct registers = {};
            ptrace(PTRACE_GETREGS, pid, nullptr, &registers);
            if (state.isInCall)
                enter(pid, state, registers);
            else
                leave(pid, state, registers);
            signal = 0;
        } else if (status >> 16 != 0 || signal == SIGSTOP) {
            signal = 0;
        }
        ptrace(PTRACE_SYSCALL, pid, nullptr, static_cast<long>(signal));
    }

    void enter(pid_t pid, State& state, user_regs_struct& registers) {
        const long number = static_cast<long>(registers.orig_rax);
        if (m_watch == WHERE_MARKED ? number == SYS_getppid : number == SYS_fcntl && !m_isWatching)
            m_isWatching = !m_isWatching;
        // What is reported is to be seen.
        const bool isReport = (number == SYS_write || number == SYS_writev) && registers.rdi == STDERR_FILENO;
        if (!m_isWatching || isReport)
            return;
        const bool isHit = ++m_result.counts[number] == m_fault.nth && number == m_fault.number;
        if (!isHit)
            return;
        m_result.wasHit = true;
        if (m_fault.error == 0) {
            registers.rdx = (registers.rdx + 1) / 2;
        } else {
            state.replaces = true;
            if (!m_fault.isHidden)
                registers.orig_rax = ULLONG_MAX;
        }
        ptrace(PTRACE_SETREGS, pid, nullptr, &registers);
    }

    void leave(pid_t pid, State& state, user_regs_struct& registers) {
        if (!state.replaces)
            return;
        state.replaces = false;
        registers.rax = static_cast<unsigned long long>(-static_cast<long long>(m_fault.error));
        ptrace(PTRACE_SETREGS, pid, nullptr, &registers);
    }
#else
    void run(int) {
        throw std::runtime_error("cannot trace on this platform");
    }
#endif

    /// Interrupts waiting, after the time limit again and again.
    class Alarm {
    public:
        explicit Alarm(int seconds) {
            struct sigaction action = {};
            action.sa_handler = [](int) {
            };
            sigaction(SIGALRM, &action, nullptr);
            const itimerval limit = {{0, 100000}, {seconds, 0}};
            setitimer(ITIMER_REAL, &limit, nullptr);
        }
        Alarm(const Alarm&) = delete;
        Alarm& operator=(const Alarm&) = delete;
        ~Alarm() {
            const itimerval none = {};
            setitimer(ITIMER_REAL, &none, nullptr);
        }
    };

    Fault m_fault;
    Watch m_watch;
    bool m_isWatching = false;
    pid_t m_root = -1;
    Traced m_result;
};

/// Runs `trial` with each fault that the calls counted in `counts` can have, or if `isShort` with one of each first
/// call; returns how many took place.
template<typename Trial>
unsigned failEachCall(const std::map<long, unsigned>& counts, bool isShort, Trial&& trial) {
    unsigned trials = 0;
    for (const FaultKind& kind : faultKinds()) {
        const auto found = counts.find(kind.number);
        const unsigned count = found != counts.end() ? found->second : 0;
        for (unsigned nth = 1; nth <= (isShort ? std::min(count, 1U) : count); ++nth) {
            for (const int error : kind.errors) {
                trials += trial(Fault{kind.number, nth, error, kind.isHidden}) ? 1 : 0;
                if (isShort)
                    break;
            }
        }
    }
    return trials;
}

} // namespace test
