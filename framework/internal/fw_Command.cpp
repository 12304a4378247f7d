#include "internal/fw_Command.h"

#include <cctype>
#include <cerrno>
#include <cstring>
#include <ctime>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "fw_Memory.h"
#include "internal/fw_StandardNumbers.h"
#include "ut_GetStream.h"
#include "ut_PutStream.h"

namespace framework {

namespace {

class Descriptor {
public:
    Descriptor() = default;
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        close();
    }

    int get() const {
        return m_descriptor;
    }
    bool isOpen() const {
        return m_descriptor >= 0;
    }
    void close() {
        if (isOpen())
            ::close(m_descriptor);
        m_descriptor = -1;
    }
    // Takes `descriptor`, but never with the number of a standard stream: the child's streams go there. Such a number
    // occurs only where no descriptor was left to occupy it.
    bool adopt(int descriptor) {
        m_descriptor = descriptor;
        if (descriptor > STDERR_FILENO)
            return true;
        m_descriptor = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        ::close(descriptor);
        return isOpen();
    }

private:
    int m_descriptor = -1;
};

struct Pipe {
    Descriptor readEnd;
    Descriptor writeEnd;

    bool open() {
        const StandardNumbers occupied;
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            return false;
        const bool adopted = readEnd.adopt(ends[0]);
        return writeEnd.adopt(ends[1]) && adopted;
    }
};

bool setNonBlocking(const Descriptor& descriptor) {
    const int flags = fcntl(descriptor.get(), F_GETFL);
    return flags >= 0 && fcntl(descriptor.get(), F_SETFL, flags | O_NONBLOCK) == 0;
}

// A program that does not read all its input must not end this process by SIGPIPE.
class BrokenPipeGuard {
public:
    BrokenPipeGuard() {
        sigset_t pending;
        sigpending(&pending);
        m_wasPending = sigismember(&pending, SIGPIPE) == 1;
        sigemptyset(&m_signals);
        sigaddset(&m_signals, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &m_signals, &m_former);
    }
    BrokenPipeGuard(const BrokenPipeGuard&) = delete;
    BrokenPipeGuard& operator=(const BrokenPipeGuard&) = delete;
    ~BrokenPipeGuard() {
        const timespec noTime = {0, 0};
        if (!m_wasPending)
            while (sigtimedwait(&m_signals, nullptr, &noTime) < 0 && errno == EINTR) {
            }
        pthread_sigmask(SIG_SETMASK, &m_former, nullptr);
    }

private:
    sigset_t m_signals;
    sigset_t m_former;
    bool m_wasPending;
};

class SpawnSettings {
public:
    SpawnSettings() {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawnattr_init(&m_attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings() {
        posix_spawnattr_destroy(&m_attributes);
        posix_spawn_file_actions_destroy(&m_actions);
    }

    bool setInput(const Descriptor& source) {
        if (!source.isOpen())
            return posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0) == 0;
        return posix_spawn_file_actions_adddup2(&m_actions, source.get(), STDIN_FILENO) == 0;
    }
    bool setOutput(const Descriptor& target) {
        if (!target.isOpen())
            return keep(STDOUT_FILENO);
        return posix_spawn_file_actions_adddup2(&m_actions, target.get(), STDOUT_FILENO) == 0;
    }
    bool setError() {
        return keep(STDERR_FILENO);
    }
    // A program expects the signal mask that a shell would give it, whatever this thread blocks.
    bool setSignals() {
        sigset_t none;
        sigset_t brokenPipe;
        sigemptyset(&none);
        sigemptyset(&brokenPipe);
        sigaddset(&brokenPipe, SIGPIPE);
        return posix_spawnattr_setsigmask(&m_attributes, &none) == 0 &&
               posix_spawnattr_setsigdefault(&m_attributes, &brokenPipe) == 0 &&
               posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF) == 0;
    }
    bool start(pid_t& child, char* const* words) const {
        return posix_spawnp(&child, words[0], &m_actions, &m_attributes, words, environ) == 0;
    }

private:
    // If the stream is closed here, the first file that the program opens would get its number and its messages.
    bool keep(int stream) {
        const int flags = fcntl(stream, F_GETFD);
        const bool isOpen = flags >= 0 && (flags & FD_CLOEXEC) == 0;
        return isOpen || posix_spawn_file_actions_addopen(&m_actions, stream, "/dev/null", O_WRONLY, 0) == 0;
    }

    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

// A child process, which never outlives this object.
class Child {
public:
    Child() = default;
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    ~Child() {
        if (m_id <= 0)
            return;
        kill(m_id, SIGKILL);
        endedWell();
    }

    bool start(const SpawnSettings& settings, char* const* words) {
        if (settings.start(m_id, words))
            return true;
        m_id = 0;
        return false;
    }
    bool endedWell() {
        int status = 0;
        pid_t ended;
        do
            ended = waitpid(m_id, &status, 0);
        while (ended < 0 && errno == EINTR);
        m_id = 0;
        return ended > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

private:
    pid_t m_id = 0;
};

// The sanitizer's check of a stream's type needs the utility library, which this one does not link.
#define TYPE_UNCHECKED __attribute__((no_sanitize("vptr")))

// What goes through the two pipes while the child runs.
class Traffic {
public:
    Traffic(InputStream* in, Descriptor& toChild, OutputStream* out, Descriptor& fromChild)
        : m_in(in), m_toChild(toChild), m_out(out), m_fromChild(fromChild) {}

    // Returns false if `poll` or a transfer fails. The pipes are closed then, so that neither the child nor its parent
    // waits for more.
    bool run() {
        while (m_toChild.isOpen() || m_fromChild.isOpen()) {
            // `poll` ignores descriptor -1, which a closed end has.
            pollfd ends[] = {{m_toChild.get(), POLLOUT, 0}, {m_fromChild.get(), POLLIN, 0}};
            if (poll(ends, 2, -1) < 0 && errno != EINTR) {
                m_toChild.close();
                m_fromChild.close();
                return false;
            }
            if (ends[0].revents != 0)
                feed();
            if (ends[1].revents != 0)
                drain();
        }
        return !m_hasFailed;
    }

private:
    static bool isForLater(ssize_t count) {
        return count < 0 && (errno == EINTR || errno == EAGAIN);
    }

    void feed() {
        if (m_held == 0 && !refill()) {
            m_toChild.close();
            return;
        }
        const ssize_t written = write(m_toChild.get(), m_input + m_sent, m_held);
        if (isForLater(written))
            return;
        // 0 would be returned again and again.
        if (written <= 0) {
            // The child need not read its input to the end.
            m_hasFailed = m_hasFailed || written == 0 || errno != EPIPE;
            m_toChild.close();
            return;
        }
        m_sent += static_cast<std::size_t>(written);
        m_held -= static_cast<std::size_t>(written);
    }

    TYPE_UNCHECKED bool refill() {
        const int count =
            m_in != nullptr && m_in->isInputStreamGood() ? m_in->ReceiveInputStream(m_input, sizeof m_input - 1) : 0;
        if (count <= 0)
            return false;
        m_sent = 0;
        m_held = static_cast<std::size_t>(count);
        return true;
    }

    TYPE_UNCHECKED void drain() {
        char output[16384];
        const ssize_t count = read(m_fromChild.get(), output, sizeof output);
        if (isForLater(count))
            return;
        if (count <= 0) {
            m_hasFailed = m_hasFailed || count < 0;
            m_fromChild.close();
            return;
        }
        // Output that the stream refuses is discarded, so that the program can finish.
        if (m_out != nullptr)
            m_out->SendOutputStream(output, static_cast<unsigned int>(count));
    }

    InputStream* m_in;
    Descriptor& m_toChild;
    OutputStream* m_out;
    Descriptor& m_fromChild;
    char m_input[16384];
    std::size_t m_sent = 0;
    std::size_t m_held = 0;
    bool m_hasFailed = false;
};

bool isSpace(char character) {
    return std::isspace(static_cast<unsigned char>(character)) != 0;
}

char* skipSpace(char* text) {
    while (isSpace(*text))
        ++text;
    return text;
}

} // namespace

CommandWords::CommandWords(const char* command) : m_text(Memory::StaticAllocString(command)), m_words(nullptr) {
    if (m_text == nullptr)
        return;
    // A word takes at least two characters of the text with what ends it, an empty one its two quotes.
    const unsigned long most = std::strlen(m_text) / 2 + 2;
    m_words = static_cast<char**>(Memory::StaticAlloc(most * sizeof(char*)));
    if (m_words != nullptr)
        split();
}

CommandWords::~CommandWords() {
    Memory::StaticFree(m_words);
    Memory::StaticFreeString(m_text);
}

void CommandWords::split() {
    char** word = m_words;
    for (char* next = skipSpace(m_text); *next != '\0'; next = skipSpace(next)) {
        const bool quoted = *next == '"';
        *word++ = quoted ? ++next : next;
        while (*next != '\0' && (quoted ? *next != '"' : !isSpace(*next)))
            ++next;
        if (*next != '\0')
            *next++ = '\0';
    }
    *word = nullptr;
}

bool runCommand(char* const* words, InputStream* in, OutputStream* out) {
    Pipe input;
    Pipe output;
    if ((in != nullptr && !(input.open() && setNonBlocking(input.writeEnd))) ||
        (out != nullptr && !(output.open() && setNonBlocking(output.readEnd))))
        return false;
    SpawnSettings settings;
    if (!settings.setInput(input.readEnd) || !settings.setOutput(output.writeEnd) || !settings.setError() ||
        !settings.setSignals())
        return false;
    Child child;
    if (!child.start(settings, words))
        return false;
    input.readEnd.close();
    output.writeEnd.close();
    bool moved = false;
    {
        const BrokenPipeGuard guard;
        moved = Traffic(in, input.writeEnd, out, output.readEnd).run();
    }
    return child.endedWell() && moved;
}

} // namespace framework
