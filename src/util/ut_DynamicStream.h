#pragma once

#include "ut_Export.h"

#include "ut_InputStream.h"
#include "ut_OutputStream.h"

namespace utility {

/// An append-only byte store that grows by pages of 4096 bytes up to a maximum size and is read from its start.
///
/// The stream owns its pages and allocates each one when its first byte is written. One thread at a time. Nothing is
/// thrown: if data does not fit or a page cannot be allocated, the operation returns false, and the failure is logged.
///
///     utility::DynamicStream stream(10000);
///     stream.SendOutputStream("ports", 5);
///     char text[8];
///     stream.ReceiveInputStream(text, sizeof text);   // 5
///     stream.ReceiveInputStream(text, sizeof text);   // -1: everything was read
class VXUT_EXPORT DynamicStream : public framework::InputStream, public framework::OutputStream {
public:
    /// Creates a stream of at most `maxSize` bytes; nothing fits if `maxSize` is below 1 or the page table cannot be
    /// allocated.
    explicit DynamicStream(int maxSize);
    DynamicStream(const DynamicStream&) = delete;
    DynamicStream& operator=(const DynamicStream&) = delete;
    /// Frees every page and the page table.
    ~DynamicStream() override;

    /// Frees every page; the stream is empty and can be used again.
    void reset();
    /// Returns the nominal memory use in bytes: 4 for each slot of the page table, 4096 for each page, 32 for the
    /// object.
    unsigned int getSize() const;

    /// Discards the content, read or unread, and keeps the pages. Writing restarts at the first byte, but the read
    /// position does not move: call `StartInputStream` to read the bytes before it. Always returns true.
    bool StartOutputStream() override;
    /// Does nothing.
    void EndOutputStream() override;
    /// Appends `size` bytes of `data`. Returns whether all were stored. Callers rely on these details:
    /// - If not all bytes fit, those that fit are stored.
    /// - Exceeding the maximum size is logged only if the stream was already full before the call.
    /// - If `data` is null, nothing is stored, and the result is true only if `size` is 0 and the stream is not full.
    bool SendOutputStream(const char* data, unsigned int size) override;
    /// Always returns true.
    bool isOutputStreamOpen() override;
    /// Always returns false, even after a failed write.
    bool isOutputStreamInError() override;
    /// Always returns true, because the maximum size is never exceeded. Callers rely on this: the stream is at its end
    /// from the start and is never good, but accepts data.
    bool isOutputStreamAtEnd() override;

    /// Sets the read position to the first byte; always returns true.
    bool StartInputStream() override;
    /// Skips the unread bytes.
    void EndInputStream() override;
    /// Copies at most `size` bytes to `buffer` and returns the count, or -1 if everything was read. If `buffer` is null
    /// and unread bytes are left, returns 0 and consumes nothing.
    int ReceiveInputStream(char* buffer, unsigned int size) override;
    /// Always returns true.
    bool isInputStreamOpen() override;
    /// Always returns false.
    bool isInputStreamInError() override;
    /// Returns whether everything stored was read.
    bool isInputStreamAtEnd() override;
    /// Returns the number of bytes stored, including those already read.
    int GetInputStreamSize() override;

private:
    // Allocates `page`, the first one that is missing. Returns false if that fails, and logs in the name of `function`.
    VXUT_HIDDEN bool addPage(unsigned int page, const char* function);
    VXUT_HIDDEN bool allocatePage();
    // Traces, in the name of `function`, the transfer of `count` of `size` bytes from or to `position`. Logs an error
    // if `count` is 0: repeating the transfer would never end.
    VXUT_HIDDEN void logTransfer(unsigned int count, unsigned int position, unsigned int size,
                                 const char* function) const;

    unsigned int m_maxSize;
    char** m_pages;
    unsigned int m_maxPages;
    unsigned int m_pageCount;
    unsigned int m_outputCount;
    unsigned int m_inputCount;
};

} // namespace utility
