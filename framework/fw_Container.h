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

    /// Runs a command without a shell and waits for it. Returns whether it ran and ended with status 0. Not
    /// async-signal-safe.
    /// - `command`: words separated by white space; double quotes group. The program is looked up on the PATH.
    /// - `in`: written to the program's standard input, from its read position; null: the program reads /dev/null
    /// - `out`: receives the program's standard output, and text that it refuses is dropped; null: the program uses
    /// this
    ///   process's standard output
    ///
    /// If this process's standard output or error is closed, or closed on exec, the program gets /dev/null instead. If
    /// `in` or `out` throws, the program is killed and the exception passes to the caller.
    ///
    /// - A process that the program leaves in the background is not waited for, unless it keeps a pipe open: the call
    ///   returns after the last process has closed its standard output, and after `in` ends or nobody can read it.
    ///   Redirect both in the command to return when the program ends.
    /// - If SIGCHLD is ignored (or SA_NOCLDWAIT is set), or another thread reaps any child, the command runs to its end
    ///   but its status is lost: the result is false.
    /// - If `poll` fails, both pipes are closed; if a read or write fails, its pipe is closed. The program then reads
    ///   the end of its input, and the result is false. A program that does not read all of its input has not failed.
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
