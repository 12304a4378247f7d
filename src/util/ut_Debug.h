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
/// late, and if two threads change neighboring switches at once, a change may be lost. Client code installs the signal
/// handlers. They log and may allocate, which is accepted because the process is about to end or is being examined.
/// Nothing is thrown, except by the streams that are passed in and by `hexDumpFormatted`.
///
/// The number of a switch is the string token of its name. Switches 0 to 8191 exist; a name with a greater token does
/// not have a switch.
///
///     utility::Debug::setDebugOn("Waiter");
///     utility::Debug::isDebugOn(2301);   // true
class VXUT_EXPORT Debug {
public:
    /// Returns true if switch `n` is on; false if `n` is above 8191. Fast enough for inner loops.
    static bool isDebugOn(unsigned int n) {
        return n < m_bits.size() && m_bits[n];
    }
    /// Returns true if the switch named `name` is on; false for null.
    static bool isDebugOn(const char* name);
    /// Turns switch `n` on; does nothing if `n` is above 8191.
    static void setDebugOn(unsigned int n);
    /// Turns switch `n` off; does nothing if `n` is above 8191.
    static void setDebugOff(unsigned int n);
    /// Turns the switch named `name` on; does nothing if `name` is null.
    static void setDebugOn(const char* name);
    /// Turns the switch named `name` ON, like `setDebugOn(name)`: callers rely on it. To turn a switch off, use
    /// `setDebugValue(name, false)` or the number.
    static void setDebugOff(const char* name);
    /// Calls `setDebugOn` for each name in order; does nothing if `names` is null.
    static void setDebugOn(const StringArray* names);
    /// Calls `setDebugOff` for each name in order, which turns the switches ON; does nothing if `names` is null.
    static void setDebugOff(const StringArray* names);
    /// Turns the switch named `name` on or off; does nothing if `name` is null.
    static void setDebugValue(const char* name, bool on);
    /// Writes the name of every switch that is on, in ascending order of number, each followed by a blank. Does nothing
    /// if `out` is null.
    static void debugState(PutStream* out);

    /// Returns the hexadecimal digit of `v`: '0' to '9' and 'a' to 'f' for 0 to 15, '0' for any other value.
    static char hexChar(char v);
    /// Returns the value of the hexadecimal digit `c`, in either case: 0 to 15, or 255 (as a `char`) if `c` is not a
    /// digit.
    static char hexFromChar(char c);
    /// Writes the `n` bytes of `s`, with C escapes for quotes, backslashes and bytes that are not printable ASCII. Does
    /// nothing if `s` or `out` is null.
    static void readableString(const char* s, BufferStream* out, int n);
    /// Logs `size` bytes as one message (level 3). Each 64 bytes give a line of hexadecimal digits and below it a line
    /// of the printable characters. A dump of more than 1 MiB of text continues in further messages. A null `data` or a
    /// negative `size` counts as 0 bytes.
    static void hexDump(const char* data, int size);
    /// Logs `size` bytes (level 3), one message for each 1,024; logs nothing if `data` is null.
    /// - `bufferKiB`: the capacity for the text of one message in KiB. Throws code 1239 if it is too small and code
    ///   1238 if it cannot be allocated.
    /// - `bytesPerLine`: the number of bytes in each line; 0 counts as 16.
    static void hexDumpFormatted(const char* data, unsigned int size, unsigned int bufferKiB,
                                 unsigned int bytesPerLine);
    /// Prints `size` bytes to standard output in lines of 16, the last bytes first. A null `data` or a negative `size`
    /// counts as 0 bytes.
    static void reverseHexDump(const char* data, int size);

    /// Signal handler: logs the signal and the back trace, enables core dumps, and ends the process with a core dump.
    static void SignalCrash(int sig);
    /// Signal handler: logs the signal and the back trace, and calls `Container::shutdownApplication(true)`.
    static void SignalExit(int sig);
    /// Signal handler that ignores the signal. With debug switch 350 on, it logs the signal.
    static void SignalNull(int sig);
    /// Signal handler: creates the context directory (see `SignalContext`) and sends signal 12 (SIGUSR2) to every
    /// thread that has a `framework::ThreadInfo` record.
    static void SignalThreads(int sig);
    /// Signal handler for signal 12: writes the thread's back trace to its own file in the context directory, which is
    /// "$VX_MEM/<process>Context". If something other than a regular file with one link has that name, leaves it
    /// unchanged and logs one line (level 0). Does not report a file that cannot be opened or written.
    static void SignalContext(int sig);
    /// Returns the name of `sig`, or "unknown" if it is not a known signal; never null.
    static const char* signalName(int sig);

    /// Logs the calling thread's back trace (level 0).
    static void ErrorContext();
    /// Writes the calling thread's back trace to `file`. `thread` is ignored.
    static void ThreadErrorContext(framework::ThreadInfo* thread, FileOutputStream& file);
    /// Writes the calling thread's stack frames with object file and demangled function name: the innermost `depth`
    /// frames, at most 40, without the first `skip` of them. Does nothing if `out` is null. `flag` is ignored.
    static void BackTrace(BufferStream* out, unsigned int depth, unsigned int skip, bool flag);
    /// Writes "[object] symbol+distance" of `address` to `buffer`, with the distance in bytes, truncated to `size`
    /// bytes including the NUL; an empty text if the address is unknown. Does nothing if `buffer` is null or `size` is
    /// 0.
    static void SymbolPath(void* address, char* buffer, unsigned int size);
    /// Writes the symbol name of `address` to `buffer`, truncated to `size` bytes including the NUL; an empty text if
    /// it is unknown. Does nothing if `buffer` is null or `size` is 0.
    static void SymbolName(void* address, char* buffer, unsigned int size);
    /// Removes the size limit of core files if the kernel's core pattern is a path; logs that it does so, and a failure
    /// (level 0).
    static void MaybeEnableCoreDump();

private:
    /// Runs at load time: registers a fork handler that renews the lock in each child.
    __attribute__((constructor, visibility("hidden"))) static void watchForks();

    static std::bitset<8192> m_bits;
    static Locker m_locker;
};

} // namespace utility
