#include "console_Session.h"

#include <cstring>
#include <memory>

#include "console_CommandTable.h"
#include "console_Pager.h"
#include "fw_Exception.h"
#include "fw_ThreadInfo.h"
#include "ut_Arguments.h"
#include "ut_Terminal.h"

namespace console {

namespace {

enum RequestKind : unsigned int { REQUEST_COMMAND = 1, REQUEST_END = 2 };

const int elementCount = 4;
const int elementSize = 65536;
// Room for the longest single text that a command writes at once: an environment entry of 128 KiB.
const int outputSize = 262144;
const int outputThreshold = 16384;

void send(utility::BufferStreamQueue& queue, utility::BufferStreamElement* element) {
    queue.m_waiter.lock();
    queue.enQueue(element);
    queue.m_waiter.signal();
    queue.m_waiter.unlock();
}

utility::BufferStreamElement* receive(utility::BufferStreamQueue& queue) {
    queue.m_waiter.lock();
    while (queue.Count() == 0)
        queue.m_waiter.wait(0);
    utility::BufferStreamElement* element = queue.deQueue();
    queue.m_waiter.unlock();
    return element;
}

} // namespace

Session::Session(TerminalConsole& terminal, bool paged)
    : m_terminal(terminal),
      m_paged(paged),
      m_ended(false),
      m_pool(elementCount, elementSize),
      m_worker(&Session::work, this) {}

Session::~Session() {
    utility::BufferStreamElement* element = takeElement();
    element->PutParmUint32(REQUEST_END);
    send(m_requests, element);
    m_worker.join();
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

bool Session::run(const char* line, std::string* failure) {
    utility::Arguments arguments(line);
    if (arguments.quoteUnmatched()) {
        *failure = "a quote is not closed";
        return false;
    }
    utility::StringArray words(arguments.ArgCount());
    for (unsigned int i = 0; i < arguments.ArgCount(); ++i)
        words.Append(arguments.ArgValue(i));
    if (words.length() == 0)
        return true;

    utility::BufferStreamElement* element = takeElement();
    bool succeeded = false;
    if (writeRequest(*element, words)) {
        send(m_requests, element);
        element = receive(m_answers);
        succeeded = readAnswer(*element, failure);
    } else {
        *failure = "the command is too long";
    }
    giveBack(element);
    return succeeded;
}

bool Session::writeRequest(utility::BufferStreamElement& element, utility::StringArray& words) {
    try {
        element.PutParmUint32(REQUEST_COMMAND);
        element.PutParmSint32(utility::Terminal::instance()->width());
        element.PutParmSint32(utility::Terminal::instance()->height());
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
    int width = 0;
    int height = 0;
    utility::StringArray words(0);
    element.GetParmUint32(&kind);
    if (kind != REQUEST_COMMAND)
        return false;
    element.GetParmSint32(&width);
    element.GetParmSint32(&height);
    element.GetParmStringArray(words);

    std::string failure;
    bool ends = false;
    const bool succeeded = answer(words, width, height, &failure, &ends);

    element.Rewind();
    element.PutParmUint32(succeeded);
    element.PutParmUint32(ends);
    element.PutParmString(failure.c_str());
    return true;
}

bool Session::answer(utility::StringArray& words, int width, int height, std::string* failure, bool* ends) {
    bool succeeded = false;
    if (m_paged) {
        Pager out(m_terminal, width, height, outputSize, outputThreshold);
        succeeded = runCommand(words, out, failure, ends);
        out.FlushOutputStream();
    } else {
        utility::VirtualPutStream out(m_terminal.outputStream(), outputSize, outputThreshold);
        out.setHoldOutput(true);
        succeeded = runCommand(words, out, failure, ends);
        out.FlushOutputStream();
    }
    if (m_terminal.outputError() == 0)
        return succeeded;
    *failure = std::string("standard output: ") + std::strerror(m_terminal.outputError());
    return false;
}

bool Session::runCommand(utility::StringArray& words, utility::PutStream& out, std::string* failure, bool* ends) {
    unsigned int used = 0;
    const Command* command = findCommand(words, &used, failure);
    if (command == nullptr)
        return false;
    utility::StringArray rest(words.length());
    for (unsigned int i = used; i < words.length(); ++i)
        rest.Append(words[i]);
    if (rest.length() < command->fewest || rest.length() > command->most) {
        *failure = std::string("usage: ") + command->name + (*command->arguments != 0 ? " " : "") + command->arguments;
        return false;
    }
    Invocation call(rest, out);
    bool succeeded = false;
    try {
        succeeded = command->run(call);
    } catch (framework::Exception* caught) {
        const std::unique_ptr<framework::Exception> thrown(caught);
        call.fail("failure %u at %s:%d: %s", thrown->code(), thrown->file(), thrown->line(), thrown->message());
    }
    *ends = call.ends();
    if (!succeeded)
        *failure = std::string(command->name) + ": " + call.failure();
    return succeeded;
}

} // namespace console
