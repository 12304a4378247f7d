#pragma once

#include <string>
#include <thread>

#include "console_TerminalConsole.h"
#include "ut_BufferStreamList.h"
#include "ut_BufferStreamQueue.h"
#include "ut_PutStream.h"
#include "ut_StringArray.h"

namespace console {

/// Passes commands from the thread that reads them to a worker thread that runs them.
///
/// `run` writes a request with the parameter writers into an element of the pool and queues it under the queue's
/// waiter. The worker reads the parameters in the same order and returns its answer in the same element. The terminal
/// is not owned and must outlive the session. If its output is a terminal, control characters in answers are escaped.
/// One thread at a time calls `run`, which starts the worker unless it is running.
///
///     console::Session session(terminal, true);
///     std::string failure;
///     if (!session.run("show file /etc/hosts", &failure)) report(failure);
class Session {
public:
    /// If `paged`, answers stop after each full page of the terminal.
    Session(TerminalConsole& terminal, bool paged);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    /// Ends the worker thread and waits for it.
    ~Session();

    /// Runs the command in `line` and shows its answer. Returns false, with one line in `failure`, if the command
    /// failed. Returns true for an empty line, without doing anything.
    bool run(const std::string& line, std::string* failure);
    /// Whether a command has requested that the console exit.
    bool isEnded() const {
        return m_ended;
    }

private:
    struct Request;

    bool startWorker(std::string* failure);
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
