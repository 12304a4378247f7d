#pragma once

#include <signal.h>

namespace test {

/// The reason to skip a test that needs a signal that `isHeldBack`.
constexpr const char* heldBack = "the thread sanitizer holds signals back while a thread waits in read";

/// Returns whether the thread sanitizer holds `sig` back until the next key is read.
inline bool isHeldBack(int sig) {
#ifdef __SANITIZE_THREAD__
    return sig == SIGHUP || sig == SIGINT || sig == SIGQUIT || sig == SIGALRM || sig == SIGTERM || sig == SIGUSR1 ||
           sig == SIGXCPU || sig == SIGTSTP || sig == SIGCONT;
#else
    return sig < 0;
#endif
}

} // namespace test
