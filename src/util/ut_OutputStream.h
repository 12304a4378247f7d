#pragma once

#include "ut_Export.h"

namespace framework {

class InputStream;

/// A sink of bytes.
///
/// An output is started, sent to, and ended; what starting and ending mean is up to each sink. One thread at a time. No
/// operation here throws, but a sink's own may.
///
///     if (!out.TransferFromInputStream(in)) report();
class VXUT_EXPORT OutputStream {
public:
    virtual ~OutputStream();

    /// Begins, or begins anew; false when that cannot be done.
    virtual bool StartOutputStream() = 0;
    /// Says that no more is coming.
    virtual void EndOutputStream() = 0;
    /// Takes `size` bytes from `data`; true when all were taken. The bytes are the caller's and are not kept.
    virtual bool SendOutputStream(const char* data, unsigned int size) = 0;
    /// Hands on what is held back; does nothing for a sink that holds nothing.
    virtual void FlushOutputStream();
    /// Sends what is left of `in`, up to 16,384 bytes at a time, without starting or ending either. True when the input
    /// gave 0 bytes, or ended without an error, and everything was taken.
    virtual bool TransferFromInputStream(InputStream& in);
    virtual bool isOutputStreamOpen() = 0;
    virtual bool isOutputStreamInError() = 0;
    virtual bool isOutputStreamAtEnd() = 0;
    /// Whether more may be sent: open, not in error and not at the end.
    virtual bool isOutputStreamGood();
};

} // namespace framework
