#pragma once

#include "fw_Export.h"

namespace utility {
class GetStream;
class PutStream;
} // namespace utility

namespace framework {

class Memory;

/// The process: its memory object, its shutdown, and the commands that it runs.
///
/// A program constructs at most one container, early, which lives until the process ends. `m_pMemory` is not owned. The
/// static operations may be called from any thread once the container is constructed.
///
///     framework::Container::spawn("cp passwd.new passwd", nullptr, nullptr);
class VXFW_EXPORT Container {
public:
    /// Registers this object as the container of the process (`m_pMe`).
    Container();
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;
    virtual ~Container();

    /// Returns the container, or null if none was constructed.
    static Container* getContainer() {
        return m_pMe;
    }
    /// Returns the memory object of the process, or null, in which case storage comes from `malloc`.
    static Memory* getMemory() {
        return m_pMemory;
    }

    /// Runs a command without a shell and waits for it. Words are separated by white space; double quotes group. The
    /// program is looked up on the PATH. `in` feeds its standard input, `out` takes its standard output; null means
    /// neither: it reads /dev/null and keeps this process's standard output. Where this process has no standard output
    /// or error, or one that is closed on exec, the command gets /dev/null instead. Returns whether the command ran and
    /// ended with status 0. `in` is read from where it stands, what `out` refuses is dropped, and what either throws
    /// passes through after the program was killed. Not for signal handlers.
    ///
    /// - A process that the program leaves running in the background is not waited for, unless it keeps a pipe open:
    ///   `out` is read until the last process closes its standard output, and `in` is fed until it ends or nobody is
    ///   left to read. Redirect both in the command to have the call return with the program.
    /// - Where SIGCHLD is ignored (or SA_NOCLDWAIT is set), and where another thread reaps any child, the command runs
    ///   to its end but its status is lost: the result is false.
    /// - A failing `poll` closes both pipes, and a failing read or write its own, so that the program finds the end of
    ///   its input: the result is false. A program that does not read its input to the end is not a failure.
    static bool spawn(const char* command, utility::GetStream* in, utility::PutStream* out);

    /// Ends the process by the default action of `sig`, which may write a core file. Never returns.
    [[noreturn]] static void dumpApplication(int sig);

    /// Ends the process through the container's `shutdown`, or, without a container, by `exit` with 0 if `clean` is
    /// true, else with 1.
    static void shutdownApplication(bool clean);

    static Memory* m_pMemory;
    static Container* m_pMe;

protected:
    /// Ends the process. A program may override it. The default calls `exit` with 0 if `clean` is true, else with 1.
    virtual void shutdown(bool clean);
};

} // namespace framework
