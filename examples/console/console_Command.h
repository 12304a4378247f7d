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
    /// The words behind the first `used` are the command's arguments. All objects must outlive the invocation.
    Invocation(const utility::StringArray& words, unsigned int used, utility::PutStream& out, History& history)
        : m_words(words), m_used(used), m_out(out), m_history(history), m_ends(false) {}

    /// Where the answer goes.
    utility::PutStream& out() {
        return m_out;
    }
    /// The commands and answers before this one.
    History& history() {
        return m_history;
    }
    /// Whether more of the answer is wanted: the user has not quit, and what takes it still works.
    bool isWanted() const {
        return m_out.isOutputStreamGood();
    }
    unsigned int wordCount() const {
        return m_words.length() - m_used;
    }
    /// The `i`-th argument, or null.
    const char* word(unsigned int i) const {
        return m_words.ElementAt(m_used + i);
    }

    /// Sets the one line that says what failed; always false.
    bool fail(const char* format, ...) VXUT_PRINTF(2, 3);
    const std::string& failure() const {
        return m_failure;
    }

    /// Asks the console to end after this command.
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

/// What the history keeps of a command.
enum Remembered { REMEMBER_ALL, REMEMBER_NAME, REMEMBER_NOTHING };

/// A command as it is listed and found.
struct Command {
    const char* name;      ///< one or two words
    const char* arguments; ///< as shown to the user, empty for none
    const char* summary;
    unsigned int fewest; ///< arguments
    unsigned int most;
    bool (*run)(Invocation& call); ///< false after `fail`
    Remembered remembered = REMEMBER_ALL;
};

} // namespace console
