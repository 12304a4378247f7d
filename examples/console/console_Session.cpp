#include "console_Session.h"

#include <cstring>
#include <exception>
#include <memory>

#include "console_CommandTable.h"
#include "console_EscapingOutputStream.h"
#include "console_Pager.h"
#include "console_SignalStack.h"
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

Session::Session(TerminalConsole& terminal, bool paged)
    : m_terminal(terminal), m_paged(paged), m_ended(false), m_pool(elementCount, elementSize) {}

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

bool Session::run(const std::string& line, std::string* failure) {
    // The command would end at the NUL byte: refuse it rather than run a part of it.
    if (line.find('\0') != std::string::npos) {
        *failure = "a command must not contain a NUL byte";
        return false;
    }
    utility::Arguments arguments(line.c_str());
    if (arguments.quoteUnmatched()) {
        *failure = "a quote is not closed";
        return false;
    }
    utility::StringArray words(arguments.ArgCount());
    for (unsigned int i = 0; i < arguments.ArgCount(); ++i)
        words.Append(arguments.ArgValue(i));
    if (words.length() == 0)
        return true;
    if (!startWorker(failure))
        return false;

    utility::BufferStreamElement* element = takeElement();
    bool succeeded = false;
    if (writeRequest(*element, line.c_str(), words)) {
        send(m_requests, element);
        element = receive(m_answers);
        succeeded = readAnswer(*element, failure);
    } else {
        *failure = "the command is too long";
    }
    giveBack(element);
    return succeeded;
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

bool Session::readAnswer(utility::BufferStreamElement& element, std::string* failure) {
    unsigned int succeeded = 0;
    unsigned int ends = 0;
    element.GetParmUint32(&succeeded);
    element.GetParmUint32(&ends);
    const char* text = element.GetParmString();
    if (text != nullptr)
        *failure = text;
    m_ended = ends != 0;
    return succeeded != 0;
}

void Session::work() {
    const SignalStack stack;
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
    std::string failure;
    bool succeeded = false;
    bool ends = false;
    try {
        Request request;
        element.GetParmSint32(&request.width);
        element.GetParmSint32(&request.height);
        request.line = element.GetParmString();
        element.GetParmStringArray(request.words);
        succeeded = answer(request, &failure, &ends);
    } catch (const std::exception& failed) {
        failure = failed.what();
    }

    element.Rewind();
    element.PutParmUint32(succeeded ? 1 : 0);
    element.PutParmUint32(ends ? 1 : 0);
    element.PutParmString(failure.c_str());
    return true;
}

bool Session::answer(Request& request, std::string* failure, bool* ends) {
    bool succeeded = false;
    if (m_paged) {
        Pager pages(m_terminal, request.width, request.height, outputSize, outputThreshold);
        succeeded = answerTo(pages, request, failure, ends);
    } else {
        succeeded = answerTo(m_terminal.outputStream(), request, failure, ends);
    }
    m_terminal.setAnswering(false);
    *failure = oneLine(*failure);
    if (!succeeded)
        m_terminal.history().addLines(*failure);
    if (m_terminal.outputError() == 0)
        return succeeded;
    *failure = std::string("standard output: ") + std::strerror(m_terminal.outputError());
    return false;
}

// Escapes before the pager counts columns, because an escaped byte takes more of them.
bool Session::answerTo(framework::OutputStream& target, Request& request, std::string* failure, bool* ends) {
    EscapingOutputStream escaping(target);
    framework::OutputStream& shown = m_terminal.isShownByTerminal() ? escaping : target;
    utility::VirtualPutStream out(shown, outputSize, outputThreshold);
    // When paged, send each block at once so that the user sees it.
    out.setHoldOutput(!m_paged);
    const bool succeeded = runCommand(request, out, failure, ends);
    out.EndOutputStream();
    return succeeded;
}

bool Session::runCommand(Request& request, utility::PutStream& out, std::string* failure, bool* ends) {
    unsigned int used = 0;
    const Command* command = findCommand(request.words, &used, failure);
    // An unknown command may be a mistyped `password`: keep its arguments out of the history.
    const Remembered remembered = command != nullptr ? command->remembered : REMEMBER_NAME;
    const std::string name = command != nullptr ? command->name : request.words[0];
    Invocation call(request.words, used, out, m_terminal.history());
    if (remembered != REMEMBER_NOTHING)
        m_terminal.history().addLines("vx> " + (remembered == REMEMBER_ALL ? request.line : name));
    if (command == nullptr)
        return false;
    if (call.wordCount() < command->fewest || call.wordCount() > command->most) {
        *failure = std::string("usage: ") + command->name + (*command->arguments != 0 ? " " : "") + command->arguments;
        return false;
    }
    m_terminal.setAnswering(remembered != REMEMBER_NOTHING);
    bool succeeded = false;
    try {
        succeeded = command->run(call);
    } catch (framework::Exception* caught) {
        const std::unique_ptr<framework::Exception> thrown(caught);
        call.fail("failure %u at %s:%d: %s", thrown->code(), thrown->file(), thrown->line(), thrown->message());
    } catch (const std::exception& failed) {
        call.fail("%s", failed.what());
    }
    *ends = call.ends();
    if (!succeeded)
        *failure = std::string(command->name) + ": " + call.failure();
    return succeeded;
}

} // namespace console
