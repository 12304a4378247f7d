#pragma once

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test {

/// How a child process ended, and its output.
struct ChildResult {
    bool exited;   ///< whether it exited, with `status`
    int status;    ///< the exit status; -1 if a signal ended it
    int signal;    ///< the signal that ended it; 0 if it exited
    bool timedOut; ///< whether it was killed after the time limit
    std::string out;
    std::string err;
};

namespace detail {

inline std::string contentOf(std::FILE* file) {
    std::string content;
    char piece[4096];
    std::rewind(file);
    for (std::size_t count; (count = std::fread(piece, 1, sizeof piece, file)) > 0;)
        content.append(piece, count);
    std::fclose(file);
    return content;
}

template<class Body>
[[noreturn]] void runChild(Body& body, std::FILE* out, std::FILE* err) {
    const rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    dup2(fileno(out), STDOUT_FILENO);
    dup2(fileno(err), STDERR_FILENO);
    int status = 0;
    try {
        if constexpr (std::is_void_v<std::invoke_result_t<Body&>>)
            body();
        else
            status = static_cast<int>(body());
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "exception: %s\n", failure.what());
        status = 125;
    }
    std::fflush(nullptr);
    _exit(status);
}

} // namespace detail

/// Runs `body` in a forked child. The exit status is the result of `body`, or 0 if it returns void, or 125 after an
/// exception. The child does not run the exit handlers of this process, unless `body` calls `exit`. A child that takes
/// longer than `bound` is killed.
///
///     const test::ChildResult child = test::runInChild([] { std::raise(SIGTERM); });
///     EXPECT_EQ(child.signal, SIGTERM);
template<class Body>
ChildResult runInChild(Body&& body, std::chrono::seconds bound = std::chrono::seconds(60)) {
    std::FILE* out = std::tmpfile();
    std::FILE* err = std::tmpfile();
    if (!out || !err)
        throw std::runtime_error("cannot create files for a child's output");
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("cannot fork");
    if (child == 0)
        detail::runChild(body, out, err);

    const auto end = std::chrono::steady_clock::now() + bound;
    ChildResult result = {false, -1, 0, false, "", ""};
    int status = 0;
    for (pid_t ended = 0; (ended = waitpid(child, &status, WNOHANG)) != child;) {
        if (ended < 0 && errno != EINTR)
            throw std::runtime_error("cannot wait for a child");
        if (!result.timedOut && std::chrono::steady_clock::now() >= end) {
            kill(child, SIGKILL);
            result.timedOut = true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    result.exited = WIFEXITED(status);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    result.out = detail::contentOf(out);
    result.err = detail::contentOf(err);
    return result;
}

} // namespace test
