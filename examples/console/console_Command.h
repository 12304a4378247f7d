#pragma once

#include <string>

#include "ut_PutStream.h"
#include "ut_StringArray.h"

namespace console {

/// One run of a command: its words, where its answer goes, and why it failed.
///
///     if (!readable) return call.fail("%s: %s", call.word(0), std::strerror(errno));
class Invocation {
public:
    /// `words` are the command's arguments, without its name. Both objects must outlive the invocation.
    Invocation(const utility::StringArray& words, utility::PutStream& out)
        : m_words(words), m_out(out), m_ends(false) {}

    /// Where the answer goes.
    utility::PutStream& out() {
        return m_out;
    }
    unsigned int wordCount() const {
        return m_words.length();
    }
    /// The `i`-th argument, or null.
    const char* word(unsigned int i) const {
        return m_words.ElementAt(i);
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
    utility::PutStream& m_out;
    std::string m_failure;
    bool m_ends;
};

/// A command as it is listed and found.
struct Command {
    const char* name;      ///< one or two words
    const char* arguments; ///< as shown to the user, empty for none
    const char* summary;
    unsigned int fewest; ///< arguments
    unsigned int most;
    bool (*run)(Invocation& call); ///< false after `fail`
};

} // namespace console
