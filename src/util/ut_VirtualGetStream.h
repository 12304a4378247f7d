#pragma once

#include "ut_Export.h"

#include "ut_GetStream.h"

namespace utility {

/// Reads input of any length through a buffer of fixed size, which is filled from a source stream on demand.
///
/// The stream does not own the source, which must outlive it. It owns its buffer or uses an array of the caller, which
/// is never freed. A byte can be accessed by its offset in the whole input while it is in the buffer; any other offset
/// throws code 1240. One thread at a time.
///
/// A receive of 0 bytes is repeated while the source is good; a file at its end is not. With `setWaitForData(false)`, a
/// receive of 0 bytes ends the input at once and logs "Response not received: Timed out", even at the end of a file.
///
///     utility::FileInputStream file("/etc/hosts");
///     utility::VirtualGetStream in(file, 256, 16, 128, nullptr);
///     if (in.StartInputStream()) {
///         while (char* line = in.ReadLine()) use(line);
///     }
class VXUT_EXPORT VirtualGetStream : public GetStream {
public:
    /// - `source`: supplies the bytes.
    /// - `size`: the size of the buffer in bytes.
    /// - `keepBehind`: how many bytes before the highest offset accessed are kept in the buffer.
    /// - `lowWater`: the buffer is refilled when it contains fewer unread bytes than this.
    /// - `buffer`: the caller's array. If it is null, the stream allocates storage, and throws code 1238 if the
    ///   allocation fails.
    VirtualGetStream(framework::InputStream& source, int size, int keepBehind, int lowWater, char* buffer);
    /// Creates a stream without source and storage, for derived classes, which set them with `setSource` and
    /// `allocBuffer`.
    VirtualGetStream(int keepBehind, int lowWater);
    /// Does not end the source; releases the storage if the stream owns it.
    ~VirtualGetStream() override;

    /// Discards the bytes that are no longer needed and receives once from the source.
    void load();
    /// Discards all bytes before `offset`, which becomes the new offset 0. Throws code 1240 if `offset` is not in the
    /// buffer.
    void MoveTo(unsigned int offset);
    /// Makes the current read position offset 0.
    void MoveTo();

    /// Returns the number of unread bytes, after a refill if there are fewer than `lowWater`.
    int ReadAvailable() const override;
    /// Returns the byte at offset `index` of the whole input, after a refill if fewer than `lowWater` bytes follow it;
    /// at the write position, a NUL. Logs and throws code 1240 if the offset is not in the buffer because the byte was
    /// discarded or not yet received.
    char& operator[](unsigned int index) override;
    /// Starts the source and fills the buffer. Returns the source's result; false without a source.
    bool StartInputStream() override;
    /// Ends the source and discards the content of the buffer.
    void EndInputStream() override;
    /// Copies at most `size` bytes, and at most one buffer of bytes, to `buffer`. Returns the count, or 0 if no byte
    /// can be received or `buffer` is null.
    int ReceiveInputStream(char* buffer, unsigned int size) override;
    /// Returns whether the source is open; false without a source.
    bool isInputStreamOpen() override;
    /// Returns whether the source is in error; false without a source.
    bool isInputStreamInError() override;
    /// Returns whether all bytes were read and the source is at its end. Without a source, returns whether all bytes
    /// were read.
    bool isInputStreamAtEnd() override;

    /// Sets whether a receive of 0 bytes is repeated; on at construction. A failed receive is repeated in either case
    /// while the source is good: without a limit if this is on, otherwise at most 1000 times in one refill.
    void setWaitForData(bool wait) {
        m_waitForData = wait;
    }
    /// Sets whether each step is traced; off at construction.
    void setTrace(bool trace) {
        m_trace = trace;
    }
    /// Returns the number of bytes received from the source since the last start.
    int received() const {
        return m_received;
    }

protected:
    /// Reads from `source` from now on; null removes the source. The stream does not own, start or end the source.
    /// Unread bytes of the previous source stay readable, and offsets continue after them.
    void setSource(framework::InputStream* source) {
        m_source = source;
    }

private:
    void dropRead();
    // Receives once from the source, at most `space` bytes, and traces in the name of the operation `function`. Returns
    // the source's result.
    VXUT_HIDDEN int receive(int space, const char* function);
    VXUT_HIDDEN bool isHeld(int position) const;
    bool isSourceGood() const {
        return m_source != nullptr && m_source->isInputStreamGood();
    }
    bool isSourceOpen() const {
        return m_source != nullptr && m_source->isInputStreamOpen();
    }
    bool isSourceInError() const {
        return m_source != nullptr && m_source->isInputStreamInError();
    }
    bool isSourceAtEnd() const {
        return m_source == nullptr || m_source->isInputStreamAtEnd();
    }

    framework::InputStream* m_source;
    int m_keepBehind;
    int m_lowWater;
    int m_maxIndex;
    int m_base;
    int m_received;
    bool m_waitForData;
    bool m_trace;
    char m_terminator; // returned for the byte after a caller's array that is full
};

} // namespace utility
