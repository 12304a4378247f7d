#pragma once

#include <string>

#include "console_History.h"
#include "ut_PutStream.h"
#include "ut_StringArray.h"

namespace console {

/// One run of a command: its words, where its answer goes, and why it failed.
///
///     if (!readable) return call.fail("%s: %s", call.word(0), std::strerror(errno));
class Invocation {
public:
    /// The first `used` words are the command's name, the others its arguments. All objects must outlive the
    /// invocation.
    Invocation(const utility::StringArray& words, unsigned int used, utility::PutStream& out, History& history)
        : m_words(words), m_used(used), m_out(out), m_history(history), m_ends(false) {}

    /// The stream for the answer.
    utility::PutStream& out() {
        return m_out;
    }
    /// The commands and answers before this one.
    History& history() {
        return m_history;
    }
    /// Whether to go on with the answer: the user has not quit, and the output has not failed.
    bool isWanted() const {
        return m_out.isOutputStreamGood();
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
    utility::PutStream& m_out;
    History& m_history;
    std::string m_failure;
    bool m_ends;
};

/// What the history keeps of a command and its answer.
enum Remembered { REMEMBER_ALL, REMEMBER_NAME, REMEMBER_NOTHING };

/// An entry of the command table.
struct Command {
    const char* name;              ///< one or two words
    const char* arguments;         ///< as the help shows them; may be empty
    const char* summary;           ///< what the command does, as the help shows it
    unsigned int fewest;           ///< smallest number of arguments
    unsigned int most;             ///< largest number of arguments
    bool (*run)(Invocation& call); ///< returns false after `fail`
    Remembered remembered = REMEMBER_ALL;
};

} // namespace console
