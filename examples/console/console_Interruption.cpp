#include "console_Interruption.h"

#include <cerrno>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include "ut_TerminalConsole.h"

namespace console {

namespace {

// A pipe that has a byte while the end is requested: `poll` on it cannot miss a signal that arrives just before.
int readEnd = -1;
int writeEnd = -1;

void handle(int sig) {
    const int interruptedError = errno;
    if (Interruption::isRequested()) {
        utility::TerminalConsole::restoreMode();
        signal(sig, SIG_DFL);
        raise(sig);
    }
    Interruption::request();
    errno = interruptedError;
}

} // namespace

std::atomic<bool> Interruption::m_isRequested(false);

void Interruption::install() {
    int ends[2];
    struct sigaction former = {};
    if (sigaction(SIGINT, nullptr, &former) != 0 || former.sa_handler == SIG_IGN ||
        pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    readEnd = ends[0];
    writeEnd = ends[1];
    struct sigaction action = {};
    action.sa_handler = handle;
    action.sa_flags = SA_RESTART | SA_ONSTACK;
    sigaction(SIGINT, &action, nullptr);
}

void Interruption::clear() {
    char bytes[16];
    m_isRequested = false;
    while (readEnd >= 0 && read(readEnd, bytes, sizeof bytes) > 0) {
    }
}

void Interruption::request() {
    m_isRequested = true;
    // A full pipe has a byte as well.
    if (writeEnd >= 0 && write(writeEnd, "", 1) < 0)
        return;
}

bool Interruption::waitForInput(int input) {
    pollfd requests[] = {{input, POLLIN, 0}, {readEnd, POLLIN, 0}};
    while (poll(requests, readEnd >= 0 ? 2 : 1, -1) < 0 && errno == EINTR) {
    }
    return !isRequested();
}

} // namespace console
