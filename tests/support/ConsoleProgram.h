#pragma once

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <sys/prctl.h>
#include <unistd.h>

#include "ChildProcess.h"
#include "ProtectedMachine.h"

namespace test {

/// The command line that runs the console of this build with these arguments, in an emulator if the build needs one.
inline std::vector<std::string> consoleCommand(const std::vector<std::string>& arguments) {
    std::istringstream emulator(VXUT_TEST_EMULATOR);
    std::vector<std::string> words;
    for (std::string word; emulator >> word;)
        words.push_back(word);
    words.emplace_back(VXCONSOLE);
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

/// Protects the machine's files, as the console edits password files.
inline const testing::Environment* const consoleMachine = protectMachine();

/// Prepares a process to run the console: permits signal handlers to allocate, and removes the user's settings from the
/// environment.
inline void setConsoleEnvironment() {
    setenv("TSAN_OPTIONS", "report_signal_unsafe=0:halt_on_error=1", 0);
    for (const char* name : {"VX_ROOT", "VX_MEM", "TZ", "HOME", "XDG_STATE_HOME", "NO_COLOR"})
        unsetenv(name);
    setenv("TERM", "xterm", 1);
}

/// Makes file permissions apply to this process and to the programs it runs, even if it is root.
inline void obeyPermissions() {
    const unsigned long overrideAccess = 1;
    const unsigned long overrideReading = 2;
    if (geteuid() != 0)
        return;
    if (prctl(PR_CAPBSET_DROP, overrideAccess, 0, 0, 0) == 0 && prctl(PR_CAPBSET_DROP, overrideReading, 0, 0, 0) == 0)
        return;
    const unsigned int nobody = 65534;
    if (setgid(nobody) != 0 || setuid(nobody) != 0)
        _exit(126);
}

/// Runs the console with these arguments and with `input` on a pipe as its standard input. `prepare` runs in the child
/// process first.
///
///     const test::ChildResult child = test::runConsole({"-c", "help"});
///     EXPECT_EQ(child.status, 0);
inline ChildResult runConsole(const std::vector<std::string>& arguments, const std::string& input = "",
                              const std::function<void()>& prepare = {}) {
    const std::vector<std::string> command = consoleCommand(arguments);
    return runInChild([&] {
        int ends[2];
        if (pipe(ends) != 0)
            _exit(126);
        if (fork() == 0) {
            close(ends[0]);
            for (std::size_t sent = 0; sent < input.size();) {
                const ssize_t count = write(ends[1], input.data() + sent, input.size() - sent);
                if (count < 0 && errno != EINTR)
                    break;
                sent += count > 0 ? static_cast<std::size_t>(count) : 0;
            }
            _exit(0);
        }
        dup2(ends[0], STDIN_FILENO);
        close(ends[0]);
        close(ends[1]);
        setConsoleEnvironment();
        if (prepare)
            prepare();
        std::vector<char*> words;
        for (const std::string& word : command)
            words.push_back(const_cast<char*>(word.c_str()));
        words.push_back(nullptr);
        execvp(words[0], words.data());
        _exit(127);
    });
}

/// Runs one console command.
inline ChildResult runCommand(const std::string& command, const std::function<void()>& prepare = {}) {
    return runConsole({"-c", command}, "", prepare);
}

} // namespace test
