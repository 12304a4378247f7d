#include "console_Session.h"

#include <cstring>
#include <exception>
#include <memory>

#include <signal.h>

#include "console_CommandTable.h"
#include "console_EscapingOutputStream.h"
#include "console_Interruption.h"
#include "console_JsonAnswer.h"
#include "console_Pager.h"
#include "console_SignalStack.h"
#include "console_TextAnswer.h"
#include "fw_Exception.h"
#include "fw_ThreadInfo.h"
#include "ut_Arguments.h"
#include "ut_LockScope.h"
#include "ut_Terminal.h"
#include "ut_VirtualPutStream.h"

namespace console {

namespace {

enum RequestKind : unsigned int { REQUEST_COMMAND = 1, REQUEST_END = 2 };

constexpr int elementCount = 4;
constexpr int elementSize = 65536;
// Holds the longest text that a command writes at once: an environment entry of 128 KiB.
constexpr int outputSize = 262144;
constexpr int outputThreshold = 16384;
constexpr std::size_t longestFailure = 1024;

void send(utility::BufferStreamQueue& queue, utility::BufferStreamElement* element) {
    const utility::LockScope scope(queue.m_waiter);
    queue.enQueue(element);
    queue.m_waiter.signal();
}

// Returns `failure` as one line, even if the names in it contain newlines. If it is too long, the middle is omitted,
// because the reason is at the end.
std::string oneLine(const std::string& failure) {
    std::string line = failure;
    if (line.size() > longestFailure)
        line.replace(longestFailure / 2, line.size() - longestFailure, "...");
    return escapedLine(line);
}

utility::BufferStreamElement* receive(utility::BufferStreamQueue& queue) {
    const utility::LockScope scope(queue.m_waiter);
    while (queue.Count() == 0)
        queue.m_waiter.wait(0);
    return queue.deQueue();
}

} // namespace

// The parameters of a request, as the worker reads them.
struct Session::Request {
    int width = 0;
    int height = 0;
    std::string line;
    utility::StringArray words{0};
};

// What a command that was run, or was not found, leaves.
struct Session::Outcome {
    const Command* command = nullptr;
    bool succeeded = false;
    bool ends = false;
    std::string failure;
};

Session::Session(TerminalConsole& terminal, const Settings& settings)
    : m_terminal(terminal), m_settings(settings), m_ended(false), m_pool(elementCount, elementSize) {}

Session::~Session() {
    if (!m_worker.joinable())
        return;
    utility::BufferStreamElement* element = takeElement();
    element->PutParmUint32(REQUEST_END);
    send(m_requests, element);
    m_worker.join();
}

// A platform that has no thread left now may have one for the next command.
bool Session::startWorker(std::string* failure) {
    if (m_worker.joinable())
        return true;
    try {
        m_worker = std::thread(&Session::work, this);
        return true;
    } catch (const std::exception& refused) {
        *failure = std::string("cannot start the thread that runs commands: ") + refused.what();
        return false;
    }
}

utility::BufferStreamElement* Session::takeElement() {
    m_pool.Lock();
    utility::BufferStreamElement* element = m_pool.Allocate();
    for (; element == nullptr; element = m_pool.Allocate())
        m_pool.Wait(0);
    m_pool.UnLock();
    element->Rewind();
    return element;
}

void Session::giveBack(utility::BufferStreamElement* element) {
    m_pool.Lock();
    m_pool.Insert(element);
    m_pool.Signal();
    m_pool.UnLock();
}

// Ends a command that cannot be passed to the worker, which does not use the terminal now.
Session::Result Session::refuse(const std::string& failure) {
    if (m_settings.isJson) {
        const std::string object = JsonAnswer().object(nullptr, failure.c_str());
        m_terminal.outputStream().SendOutputStream(object.data(), static_cast<unsigned int>(object.size()));
    }
    return {false, failure};
}

Session::Result Session::run(const std::string& line) {
    // The command would end at the NUL byte: refuse it rather than run a part of it.
    if (line.find('\0') != std::string::npos)
        return refuse("a command must not contain a NUL byte");
    const std::size_t first = line.find_first_not_of(" \t");
    if (first != std::string::npos && line[first] == '#')
        return {};
    utility::Arguments arguments(line.c_str());
    if (arguments.quoteUnmatched())
        return refuse("a quote is not closed");
    utility::StringArray words(arguments.ArgCount());
    for (unsigned int i = 0; i < arguments.ArgCount(); ++i)
        words.Append(arguments.ArgValue(i));
    if (words.length() == 0)
        return {};
    std::string failure;
    Interruption::clear();
    if (!startWorker(&failure))
        return refuse(failure);

    utility::BufferStreamElement* element = takeElement();
    if (!writeRequest(*element, line.c_str(), words)) {
        giveBack(element);
        return refuse("the command is too long");
    }
    send(m_requests, element);
    element = receive(m_answers);
    Result result = readAnswer(*element);
    giveBack(element);
    return result;
}

bool Session::writeRequest(utility::BufferStreamElement& element, const char* line, utility::StringArray& words) {
    utility::Terminal* terminal = utility::Terminal::instance();
    terminal->update();
    try {
        element.PutParmUint32(REQUEST_COMMAND);
        element.PutParmSint32(terminal->width());
        element.PutParmSint32(terminal->height());
        element.PutParmString(line);
        element.PutParmStringArray(words);
    } catch (framework::Exception* overflow) {
        delete overflow;
        return false;
    }
    return true;
}

Session::Result Session::readAnswer(utility::BufferStreamElement& element) {
    unsigned int succeeded = 0;
    unsigned int ends = 0;
    element.GetParmUint32(&succeeded);
    element.GetParmUint32(&ends);
    const char* failure = element.GetParmString();
    m_ended = ends != 0;
    return {succeeded != 0, failure != nullptr ? failure : ""};
}

void Session::work() {
    const SignalStack stack;
    // The thread that reads commands handles them.
    sigset_t keys;
    sigemptyset(&keys);
    for (const int sig : {SIGINT, SIGTSTP, SIGCONT, SIGWINCH})
        sigaddset(&keys, sig);
    pthread_sigmask(SIG_BLOCK, &keys, nullptr);
    framework::ThreadInfo* thread = framework::ThreadInfo::MyThreadInfo();
    if (thread != nullptr)
        thread->setThreadName("worker");
    for (;;) {
        utility::BufferStreamElement* element = receive(m_requests);
        const bool goesOn = serve(*element);
        if (goesOn) {
            send(m_answers, element);
        } else {
            giveBack(element);
            return;
        }
    }
}

bool Session::serve(utility::BufferStreamElement& element) {
    unsigned int kind = 0;
    element.GetParmUint32(&kind);
    if (kind != REQUEST_COMMAND)
        return false;
    Outcome outcome;
    try {
        Request request;
        element.GetParmSint32(&request.width);
        element.GetParmSint32(&request.height);
        request.line = element.GetParmString();
        element.GetParmStringArray(request.words);
        outcome = answer(request);
    } catch (const std::exception& failed) {
        outcome.failure = failed.what();
    }

    element.Rewind();
    element.PutParmUint32(outcome.succeeded ? 1 : 0);
    element.PutParmUint32(outcome.ends ? 1 : 0);
    element.PutParmString(outcome.failure.c_str());
    return true;
}

Session::Outcome Session::answer(Request& request) {
    Outcome outcome;
    if (m_settings.isPaged) {
        Pager pages(m_terminal, request.width, request.height, outputSize, outputThreshold);
        outcome = answerTo(pages, request);
    } else {
        outcome = answerTo(m_terminal.outputStream(), request);
    }
    m_terminal.setAnswering(false);
    if (!outcome.succeeded)
        m_terminal.history().addLines(outcome.failure);
    if (m_terminal.outputError() != 0) {
        outcome.succeeded = false;
        outcome.failure = std::string("standard output: ") + std::strerror(m_terminal.outputError());
    }
    return outcome;
}

// Escapes before the pager counts columns, because an escaped byte takes more of them.
Session::Outcome Session::answerTo(framework::OutputStream& target, Request& request) {
    EscapingOutputStream escaping(target);
    framework::OutputStream& shown = m_terminal.isShownByTerminal() ? escaping : target;
    utility::VirtualPutStream out(shown, outputSize, outputThreshold);
    // When paged, send each block at once so that the user sees it.
    out.setHoldOutput(!m_settings.isPaged);
    Outcome outcome;
    if (m_settings.isJson) {
        outcome = answerInJson(out, request);
    } else {
        TextAnswer text(out);
        outcome = runCommand(request, text);
    }
    out.EndOutputStream();
    return outcome;
}

Session::Outcome Session::answerInJson(utility::PutStream& out, Request& request) {
    JsonAnswer json;
    Outcome outcome = runCommand(request, json);
    const std::string object = json.object(outcome.command != nullptr ? outcome.command->name : nullptr,
                                           outcome.succeeded ? nullptr : outcome.failure.c_str());
    out.SendOutputStream(object.data(), static_cast<unsigned int>(object.size()));
    return outcome;
}

Session::Outcome Session::runCommand(Request& request, Answer& answer) {
    Outcome outcome;
    const Lookup found = findCommand(request.words);
    outcome.command = found.command;
    // An unknown command may be a mistyped `password`: keep its arguments out of the history.
    const Remembered remembered = found.command != nullptr ? found.command->remembered : REMEMBER_NAME;
    const std::string name = found.command != nullptr ? found.command->name : request.words[0];
    if (remembered != REMEMBER_NOTHING)
        m_terminal.history().addLines("vx> " + (remembered == REMEMBER_ALL ? request.line : name));
    if (found.command == nullptr) {
        outcome.failure = oneLine(found.problem);
        return outcome;
    }
    Invocation call(request.words, found.used, answer, m_terminal, m_settings);
    if (call.wordCount() < found.command->fewest || call.wordCount() > found.command->most) {
        outcome.failure = "usage: " + usageOf(*found.command);
        return outcome;
    }
    m_terminal.setAnswering(remembered != REMEMBER_NOTHING);
    try {
        outcome.succeeded = found.command->run(call);
    } catch (framework::Exception* caught) {
        const std::unique_ptr<framework::Exception> thrown(caught);
        call.fail("failure %u at %s:%d: %s", thrown->code(), thrown->file(), thrown->line(), thrown->message());
    } catch (const std::exception& failed) {
        call.fail("%s", failed.what());
    }
    outcome.ends = call.ends();
    if (!outcome.succeeded)
        outcome.failure = oneLine(name + ": " + call.failure());
    return outcome;
}

} // namespace console
