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
/// A program constructs at most one container, early; it lives until the process ends. It does not own `m_pMemory`. The
/// static operations may be called from any thread once the container is constructed.
///
///     framework::Container::spawn("cp passwd.new passwd", nullptr, nullptr);
class VXFW_EXPORT Container {
public:
    /// Registers this object as the container of the process (`m_pMe`).
    Container();
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;
    /// `getContainer` returns null from then on, unless another container was constructed later.
    virtual ~Container();

    /// Returns the container, or null if none was constructed.
    static Container* getContainer() {
        return m_pMe;
    }
    /// Returns the memory object of the process, or null if there is none: streams then allocate with `malloc`.
    static Memory* getMemory() {
        return m_pMemory;
    }

    /// Runs a command without a shell and waits for it. Returns true if it ran and exited with status 0. Not
    /// async-signal-safe.
    /// - `command`: words separated by white space; double quotes group words. The program is searched for in PATH.
    /// - `in`: its bytes, from the read position on, are written to the program's standard input. If it is null, the
    ///   program reads /dev/null.
    /// - `out`: receives the program's standard output; text that it refuses is discarded. If it is null, the program
    ///   uses this process's standard output.
    ///
    /// If this process's standard output or error is closed or marked close-on-exec, the program gets /dev/null
    /// instead. If `in` or `out` throws, the program is killed and the exception propagates to the caller.
    ///
    /// - A background process that the program leaves is waited for only while it keeps a pipe open: the call returns
    ///   once every process has closed the standard output pipe, and all of `in` is written or the standard input pipe
    ///   has no reader. To return when the program ends, redirect both streams of background processes.
    /// - If SIGCHLD is ignored (or SA_NOCLDWAIT is set), or another thread waits for any child, the command runs to its
    ///   end but its status is lost: the result is false.
    /// - If `poll` fails, both pipes are closed; if a read or write fails, its pipe is closed. The program then reads
    ///   end of file, and the result is false. Input that the program does not read is not a failure.
    /// - Needs about 34 KB of stack.
    static bool spawn(const char* command, utility::GetStream* in, utility::PutStream* out);

    /// Ends the process by the default action of `sig`, or of SIGABRT if that action does not end the process. May
    /// write a core file. Never returns.
    [[noreturn]] static void dumpApplication(int sig);

    /// Calls the container's `shutdown`. Without a container, calls `exit` with 0 if `clean` is true, otherwise with 1.
    static void shutdownApplication(bool clean);

    /// The memory object of the process, which the program sets and owns; null if there is none.
    static Memory* m_pMemory;
    /// The container that `getContainer` returns, or null. Only the constructor and the destructor set it.
    static Container* m_pMe;

protected:
    /// Ends the process; a program may override it. This one calls `exit` with 0 if `clean` is true, otherwise with 1.
    virtual void shutdown(bool clean);
};

} // namespace framework
