// Loaded into every program of a coverage run. Replaces functions that end a process without its exit handlers, so that
// what the libraries ran in it still counts: most children of tests end by `_exit` or by a signal.

#include <cstdlib>

#include <dlfcn.h>
#include <pthread.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

// Null in a program that does not use the library.
extern "C" __attribute__((weak)) void write_counts_of_VXfw();
extern "C" __attribute__((weak)) void write_counts_of_VXut();

namespace {

void writeCounts() {
    if (write_counts_of_VXfw != nullptr)
        write_counts_of_VXfw();
    if (write_counts_of_VXut != nullptr)
        write_counts_of_VXut();
}

bool endsProcess(int sig) {
    struct sigaction action = {};
    return sigaction(sig, nullptr, &action) == 0 && (action.sa_flags & SA_SIGINFO) == 0 &&
           action.sa_handler == SIG_DFL && sig != SIGCHLD && sig != SIGCONT && sig != SIGURG && sig != SIGWINCH;
}

} // namespace

extern "C" [[gnu::noreturn]] void _exit(int status) {
    writeCounts();
    syscall(SYS_exit_group, status);
    __builtin_unreachable();
}

extern "C" int raise(int sig) noexcept {
    if (endsProcess(sig))
        writeCounts();
    return pthread_kill(pthread_self(), sig);
}

extern "C" [[gnu::noreturn]] void abort() noexcept {
    if (endsProcess(SIGABRT))
        writeCounts();
    const auto platform = reinterpret_cast<void (*)()>(dlsym(RTLD_NEXT, "abort"));
    platform();
    __builtin_unreachable();
}
