#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "console_CommandTable.h"
#include "console_Session.h"
#include "console_SignalStack.h"
#include "fw_ApplicationArguments.h"
#include "fw_Container.h"
#include "fw_ThreadInfo.h"
#include "ut_Debug.h"
#include "ut_Terminal.h"

namespace {

int usage(std::FILE* out) {
    std::fputs("usage: vxconsole [-c COMMAND]\n"
               "  -c COMMAND  run one command and exit with status 0, or 1 if it failed\n"
               "Without -c, commands are read from the terminal or, line by line, from standard input.\n"
               "Enter \"help\" for a list of all commands.\n",
               out);
    return out == stdout ? 0 : 2;
}

void report(const std::string& failure) {
    std::fprintf(stderr, "%s\n", failure.c_str());
}

// Occupies the descriptors of standard streams that were closed when the process started. Otherwise the next file
// opened would get such a number, and messages for standard error would be written into it.
void fillStandardDescriptors() {
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(fd, F_GETFD) >= 0)
            continue;
        // Opened in the opposite direction, so that using it still fails with EBADF.
        const int filler = open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY);
        if (filler > fd)
            close(filler);
    }
}

void crash(int sig) {
    console::TerminalConsole::restoreMode();
    utility::Debug::SignalCrash(sig);
}

void handleSignals() {
    struct sigaction action = {};
    action.sa_handler = crash;
    action.sa_flags = SA_ONSTACK;
    for (const int sig : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT})
        sigaction(sig, &action, nullptr);
    action.sa_handler = utility::Debug::SignalContext;
    action.sa_flags = SA_RESTART;
    sigaction(SIGUSR2, &action, nullptr);
}

int runOne(console::TerminalConsole& terminal, const char* line) {
    console::Session session(terminal, false);
    std::string failure;
    if (session.run(line, &failure))
        return 0;
    report(failure);
    return 1;
}

// Runs each line of standard input as a command. Returns the exit status: 1 if a command failed.
int runAll(console::TerminalConsole& terminal) {
    console::Session session(terminal, false);
    int status = 0;
    std::string line;
    while (!session.isEnded() && terminal.readPlainLine(&line)) {
        std::string failure;
        if (session.run(line, &failure))
            continue;
        report(failure);
        status = 1;
    }
    if (terminal.inputError() != 0) {
        report(std::string("standard input: ") + std::strerror(terminal.inputError()));
        status = 1;
    }
    return status;
}

int runInteractively(console::TerminalConsole& terminal) {
    console::Session session(terminal, true);
    std::string line;
    while (!session.isEnded() && terminal.readLine("vx> ", console::completeCommand, &line)) {
        std::string failure;
        if (!session.run(line, &failure))
            report(failure);
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    fillStandardDescriptors();
    const bool hasCommand = argc == 3 && std::strcmp(argv[1], "-c") == 0;
    if (argc == 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0))
        return usage(stdout);
    if (argc > 1 && !hasCommand)
        return usage(stderr);

    framework::Container container;
    // Crash reports and context files are named after `argv[0]`: use a fixed name.
    static char name[] = "vxconsole";
    argv[0] = name;
    framework::ApplicationArguments arguments(argc, argv);
    const console::SignalStack stack;
    handleSignals();
    framework::ThreadInfo::MyThreadInfo()->setThreadName("console");
    utility::Terminal::instance();
    const bool interactive = !hasCommand && isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
    console::TerminalConsole terminal(STDIN_FILENO, STDOUT_FILENO, interactive);
    if (hasCommand)
        return runOne(terminal, argv[2]);
    return interactive ? runInteractively(terminal) : runAll(terminal);
}
