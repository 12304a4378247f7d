#pragma once

#include "ut_Export.h"

#include "ut_OutputStream.h"

namespace utility {

/// Writes to standard output or any other descriptor: a file, a pipe, a socket or a terminal.
///
/// The caller owns the descriptor, which must stay open while the stream is used. Unlike `FileOutputStream`, the stream
/// never seeks and accepts all bytes of a send or is in error afterwards:
///
/// - It continues after a short write and after a signal (EINTR).
/// - It waits without a time limit if a non-blocking descriptor is not ready (EAGAIN).
/// - Any other failed write stores its `errno` and sets the error state, which is never cleared. A write that accepts 0
///   bytes counts as EIO. In the error state all sends are refused.
/// - It does not change the disposition of SIGPIPE: a write to a pipe or socket without a reader ends the process,
///   unless the signal is ignored, blocked or handled; the write then fails with EPIPE.
///
/// One thread at a time. Nothing is thrown, logged or allocated.
///
///     utility::DescriptorOutputStream out(STDOUT_FILENO);
///     if (!out.SendOutputStream("ready\n", 6)) report(out.errorNumber());
class VXUT_EXPORT DescriptorOutputStream : public framework::OutputStream {
public:
    /// Uses the descriptor `fd`. If it is not open, the first send fails with EBADF.
    explicit DescriptorOutputStream(int fd);
    /// Does not close the descriptor.
    ~DescriptorOutputStream() override;

    /// Returns false in the error state; otherwise does nothing.
    bool StartOutputStream() override;
    /// Does nothing: each send is complete when it returns.
    void EndOutputStream() override;
    /// Writes `size` bytes of `data`. Returns false in the error state, and if `data` is null and `size` is not 0.
    bool SendOutputStream(const char* data, unsigned int size) override;
    /// Returns true: whether the descriptor is open is known only to a write.
    bool isOutputStreamOpen() override;
    /// Returns whether a write has failed since construction.
    bool isOutputStreamInError() override;
    /// Returns false.
    bool isOutputStreamAtEnd() override;

    /// Returns the `errno` of the failed write; 0 if none has failed.
    int errorNumber() const {
        return m_errorNumber;
    }
    /// Returns whether the next byte starts a line: the last byte sent was a newline or carriage return, or there was
    /// none.
    bool isAtLineStart() const {
        return m_lastByte == '\n' || m_lastByte == '\r';
    }
    /// Returns the size in bytes of the last send; 0 before the first.
    unsigned int lastSize() const {
        return m_lastSize;
    }

private:
    int m_fd;
    int m_errorNumber;
    unsigned int m_lastSize;
    char m_lastByte;
};

} // namespace utility
