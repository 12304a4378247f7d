#pragma once

#include "ut_Export.h"

#include "ut_PutStream.h"

namespace utility {

/// Formats output of any length through a buffer of fixed size, which is sent to a target stream whenever it fills.
///
/// The stream does not own the target, which must outlive it. It owns its buffer or uses an array of the caller. The
/// destructor does not flush: call `FlushOutputStream` or `EndOutputStream` first. One thread at a time.
///
/// - Output to a target that is closed or in error is discarded, so it never blocks the writer.
/// - Bytes that a usable target refuses stay in the buffer.
/// - Bytes that neither the target accepts nor the buffer can hold cause code 1239 to be thrown; with the no-throw flag
///   set, they are logged and discarded.
///
/// A target that returns false does not report how many bytes it accepted. All bytes of the send stay in the buffer and
/// are sent again, so the reader receives the accepted ones twice, for example after a short write of
/// `FileOutputStream`. If no byte may arrive twice, use a target that repeats short writes until the send is complete
/// and enters the error state if it cannot complete it; the rest is then discarded.
///
///     utility::FileOutputStream file("/tmp/ports", false, 0600);
///     utility::VirtualPutStream out(file, 256, 200);
///     for (int i = 0; i < 1000; ++i) out.PutF("port %d\n", i);
///     out.FlushOutputStream();
class VXUT_EXPORT VirtualPutStream : public PutStream {
public:
    /// Allocates a buffer of `size` bytes. Writes flush the buffer when it holds `flushThreshold` bytes or more: never
    /// if the threshold exceeds `size`, at every write if it is below 1. Throws code 1238 if the allocation fails or
    /// `size` is negative.
    VirtualPutStream(framework::OutputStream& target, int size, int flushThreshold);
    /// Uses the caller's array `buffer` of `size` bytes; the last byte is reserved for the terminating NUL.
    /// `flushThreshold` is that of the first constructor. Nothing fits if `buffer` is null or `size` is below 1.
    VirtualPutStream(framework::OutputStream& target, char* buffer, int size, int flushThreshold);
    /// Creates a stream without target and storage, for derived classes that implement their own flushing.
    explicit VirtualPutStream(int flushThreshold);
    /// Does not flush: what is left in the buffer is discarded.
    ~VirtualPutStream() override;

    /// Calls `EndOutputStream`, discards what is left in the buffer, and starts the target. Returns the target's
    /// result; false without a target.
    bool StartOutputStream() override;
    /// Flushes the buffer and ends the target.
    void EndOutputStream() override;
    /// Sends `size` bytes of `data`: directly to the target if the buffer is empty and `setHoldOutput` is off,
    /// otherwise through the buffer. Returns whether all bytes were accepted; false if `data` is null and `size` is not
    /// 0.
    bool SendOutputStream(const char* data, unsigned int size) override;
    /// Sends the buffer to the target. Discards it if the target is closed or in error; keeps it if a usable target
    /// refuses it.
    void FlushOutputStream() override;
    /// Returns whether the target is open; false without a target.
    bool isOutputStreamOpen() override;
    /// Returns whether the target is in error; false without a target.
    bool isOutputStreamInError() override;
    /// Returns whether the target is at its end; false without a target.
    bool isOutputStreamAtEnd() override;
    /// Writes `length` bytes of `data` and flushes as often as needed; does nothing if `data` is null.
    void PutB(const char* data, int length) override;
    /// Returns the free space in the buffer in bytes, after a flush if the threshold is reached.
    int WriteRemaining() const override;

    /// Sets whether sends go through the buffer even if it is empty; off at construction.
    void setHoldOutput(bool hold) {
        m_holdOutput = hold;
    }
    /// Sets whether each flush is traced; off at construction.
    void setTrace(bool trace) {
        m_trace = trace;
    }
    /// Returns the number of bytes sent from the buffer to the target since the last start. Sends that bypass the
    /// buffer do not count.
    int transferred() const {
        return m_transferred;
    }

protected:
    /// Returns whether there is a target that is open and not in error.
    bool isTargetUsable() const;
    /// Adds `count` to the bytes transferred.
    void countTransferred(int count);

    /// The target, not owned; null if there is none.
    framework::OutputStream* m_target;

private:
    VXUT_HIDDEN bool mustFlush() const;
    VXUT_HIDDEN bool appendDirectly(const char* data, int length);
    // Out of line, so that `WriteRemaining` needs no stack frame where it does not flush.
    VXUT_HIDDEN int spaceAfterFlush() const;
    // The space after one more flush of a full buffer: a usable target that refused a flush may accept the next.
    VXUT_HIDDEN int spaceAfterRetry() const;

    int m_flushThreshold;
    bool m_holdOutput;
    int m_transferred;
    bool m_trace;
};

} // namespace utility
