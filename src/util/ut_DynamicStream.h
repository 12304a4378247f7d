#pragma once

#include "ut_Export.h"
#include "ut_InputStream.h"
#include "ut_OutputStream.h"

namespace utility {

/// An append-only store of bytes that grows by pages of 4096 bytes up to a maximum, and is read back from its start.
///
/// The stream owns its pages and takes one only when the first byte is written into it. One thread at a time. Nothing
/// is thrown: what does not fit is false, and logged, and so is a page that cannot be had.
///
///     utility::DynamicStream stream(10000);
///     stream.SendOutputStream("ports", 5);
///     char text[8];
///     stream.ReceiveInputStream(text, sizeof text);   // 5
///     stream.ReceiveInputStream(text, sizeof text);   // -1: nothing is left
class VXUT_EXPORT DynamicStream : public framework::InputStream, public framework::OutputStream {
public:
    /// Holds at most `maxSize` bytes; below 1 it holds none. Without memory for its page table it holds none either.
    explicit DynamicStream(int maxSize);
    DynamicStream(const DynamicStream&) = delete;
    DynamicStream& operator=(const DynamicStream&) = delete;
    ~DynamicStream() override;

    /// Frees every page; the stream is empty and can be used again.
    void reset();
    /// The bytes of memory that the stream stands for: 4 for each slot of the page table, 4096 for each page, 32 for
    /// the object.
    unsigned int getSize() const;

    /// Writes from the first byte again and keeps the pages; what is unread is gone. The read position stays: bytes in
    /// front of it are read only after `StartInputStream`. Always true.
    bool StartOutputStream() override;
    /// Does nothing.
    void EndOutputStream() override;
    /// Appends `size` bytes. False when they do not all fit: callers rely on those that fit being stored all the same,
    /// and on nothing being logged unless the stream was full before. Null data store nothing; that is false unless
    /// `size` is 0.
    bool SendOutputStream(const char* data, unsigned int size) override;
    /// Always true.
    bool isOutputStreamOpen() override;
    /// Always false, also after a write that failed.
    bool isOutputStreamInError() override;
    /// True as long as the maximum is not exceeded, so always: callers see a stream that is at its end from the
    /// beginning, is never good, and takes what is sent to it all the same.
    bool isOutputStreamAtEnd() override;

    /// Reads from the first byte again. Always true.
    bool StartInputStream() override;
    /// Skips what was not read.
    void EndInputStream() override;
    /// Copies at most `size` bytes and returns the count, or -1 when nothing is left to read. A null `buffer` takes
    /// nothing.
    int ReceiveInputStream(char* buffer, unsigned int size) override;
    /// Always true.
    bool isInputStreamOpen() override;
    /// Always false.
    bool isInputStreamInError() override;
    /// True when everything stored was read.
    bool isInputStreamAtEnd() override;
    /// How many bytes are stored, read ones included.
    int GetInputStreamSize() override;

private:
    bool allocatePage();

    unsigned int m_maxSize;
    char** m_pages;
    unsigned int m_maxPages;
    unsigned int m_pageCount;
    unsigned int m_outputCount;
    unsigned int m_inputCount;
};

} // namespace utility
