#pragma once

#include "ut_Export.h"

namespace framework {

/// A source of bytes.
///
/// An input is started, received from until it is at its end, and ended; what starting and ending mean is up to each
/// source. One thread at a time. No operation here throws, but a source's own may.
///
///     char block[512];
///     int count = in.ReceiveInputStream(block, sizeof block);
class VXUT_EXPORT InputStream {
public:
    /// How a source is asked to deliver. No source of this library tells modes apart.
    enum InputMode { INPUT_DEFAULT = 0 };

    virtual ~InputStream();

    /// Begins, or begins anew, at the first byte; false when that cannot be done.
    virtual bool StartInputStream() = 0;
    /// Says that no more is wanted.
    virtual void EndInputStream() = 0;
    /// Copies at most `size` bytes to `buffer` and returns the count, negative on an error.
    virtual int ReceiveInputStream(char* buffer, unsigned int size) = 0;
    virtual bool isInputStreamOpen() = 0;
    virtual bool isInputStreamInError() = 0;
    virtual bool isInputStreamAtEnd() = 0;
    /// Whether more may be received: open, not in error and not at the end.
    virtual bool isInputStreamGood();
    /// How many bytes the whole input has, or -1 when that is unknown.
    virtual int GetInputStreamSize();
    /// Does nothing, unless a source knows modes.
    virtual void setInputMode(InputMode mode);
};

} // namespace framework
