#pragma once

#include <string>

#include "console_Answer.h"
#include "console_Interruption.h"
#include "console_Settings.h"
#include "console_TerminalConsole.h"
#include "ut_StringArray.h"

namespace console {

/// One run of a command: its words, where its answer goes, and why it failed.
///
///     if (!readable) return call.fail("%s: %s", call.word(0), std::strerror(errno));
class Invocation {
public:
    /// The first `used` words are the command's name, the others its arguments. All objects must outlive the
    /// invocation.
    Invocation(const utility::StringArray& words, unsigned int used, Answer& answer, TerminalConsole& terminal,
               const Settings& settings)
        : m_words(words), m_used(used), m_answer(answer), m_terminal(terminal), m_settings(settings), m_ends(false) {}

    /// What the command answers.
    Answer& answer() {
        return m_answer;
    }
    /// The terminal, or what the console has instead of one, with the history.
    TerminalConsole& terminal() {
        return m_terminal;
    }
    /// Whether to go on with the answer: the user has neither quit nor interrupted it, and the output has not failed.
    bool isWanted() const {
        return m_answer.isWanted() && !Interruption::isRequested();
    }
    const Settings& settings() const {
        return m_settings;
    }
    /// Returns the place of a file of the system, such as "/proc/uptime", under the root that `--root` sets.
    std::string systemPath(const std::string& path) const {
        return m_settings.root + path;
    }
    unsigned int wordCount() const {
        return m_words.length() - m_used;
    }
    /// Argument `i`, counted from 0; null if there are fewer.
    const char* word(unsigned int i) const {
        return m_words.ElementAt(m_used + i);
    }

    /// Sets the failure message, formatted as `printf` does. Always returns false.
    bool fail(const char* format, ...) VXUT_PRINTF(2, 3);
    const std::string& failure() const {
        return m_failure;
    }

    /// Requests that the console exit after this command.
    void end() {
        m_ends = true;
    }
    bool ends() const {
        return m_ends;
    }

private:
    const utility::StringArray& m_words;
    const unsigned int m_used;
    Answer& m_answer;
    TerminalConsole& m_terminal;
    const Settings& m_settings;
    std::string m_failure;
    bool m_ends;
};

} // namespace console
