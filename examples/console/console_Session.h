#pragma once

#include <string>
#include <thread>

#include "console_TerminalConsole.h"
#include "ut_BufferStreamList.h"
#include "ut_BufferStreamQueue.h"
#include "ut_PutStream.h"
#include "ut_StringArray.h"

namespace console {

/// Carries commands from the thread that reads them to the thread that runs them.
///
/// A request is written with the parameter writers into an element of the pool, queued under the queue's waiter, and
/// read back by the worker in the same order; the answer comes back in the same element. The terminal is kept, not
/// owned; where it is a terminal, answers are shown without control characters that it would obey. One thread at a time
/// calls `run`.
///
///     console::Session session(terminal, true);
///     std::string failure;
///     if (!session.run("show file /etc/hosts", &failure)) report(failure);
class Session {
public:
    /// With `paged` long answers stop after each page of the terminal.
    Session(TerminalConsole& terminal, bool paged);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    /// Waits for the worker to end.
    ~Session();

    /// Runs the command in `line` and shows its answer. False, with one line in `failure`, when it failed. An empty
    /// line does nothing.
    bool run(const std::string& line, std::string* failure);
    /// Whether a command has asked for the end.
    bool isEnded() const {
        return m_ended;
    }

private:
    struct Request;

    utility::BufferStreamElement* takeElement();
    void giveBack(utility::BufferStreamElement* element);
    bool writeRequest(utility::BufferStreamElement& element, const char* line, utility::StringArray& words);
    bool readAnswer(utility::BufferStreamElement& element, std::string* failure);

    void work();
    bool serve(utility::BufferStreamElement& element);
    bool answer(Request& request, std::string* failure, bool* ends);
    bool answerTo(framework::OutputStream& target, Request& request, std::string* failure, bool* ends);
    bool runCommand(Request& request, utility::PutStream& out, std::string* failure, bool* ends);

    TerminalConsole& m_terminal;
    const bool m_paged;
    bool m_ended;
    utility::BufferStreamList m_pool;
    utility::BufferStreamQueue m_requests;
    utility::BufferStreamQueue m_answers;
    std::thread m_worker;
};

} // namespace console
