#pragma once

#include "ut_Export.h"

#include "ut_Buffer.h"
#include "ut_InputStream.h"
#include "ut_OutputStream.h"

namespace utility {

/// A ring buffer that overwrites its oldest bytes when it is full, for example to keep the end of a trace.
///
/// The stream owns its storage. One thread at a time. Only the allocation of the storage can fail, with code 1238 of
/// "ut_Buffer"; writing and reading never fail. After the ring has wrapped, at most its capacity minus one byte can be
/// read.
///
///     utility::CircularStream history(8);
///     history.SendOutputStream("ABCDEFGHIJ", 10);
///     history.StartInputStream();
///     char text[8];
///     history.ReceiveInputStream(text, sizeof text);   // 7: "DEFGHIJ"
class VXUT_EXPORT CircularStream : public framework::OutputStream,
                                   public framework::InputStream,
                                   public virtual Buffer {
public:
    /// Creates a ring of `capacity` bytes. With capacity 0, everything written is discarded. Throws code 1238 if the
    /// allocation fails or `capacity` is negative.
    explicit CircularStream(int capacity);
    ~CircularStream() override;

    /// Returns the number of bytes from the read position to the write position, around the end of the storage if
    /// needed.
    int ReadAvailable() const override;
    /// Always returns the capacity: the ring is never full.
    int WriteRemaining() const override;
    /// Moves the write position by `n`, around the end of the storage if needed. If it overtakes the read position, the
    /// read position moves to the oldest byte left. Does nothing if `n` is below 1.
    void WriteAdvance(int n) override;
    /// Moves the read position by `n`, at most to the write position. Does nothing if `n` is below 1.
    void ReadAdvance(int n) override;

    /// Discards the unread bytes and continues writing at the start of the storage; always returns true. A ring that
    /// has ever wrapped still counts as wrapped, and callers rely on that: `StartInputStream` then makes earlier bytes
    /// that were not overwritten readable again.
    bool StartOutputStream() override;
    /// Does nothing.
    void EndOutputStream() override;
    /// Writes `size` bytes of `data`, of which the ring keeps the last; does nothing if `data` is null. Always returns
    /// true.
    bool SendOutputStream(const char* data, unsigned int size) override;
    /// Sends the rest of `in`, as `OutputStream::TransferFromInputStream` does. If `in` is this ring, does nothing and
    /// returns true.
    bool TransferFromInputStream(framework::InputStream& in) override;
    /// Always returns true.
    bool isOutputStreamOpen() override;
    /// Always returns false.
    bool isOutputStreamInError() override;
    /// Always returns false.
    bool isOutputStreamAtEnd() override;

    /// Sets the read position to the oldest byte in the ring; always returns true.
    bool StartInputStream() override;
    /// Does nothing.
    void EndInputStream() override;
    /// Copies at most `size` bytes to `buffer` and returns the count, 0 if nothing is readable. If `buffer` is null,
    /// returns 0 and consumes nothing.
    int ReceiveInputStream(char* buffer, unsigned int size) override;
    /// Always returns true.
    bool isInputStreamOpen() override;
    /// Always returns false.
    bool isInputStreamInError() override;
    /// Returns whether nothing is readable.
    bool isInputStreamAtEnd() override;

private:
    // The bytes from the read position to the write position.
    int unread() const {
        const int distance = WritePosition() - ReadPosition();
        return distance < 0 ? Size() + distance : distance;
    }

    bool m_wrapped;
};

} // namespace utility
