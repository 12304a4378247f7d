#pragma once

#include "ut_Export.h"

namespace framework {

/// A source of bytes.
///
/// Callers start an input, receive until it is at its end, and end it; each source defines what starting and ending
/// mean. One thread at a time. The operations of this class throw nothing; those of a source may throw.
///
///     char block[512];
///     int count = in.ReceiveInputStream(block, sizeof block);
class VXUT_EXPORT InputStream {
public:
    /// The mode of delivery. No source of this library supports modes.
    enum InputMode { INPUT_DEFAULT = 0 };

    /// Does not end the input; a source defines what it releases.
    virtual ~InputStream();

    /// Starts or restarts the input at its first byte. Returns false on failure.
    virtual bool StartInputStream() = 0;
    /// Ends the input: the caller reads no further.
    virtual void EndInputStream() = 0;
    /// Copies at most `size` bytes to `buffer`. Returns the count, or a negative number on failure.
    virtual int ReceiveInputStream(char* buffer, unsigned int size) = 0;
    /// Returns whether the source is open.
    virtual bool isInputStreamOpen() = 0;
    /// Returns whether the source is in error.
    virtual bool isInputStreamInError() = 0;
    /// Returns whether the source is at its end.
    virtual bool isInputStreamAtEnd() = 0;
    /// Returns whether more bytes can be received: the source is open, not in error and not at its end.
    virtual bool isInputStreamGood();
    /// Returns the size of the whole input in bytes, or -1 if it is unknown.
    virtual int GetInputStreamSize();
    /// Sets the mode of delivery; does nothing in a source without modes.
    virtual void setInputMode(InputMode mode);
};

} // namespace framework
