#include "internal/ut_KeyMode.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>

#include <signal.h>
#include <termios.h>
#include <unistd.h>

namespace utility {

namespace {

// Signals may reach several threads at once.
std::atomic<bool> inUse(false);
std::atomic<bool> inKeyMode(false);
std::atomic<int> terminal(-1);
// Read by the signal handlers; set before they are installed.
pid_t owner = -1;
termios formerMode;
termios keyMode;

void endBySignal(int sig);
void stopBySignal(int sig);
void continueBySignal(int sig);

struct Handled {
    void (*handler)(int);
    int signal;
    bool isInstalled;
};

// Every signal with a default action that ends or stops the process, except those that cannot be caught (SIGKILL,
// SIGSTOP), the stops of a process in the background, which does not own the terminal, and real-time signals.
Handled handled[] = {
    {endBySignal, SIGHUP, false},    {endBySignal, SIGINT, false},    {endBySignal, SIGQUIT, false},
    {endBySignal, SIGILL, false},    {endBySignal, SIGTRAP, false},   {endBySignal, SIGABRT, false},
    {endBySignal, SIGBUS, false},    {endBySignal, SIGFPE, false},    {endBySignal, SIGUSR1, false},
    {endBySignal, SIGSEGV, false},   {endBySignal, SIGUSR2, false},   {endBySignal, SIGPIPE, false},
    {endBySignal, SIGALRM, false},   {endBySignal, SIGTERM, false},   {endBySignal, SIGXCPU, false},
    {endBySignal, SIGXFSZ, false},   {endBySignal, SIGVTALRM, false}, {endBySignal, SIGPROF, false},
    {endBySignal, SIGSYS, false},    {endBySignal, SIGPOLL, false},   {endBySignal, SIGPWR, false},
    {endBySignal, SIGSTKFLT, false}, {stopBySignal, SIGTSTP, false},  {continueBySignal, SIGCONT, false},
};

// In the background, tcsetattr would stop the process with SIGTTOU, and the terminal's mode is the shell's. A terminal
// that is not the controlling one has no background.
bool ownsTerminal() {
    const pid_t foreground = tcgetpgrp(terminal);
    return foreground == getpgrp() || (foreground < 0 && errno == ENOTTY);
}

void setKeyMode() {
    if (!ownsTerminal())
        return;
    inKeyMode = true;
    // TCSANOW rather than TCSADRAIN: the output of a stopped terminal may never drain.
    tcsetattr(terminal, TCSANOW, &keyMode);
}

void setAction(int sig, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    // On the alternate stack, if there is one: the signal may be a stack overflow.
    action.sa_flags = SA_RESTART | SA_ONSTACK;
    sigfillset(&action.sa_mask);
    sigaction(sig, &action, nullptr);
}

// Makes `sig` take its default effect as soon as the handler returns.
void passOn(int sig) {
    setAction(sig, SIG_DFL);
    raise(sig);
}

void endBySignal(int sig) {
    restoreTerminal();
    passOn(sig);
}

void stopBySignal(int sig) {
    const int interruptedError = errno;
    restoreTerminal();
    sigset_t unblocked;
    sigemptyset(&unblocked);
    sigaddset(&unblocked, sig);
    passOn(sig);
    // The pending signal stops the process here; SIGCONT resumes it.
    pthread_sigmask(SIG_UNBLOCK, &unblocked, nullptr);
    setAction(sig, stopBySignal);
    setKeyMode();
    errno = interruptedError;
}

void continueBySignal(int) {
    const int interruptedError = errno;
    if (getpid() == owner)
        setKeyMode();
    errno = interruptedError;
}

void installHandlers() {
    for (Handled& each : handled) {
        // A signal that is ignored, as under nohup, or that the program handles itself keeps its action.
        struct sigaction former = {};
        each.isInstalled = sigaction(each.signal, nullptr, &former) == 0 && former.sa_handler == SIG_DFL;
        if (each.isInstalled)
            setAction(each.signal, each.handler);
    }
}

void removeHandlers() {
    for (Handled& each : handled) {
        struct sigaction current = {};
        if (each.isInstalled && sigaction(each.signal, nullptr, &current) == 0 && current.sa_handler == each.handler)
            setAction(each.signal, SIG_DFL);
        each.isInstalled = false;
    }
}

} // namespace

bool startKeyMode(int fd) {
    termios mode;
    if (tcgetattr(fd, &mode) != 0 || inUse.exchange(true))
        return false;
    formerMode = mode;
    keyMode = mode;
    keyMode.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    keyMode.c_cc[VMIN] = 1;
    keyMode.c_cc[VTIME] = 0;
    owner = getpid();
    terminal = fd;
    installHandlers();
    static const int registered = std::atexit(restoreTerminal) + std::at_quick_exit(restoreTerminal);
    static_cast<void>(registered);
    setKeyMode();
    return true;
}

void endKeyMode() {
    removeHandlers();
    restoreTerminal();
    terminal = -1;
    inUse = false;
}

void restoreTerminal() {
    // A child process between fork and exec shares the terminal and must not change it.
    if (!inKeyMode || getpid() != owner)
        return;
    const int interruptedError = errno;
    if (ownsTerminal())
        tcsetattr(terminal, TCSANOW, &formerMode);
    inKeyMode = false;
    errno = interruptedError;
}

} // namespace utility
