#pragma once

#include <string>
#include <thread>

#include "console_Answer.h"
#include "console_Settings.h"
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
///     console::Session session(terminal, console::Settings());
///     const console::Session::Result result = session.run("show file /etc/hosts");
///     if (!result.succeeded) report(result.failure);
class Session {
public:
    /// How a command ended.
    struct Result {
        bool succeeded = true;
        std::string failure; ///< why the command failed, as one line
    };

    Session(TerminalConsole& terminal, const Settings& settings);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    /// Ends the worker thread and waits for it.
    ~Session();

    /// Runs the command in `line` and shows its answer. Does nothing if the line is empty or a comment, which begins
    /// with '#'.
    Result run(const std::string& line);
    /// Whether a command has requested that the console exit.
    bool isEnded() const {
        return m_ended;
    }

private:
    struct Request;
    struct Outcome;

    Result refuse(const std::string& failure);
    bool startWorker(std::string* failure);
    utility::BufferStreamElement* takeElement();
    void giveBack(utility::BufferStreamElement* element);
    bool writeRequest(utility::BufferStreamElement& element, const char* line, utility::StringArray& words);
    Result readAnswer(utility::BufferStreamElement& element);

    void work();
    bool serve(utility::BufferStreamElement& element);
    Outcome answer(Request& request);
    Outcome answerTo(framework::OutputStream& target, Request& request);
    Outcome answerInJson(utility::PutStream& out, Request& request);
    Outcome runCommand(Request& request, Answer& answer);

    TerminalConsole& m_terminal;
    const Settings m_settings;
    bool m_ended;
    utility::BufferStreamList m_pool;
    utility::BufferStreamQueue m_requests;
    utility::BufferStreamQueue m_answers;
    std::thread m_worker;
};

} // namespace console
