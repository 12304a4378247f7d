#include "console_Watch.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include <poll.h>
#include <unistd.h>

#include "console_CommandTable.h"
#include "console_EscapingOutputStream.h"
#include "console_TextAnswer.h"
#include "console_TextCollector.h"
#include "ut_Terminal.h"
#include "ut_VirtualPutStream.h"

namespace console {

namespace {

constexpr unsigned long longestInterval = 86400;
constexpr std::size_t largestAnswer = 1U << 20;
constexpr int outputSize = 262144;
constexpr int outputThreshold = 16384;

// Returns 0 if `text` is not a whole number of seconds from 1 to a day.
unsigned int secondsFrom(const std::string& text) {
    constexpr std::size_t mostDigits = 5;
    if (text.empty() || text.size() > mostDigits || text.find_first_not_of("0123456789") != std::string::npos)
        return 0;
    const unsigned long seconds = std::strtoul(text.c_str(), nullptr, 10);
    return seconds <= longestInterval ? static_cast<unsigned int>(seconds) : 0;
}

// Waits for a key. Returns false after `seconds` without one, and at once if the answer is no longer wanted.
bool isKeyPressed(Invocation& call, utility::TerminalConsole& terminal, unsigned int seconds) {
    using std::chrono::milliseconds;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (call.isWanted()) {
        const auto left = std::chrono::duration_cast<milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0)
            return false;
        pollfd request = {STDIN_FILENO, POLLIN, 0};
        if (poll(&request, 1, static_cast<int>(std::min<long long>(left.count(), 100))) > 0) {
            terminal.skipRestOfKey(terminal.readKey());
            return true;
        }
    }
    return false;
}

// Shows answers on a whole screen, each over the last one, and leaves the last one on the screen.
class WatchScreen {
public:
    explicit WatchScreen(utility::TerminalConsole& terminal) : m_terminal(terminal) {
        send("\033[2J");
    }
    WatchScreen(const WatchScreen&) = delete;
    WatchScreen& operator=(const WatchScreen&) = delete;

    // Shows as many lines of `text` as the screen has after the line `title`.
    void show(const std::string& title, const std::string& text) {
        utility::Terminal* size = utility::Terminal::instance();
        size->update();
        // Without wrapping, the terminal truncates long lines, whatever the width of their characters is.
        std::string screen = "\033[?7l\033[H" + title + "\033[K\n";
        std::istringstream in(text);
        int left = std::max<int>(size->height(), 3) - 2;
        for (std::string line; left > 0 && std::getline(in, line); --left)
            screen += line + "\033[K\n";
        send(screen + "\033[J\033[?7h");
    }

private:
    void send(const std::string& text) {
        m_terminal.outputStream().SendOutputStream(text.data(), static_cast<unsigned int>(text.size()));
    }

    utility::TerminalConsole& m_terminal;
};

bool isNamed(const Command& command, const char* name) {
    return std::strcmp(command.name, name) == 0;
}

// The command that is run again and again.
class WatchedCommand {
public:
    // Prepares the words of `call` that follow the interval.
    explicit WatchedCommand(Invocation& call) : m_call(call), m_words(call.wordCount()), m_found{nullptr, 0, ""} {
        for (unsigned int i = 1; i < call.wordCount(); ++i) {
            m_words.Append(call.word(i));
            m_text += (i > 1 ? " " : "") + std::string(call.word(i));
        }
        m_found = findCommand(m_words);
    }
    WatchedCommand(const WatchedCommand&) = delete;
    WatchedCommand& operator=(const WatchedCommand&) = delete;

    // Returns why the command cannot be watched; empty if it can.
    std::string problem() const {
        if (m_found.command == nullptr)
            return m_found.problem;
        const Command& command = *m_found.command;
        const unsigned int count = m_words.length() - m_found.used;
        if (count < command.fewest || count > command.most)
            return "usage: " + usageOf(command);
        // Such a command asks the user, shows a screen of its own or ends the console.
        const bool isRefused = command.remembered != REMEMBER_ALL || command.run == watch || isNamed(command, "quit") ||
                               isNamed(command, "exit");
        return isRefused ? command.name + std::string(": cannot be watched") : "";
    }
    // Returns the words of the command.
    const std::string& text() const {
        return m_text;
    }
    // Runs the command. Returns its answer as the terminal shows it, and the failure if it fails.
    std::string run() {
        TextCollector collector(largestAnswer);
        EscapingOutputStream escaping(collector);
        utility::VirtualPutStream out(escaping, outputSize, outputThreshold);
        TextAnswer answer(out);
        Invocation inner(m_words, m_found.used, answer, m_call.terminal(), m_call.settings());
        const bool succeeded = m_found.command->run(inner);
        out.EndOutputStream();
        return collector.text() + (succeeded ? "" : escapedLine(inner.failure()) + '\n');
    }

private:
    Invocation& m_call;
    utility::StringArray m_words;
    Lookup m_found;
    std::string m_text;
};

} // namespace

bool watch(Invocation& call) {
    const unsigned int seconds = secondsFrom(call.word(0));
    if (seconds == 0)
        return call.fail("%s: not a number of seconds from 1 to %lu", call.word(0), longestInterval);
    if (call.settings().isJson || isatty(STDIN_FILENO) == 0 || !call.terminal().isShownByTerminal())
        return call.fail("needs a terminal for the keys and the answer, and does not work with --json");
    WatchedCommand command(call);
    const std::string problem = command.problem();
    if (!problem.empty())
        return call.fail("%s", problem.c_str());

    // The history keeps the command, but not what each run shows.
    call.terminal().setAnswering(false);
    // Switches to key mode unless the console is in it already.
    utility::TerminalConsole terminal(STDIN_FILENO, STDOUT_FILENO, true);
    WatchScreen screen(terminal);
    const std::string title = escapedLine(command.text()) + " (every " + std::to_string(seconds) + " s, any key ends)";
    do {
        screen.show(title, command.run());
    } while (terminal.outputError() == 0 && call.isWanted() && !isKeyPressed(call, terminal, seconds));
    return terminal.outputError() == 0 || call.fail("standard output: %s", std::strerror(terminal.outputError()));
}

} // namespace console
