#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "console_CommandLine.h"
#include "console_Interruption.h"
#include "console_LineEditor.h"
#include "console_Session.h"
#include "console_SignalStack.h"
#include "fw_ApplicationArguments.h"
#include "fw_Container.h"
#include "fw_ThreadInfo.h"
#include "ut_Debug.h"
#include "ut_Terminal.h"

namespace {

void report(const std::string& failure) {
    std::fprintf(stderr, "%s\n", failure.c_str());
}

int show(const char* text) {
    if (std::fputs(text, stdout) >= 0 && std::fflush(stdout) == 0)
        return console::exitSuccess;
    report(std::string("standard output: ") + std::strerror(errno));
    return console::exitFailure;
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

// Runs the commands of the command line, of a file or of the terminal.
class Program {
public:
    Program(console::TerminalConsole& terminal, const console::CommandLine& commandLine, bool isInteractive)
        : m_terminal(terminal),
          m_commandLine(commandLine),
          m_session(terminal, settingsOf(commandLine, isInteractive)),
          m_isInteractive(isInteractive),
          m_status(console::exitSuccess) {}

    // Runs all commands. Returns the exit status.
    int run() {
        if (m_isInteractive) {
            runInteractively();
            return console::exitSuccess;
        }
        for (const console::CommandLine::Source& source : m_commandLine.sources) {
            if (source.isFile && source.text != "-") {
                runFile(source.text);
            } else if (source.isFile) {
                runInput();
            } else {
                runLine(source.text);
            }
        }
        if (m_commandLine.sources.empty())
            runInput();
        return m_status;
    }

private:
    static console::Settings settingsOf(const console::CommandLine& commandLine, bool isInteractive) {
        console::Settings settings = commandLine.settings;
        settings.isPaged = isInteractive;
        return settings;
    }

    bool goesOn() const {
        return !m_session.isEnded() && (m_status == console::exitSuccess || !m_commandLine.stopsAtFailure);
    }

    void fail(const std::string& failure) {
        report(failure);
        m_status = console::exitFailure;
    }

    void runLine(const std::string& line) {
        if (!goesOn())
            return;
        const console::Session::Result result = m_session.run(line);
        if (!result.succeeded)
            fail(result.failure);
    }

    // Runs each line of standard input as a command.
    void runInput() {
        std::string line;
        while (goesOn() && m_terminal.readPlainLine(&line))
            runLine(line);
        if (m_terminal.inputError() != 0)
            fail(std::string("standard input: ") + std::strerror(m_terminal.inputError()));
    }

    void runFile(const std::string& path) {
        if (!goesOn())
            return;
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (file < 0) {
            fail(path + ": " + std::strerror(errno));
            return;
        }
        console::TerminalConsole input(file, STDOUT_FILENO, false);
        std::string line;
        while (goesOn() && input.readPlainLine(&line))
            runLine(line);
        close(file);
        if (input.inputError() != 0)
            fail(path + ": " + std::strerror(input.inputError()));
    }

    void runInteractively() {
        std::string line;
        console::Interruption::install();
        console::LineEditor editor(m_terminal, console::RecallFile::defaultPath());
        while (!m_session.isEnded() && editor.readLine(&line)) {
            const console::Session::Result result = m_session.run(line);
            if (!result.succeeded)
                report(result.failure);
        }
    }

    console::TerminalConsole& m_terminal;
    const console::CommandLine& m_commandLine;
    console::Session m_session;
    const bool m_isInteractive;
    int m_status;
};

} // namespace

int main(int argc, char** argv) {
    fillStandardDescriptors();
    const console::CommandLine commandLine = console::parseCommandLine(argc, argv);
    if (!commandLine.problem.empty()) {
        std::fprintf(stderr, "vxconsole: %s\n%s", commandLine.problem.c_str(), console::usageText());
        return console::exitUsage;
    }
    if (commandLine.asks == console::CommandLine::FOR_HELP)
        return show(console::usageText());
    if (commandLine.asks == console::CommandLine::FOR_VERSION)
        return show("vxconsole " VXCONSOLE_VERSION "\n");

    framework::Container container;
    // Crash reports and context files are named after `argv[0]`: use a fixed name.
    static char name[] = "vxconsole";
    argv[0] = name;
    framework::ApplicationArguments arguments(argc, argv);
    const console::SignalStack stack;
    handleSignals();
    framework::ThreadInfo::MyThreadInfo()->setThreadName("console");
    utility::Terminal::instance();
    const bool isInteractive = commandLine.sources.empty() && isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
    console::TerminalConsole terminal(STDIN_FILENO, STDOUT_FILENO, isInteractive && console::LineEditor::isPossible());
    return Program(terminal, commandLine, isInteractive).run();
}
