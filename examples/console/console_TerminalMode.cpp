#include "console_TerminalMode.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <termios.h>
#include <unistd.h>

namespace console {

namespace {

// Read by the signal handlers; set before they are installed.
int terminal = -1;
termios formerMode;
termios keyMode;
// Atomic because signals may reach several threads at once.
std::atomic<bool> inKeyMode(false);

constexpr int endingSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGALRM, SIGTERM, SIGUSR1};

void setKeyMode() {
    // In the background, tcsetattr would stop the process with SIGTTOU.
    if (tcgetpgrp(terminal) != getpgrp())
        return;
    inKeyMode = true;
    // TCSANOW rather than TCSADRAIN: the output of a stopped terminal may never drain.
    tcsetattr(terminal, TCSANOW, &keyMode);
}

// Makes `sig` take its default effect as soon as the handler returns.
void passOn(int sig) {
    std::signal(sig, SIG_DFL);
    raise(sig);
}

void endBySignal(int sig) {
    TerminalMode::restore();
    passOn(sig);
}

void installHandler(int sig, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigfillset(&action.sa_mask);
    sigaction(sig, &action, nullptr);
}

// Installs `handler` unless the signal was ignored when the process started, as under nohup.
void installUnlessIgnored(int sig, void (*handler)(int)) {
    struct sigaction former = {};
    if (sigaction(sig, nullptr, &former) == 0 && former.sa_handler != SIG_IGN)
        installHandler(sig, handler);
}

void stopBySignal(int sig) {
    const int interruptedError = errno;
    TerminalMode::restore();
    sigset_t unblocked;
    sigemptyset(&unblocked);
    sigaddset(&unblocked, sig);
    passOn(sig);
    // The pending signal stops the process here; SIGCONT resumes it.
    pthread_sigmask(SIG_UNBLOCK, &unblocked, nullptr);
    installHandler(sig, stopBySignal);
    setKeyMode();
    errno = interruptedError;
}

void continueBySignal(int) {
    const int interruptedError = errno;
    if (terminal >= 0)
        setKeyMode();
    errno = interruptedError;
}

} // namespace

TerminalMode::TerminalMode(int fd) {
    if (!isatty(fd) || tcgetattr(fd, &formerMode) != 0)
        return;
    keyMode = formerMode;
    keyMode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    keyMode.c_cc[VMIN] = 1;
    keyMode.c_cc[VTIME] = 0;
    terminal = fd;
    for (const int sig : endingSignals)
        installUnlessIgnored(sig, endBySignal);
    installUnlessIgnored(SIGTSTP, stopBySignal);
    installHandler(SIGCONT, continueBySignal);
    static const int registered = std::atexit(restore);
    static_cast<void>(registered);
    setKeyMode();
}

TerminalMode::~TerminalMode() {
    restore();
    terminal = -1;
}

void TerminalMode::restore() {
    if (!inKeyMode)
        return;
    tcsetattr(terminal, TCSANOW, &formerMode);
    inKeyMode = false;
}

} // namespace console
