#pragma once

#include "ut_Export.h"

#include <bitset>
#include <cstddef>

#include "fw_StringToken.h"
#include "ut_Switches.h"

namespace framework {
class ThreadInfo;
}

namespace utility {

class BufferStream;
class FileOutputStream;
class Locker;
class PutStream;
class StringArray;

/// Debug switches, hex dumps, and crash reports.
///
/// All state is process-wide. The switches are not locked: any thread may query them at any time and may see a change
/// late, and two threads that change neighboring switches at once may lose a change. Client code installs the signal
/// handlers. They log and may allocate, which is accepted because the process is about to end or is being examined.
/// Nothing is thrown, except by the streams that are passed in and by `hexDumpFormatted`.
///
/// A switch has the number of the string token of its name; 0 to 8191 can be set.
///
///     utility::Debug::setDebugOn("Waiter");
///     utility::Debug::isDebugOn(2301);   // true
class VXUT_EXPORT Debug {
public:
    /// Returns true if switch `n` is on; false for a number above 8191. Cheap enough for inner loops.
    static bool isDebugOn(unsigned int n) {
        return n < m_bits.size() && m_bits[n];
    }
    /// Returns true if the switch named `name` is on; false for null.
    static bool isDebugOn(const char* name);
    /// Turns switch `n` on or off; a number above 8191 is ignored.
    static void setDebugOn(unsigned int n);
    static void setDebugOff(unsigned int n);
    /// Turns the named switch on; null is ignored.
    static void setDebugOn(const char* name);
    /// Turns the named switch ON, like `setDebugOn`: clients switch a named switch off with `setDebugValue(name,
    /// false)` or by number, and rely on this form not to.
    static void setDebugOff(const char* name);
    /// Apply the operation by name to each element in order; a null array is ignored.
    static void setDebugOn(const StringArray* names);
    static void setDebugOff(const StringArray* names);
    /// Turns the named switch on or off; null is ignored.
    static void setDebugValue(const char* name, bool on);
    /// Writes the name of every switch that is on, in ascending order of number, each followed by a blank. A null
    /// stream is ignored.
    static void debugState(PutStream* out);

    /// The digit of `v`: '0' to '9' and 'a' to 'f' for 0 to 15, '0' for anything else.
    static char hexChar(char v);
    /// The value of the digit `c`, either case: 0 to 15, and 255 for anything else.
    static char hexFromChar(char c);
    /// Writes the `n` bytes of `s` with C escapes. Does nothing if `s` or `out` is null.
    static void readableString(const char* s, BufferStream* out, int n);
    /// Logs `size` bytes in lines of 64, hexadecimal above readable, as one message (level 3). A dump of more than 1
    /// MiB of text continues in further messages. Null or a negative size counts as 0 bytes.
    static void hexDump(const char* data, int size);
    /// Logs `size` bytes (level 3), one message for each 1,024. `bufferKiB` is the capacity for one message in KiB:
    /// throws code 1239 if it is too small and 1238 if it cannot be allocated. `bytesPerLine` of 0 counts as 16; null
    /// counts as 0 bytes.
    static void hexDumpFormatted(const char* data, unsigned int size, unsigned int bufferKiB,
                                 unsigned int bytesPerLine);
    /// Prints `size` bytes to standard output in lines of 16, the last bytes first.
    static void reverseHexDump(const char* data, int size);

    /// Signal handler: logs the signal and the back trace, enables core dumps, and ends the process with a core dump.
    static void SignalCrash(int sig);
    /// Signal handler: logs the signal and the back trace, and shuts the application down cleanly.
    static void SignalExit(int sig);
    /// Signal handler that ignores the signal. With debug switch 350 on, it logs the signal.
    static void SignalNull(int sig);
    /// Signal handler: makes the context directory and sends signal 12 (SIGUSR2) to every thread that has a record.
    static void SignalThreads(int sig);
    /// Signal handler for signal 12: writes the thread's back trace to its own file in the context directory, which is
    /// "$VX_MEM/<process>Context". If something other than a regular file with one link has the file's name, does not
    /// touch it and logs one line (level 0). A file that cannot be opened or written is not reported.
    static void SignalContext(int sig);
    /// Returns the name of a signal, "unknown" for others. Never null.
    static const char* signalName(int sig);

    /// Logs the calling thread's back trace (level 0).
    static void ErrorContext();
    /// Writes the calling thread's back trace to `file`.
    static void ThreadErrorContext(framework::ThreadInfo* thread, FileOutputStream& file);
    /// Writes the return addresses of the calling thread, at most `depth` and never more than 40, without the first
    /// `skip`, with object file and demangled name. Null does nothing. The last argument has no effect.
    static void BackTrace(BufferStream* out, unsigned int depth, unsigned int skip, bool flag);
    /// Writes "[object] symbol+distance" of `address` to `buffer`, truncated to `size` bytes; the empty text if the
    /// address is unknown.
    static void SymbolPath(void* address, char* buffer, unsigned int size);
    /// Writes the symbol name of `address` to `buffer`, truncated to `size` bytes; the empty text if it is unknown.
    static void SymbolName(void* address, char* buffer, unsigned int size);
    /// Raises the limit on core files if the kernel writes them to a path.
    static void MaybeEnableCoreDump();

private:
    /// Runs at load time: registers a fork handler that renews the lock in each child.
    __attribute__((constructor, visibility("hidden"))) static void watchForks();

    static std::bitset<8192> m_bits;
    static Locker m_locker;
};

} // namespace utility
