#pragma once

#include "ut_Export.h"

namespace framework {

class InputStream;

/// A sink of bytes.
///
/// Callers start an output, send to it, and end it; each sink defines what starting and ending mean. One thread at a
/// time. The operations of this class throw nothing; those of a sink may throw.
///
///     if (!out.TransferFromInputStream(in)) report();
class VXUT_EXPORT OutputStream {
public:
    /// Does not end the output; a sink defines what it releases.
    virtual ~OutputStream();

    /// Starts or restarts the output. Returns false on failure.
    virtual bool StartOutputStream() = 0;
    /// Ends the output: the caller sends nothing further.
    virtual void EndOutputStream() = 0;
    /// Sends `size` bytes of `data`. Returns whether all were accepted. `data` need not stay valid after the call.
    virtual bool SendOutputStream(const char* data, unsigned int size) = 0;
    /// Passes on the bytes that the sink has buffered; does nothing in a sink without a buffer.
    virtual void FlushOutputStream();
    /// Sends the rest of `in`, up to 16,384 bytes at a time. Starts and ends neither stream. Returns true if the sink
    /// accepted every byte and `in` is then at its end without an error, or a receive returned 0 bytes.
    /// Needs about 17 KB of stack.
    virtual bool TransferFromInputStream(InputStream& in);
    /// Returns whether the sink is open.
    virtual bool isOutputStreamOpen() = 0;
    /// Returns whether the sink is in error.
    virtual bool isOutputStreamInError() = 0;
    /// Returns whether the sink is at its end.
    virtual bool isOutputStreamAtEnd() = 0;
    /// Returns whether more bytes can be sent: the sink is open, not in error and not at its end.
    virtual bool isOutputStreamGood();
};

} // namespace framework
