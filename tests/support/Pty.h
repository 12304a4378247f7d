#pragma once

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <utmp.h>

namespace test {

/// A program in its own pseudo-terminal. The test types to it; a small shell starts, stops and continues it.
///
/// The shell is the session leader of the terminal, as a user's shell is, and exists as long as this object. An
/// operation that takes longer than 60 seconds throws `std::runtime_error`.
///
///     test::Pty terminal({"/bin/cat"});
///     terminal.type("ports\n");
///     terminal.expect("ports");
class Pty {
public:
    /// How the program ended or stopped; values that do not apply are -1 (`status`) or 0.
    struct Change {
        int status;    ///< the exit status
        int signal;    ///< the signal that ended it
        int stoppedBy; ///< the signal that stopped it
    };

    /// Starts `command` in a terminal of `columns` by `rows`. `prepare` runs in its process first.
    explicit Pty(const std::vector<std::string>& command, int columns = 80, int rows = 25,
                 const std::function<void()>& prepare = {}) {
        const winsize size = sizeOf(columns, rows);
        int shellEnd[2];
        int slave = -1;
        if (openpty(&m_master, &slave, nullptr, nullptr, &size) != 0 ||
            socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, shellEnd) != 0)
            throw std::runtime_error("cannot open a pseudo-terminal");
        fcntl(m_master, F_SETFD, FD_CLOEXEC);
        m_control = shellEnd[0];
        tcgetattr(m_master, &m_initialMode);
        m_shell = fork();
        if (m_shell == 0) {
            close(m_master);
            close(m_control);
            beShell(slave, shellEnd[1], command, prepare);
        }
        close(slave);
        close(shellEnd[1]);
        if (m_shell < 0 || !receive(&m_program, sizeof m_program))
            throw std::runtime_error("cannot start a program in a terminal");
    }
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;
    ~Pty() {
        hangUp();
        close(m_control);
        kill(m_program, SIGKILL);
        kill(m_shell, SIGKILL);
        while (waitpid(m_shell, nullptr, 0) < 0 && errno == EINTR) {
        }
    }

    /// The process ID of the program, which is the leader of its own process group.
    pid_t program() const {
        return m_program;
    }

    /// Sends `keys` to the program.
    void type(const std::string& keys) {
        std::size_t sent = 0;
        while (sent < keys.size()) {
            // Read the echo while typing, so that the output of the terminal does not fill up and block the program.
            readOutput(0);
            pollfd request = {m_master, POLLOUT, 0};
            if (poll(&request, 1, boundMilliseconds) != 1)
                throw std::runtime_error("the program does not read its terminal");
            const std::size_t piece = keys.size() - sent < 512 ? keys.size() - sent : 512;
            const ssize_t count = write(m_master, keys.data() + sent, piece);
            if (count < 0 && errno != EINTR && errno != EAGAIN)
                throw std::runtime_error("cannot type");
            sent += count > 0 ? static_cast<std::size_t>(count) : 0;
        }
    }

    /// Waits for `text` and returns the output since the last wait, up to and including `text`.
    std::string expect(const std::string& text) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(boundMilliseconds);
        for (;;) {
            const std::size_t at = m_pending.find(text);
            if (at != std::string::npos) {
                const std::string seen = m_pending.substr(0, at + text.size());
                m_pending.erase(0, seen.size());
                return seen;
            }
            if (std::chrono::steady_clock::now() > end || !readOutput(1000))
                throw std::runtime_error("waiting for '" + text + "', the terminal shows '" + m_pending + "'");
        }
    }

    /// Waits for the program to end or to stop.
    Change waitForChange() {
        Change change = {};
        if (!receive(&change, sizeof change))
            throw std::runtime_error("the program does not end; the terminal shows '" + m_pending + "'");
        while (readOutput(0)) {
        }
        return change;
    }
    /// Brings a stopped program back to the foreground.
    void continueProgram() {
        if (write(m_control, "c", 1) != 1)
            throw std::runtime_error("the shell is gone");
    }

    /// The output since the last wait.
    const std::string& pending() const {
        return m_pending;
    }
    /// The number of bytes of output since the start.
    std::size_t shown() const {
        return m_shown;
    }

    /// Changes the window size, which sends the program SIGWINCH.
    void resize(int columns, int rows) {
        const winsize size = sizeOf(columns, rows);
        ioctl(m_master, TIOCSWINSZ, &size);
    }
    /// Closes the terminal, which sends the program SIGHUP.
    void hangUp() {
        if (m_master >= 0)
            close(m_master);
        m_master = -1;
    }

    /// Whether the terminal has the same mode as before the program started.
    bool isInFormerMode() const {
        const termios mode = currentMode();
        return mode.c_lflag == m_initialMode.c_lflag && mode.c_iflag == m_initialMode.c_iflag &&
               mode.c_oflag == m_initialMode.c_oflag && mode.c_cflag == m_initialMode.c_cflag &&
               std::memcmp(mode.c_cc, m_initialMode.c_cc, sizeof mode.c_cc) == 0;
    }
    /// Whether the terminal is in non-canonical mode without echo.
    bool isInKeyMode() const {
        return (currentMode().c_lflag & (ICANON | ECHO)) == 0;
    }
    /// Waits for the key mode if `keyMode`, otherwise for the initial mode. Returns false after the time limit.
    bool becomes(bool keyMode) const {
        for (int i = 0; i < boundMilliseconds / 5; ++i) {
            if (keyMode ? isInKeyMode() : isInFormerMode())
                return true;
            usleep(5000);
        }
        return false;
    }

private:
    static constexpr int boundMilliseconds = 60000;

    static winsize sizeOf(int columns, int rows) {
        winsize size = {};
        size.ws_col = static_cast<unsigned short>(columns);
        size.ws_row = static_cast<unsigned short>(rows);
        return size;
    }

    termios currentMode() const {
        termios mode = {};
        tcgetattr(m_master, &mode);
        return mode;
    }

    /// Reads the available output, after waiting for at most `milliseconds`. Returns false if there was none and
    /// `milliseconds` is 0, or at the end.
    bool readOutput(int milliseconds) {
        pollfd request = {m_master, POLLIN, 0};
        char piece[65536];
        if (m_master < 0)
            return false;
        // A pause is not a failure: the caller has the time limit.
        const int ready = poll(&request, 1, milliseconds);
        if (ready <= 0)
            return milliseconds > 0;
        const ssize_t count = read(m_master, piece, sizeof piece);
        if (count <= 0)
            return false;
        m_pending.append(piece, static_cast<std::size_t>(count));
        m_shown += static_cast<std::size_t>(count);
        return true;
    }

    /// Receives a message of the shell, and reads the terminal while waiting, so that the program does not block.
    bool receive(void* message, std::size_t size) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(boundMilliseconds);
        while (std::chrono::steady_clock::now() < end) {
            pollfd requests[] = {{m_control, POLLIN, 0}, {m_master, POLLIN, 0}};
            poll(requests, m_master >= 0 ? 2 : 1, 1000);
            if (requests[0].revents != 0)
                return recv(m_control, message, size, MSG_WAITALL) == static_cast<ssize_t>(size);
            if (requests[1].revents != 0 && !readOutput(0))
                usleep(1000);
        }
        return false;
    }

    [[noreturn]] static void beShell(int slave, int control, const std::vector<std::string>& command,
                                     const std::function<void()>& prepare) {
        for (const int sig : {SIGHUP, SIGINT, SIGQUIT, SIGTSTP, SIGTTOU})
            signal(sig, SIG_IGN);
        if (login_tty(slave) != 0)
            _exit(126);
        const pid_t program = fork();
        if (program == 0)
            beProgram(control, command, prepare);
        setpgid(program, program);
        send(control, &program, sizeof program, 0);
        for (;;) {
            int status = 0;
            tcsetpgrp(STDIN_FILENO, program);
            if (waitpid(program, &status, WUNTRACED) != program)
                _exit(126);
            tcsetpgrp(STDIN_FILENO, getpid());
            const Change change = {WIFEXITED(status) ? WEXITSTATUS(status) : -1,
                                   WIFSIGNALED(status) ? WTERMSIG(status) : 0,
                                   WIFSTOPPED(status) ? WSTOPSIG(status) : 0};
            send(control, &change, sizeof change, 0);
            char order = 0;
            if (read(control, &order, 1) != 1)
                _exit(0);
            tcsetpgrp(STDIN_FILENO, program);
            kill(-program, SIGCONT);
        }
    }

    [[noreturn]] static void beProgram(int control, const std::vector<std::string>& command,
                                       const std::function<void()>& prepare) {
        const rlimit noCore = {0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        close(control);
        setpgid(0, 0);
        tcsetpgrp(STDIN_FILENO, getpid());
        for (const int sig : {SIGHUP, SIGINT, SIGQUIT, SIGTSTP, SIGTTOU})
            signal(sig, SIG_DFL);
        if (prepare)
            prepare();
        std::vector<char*> words;
        for (const std::string& word : command)
            words.push_back(const_cast<char*>(word.c_str()));
        words.push_back(nullptr);
        execvp(words[0], words.data());
        _exit(127);
    }

    int m_master = -1;
    int m_control = -1;
    pid_t m_shell = -1;
    pid_t m_program = -1;
    termios m_initialMode = {};
    std::string m_pending;
    std::size_t m_shown = 0;
};

} // namespace test
