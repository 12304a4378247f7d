#pragma once

#include "ut_Buffer.h"
#include "ut_Export.h"
#include "ut_InputStream.h"
#include "ut_OutputStream.h"

namespace utility {

/// A ring of bytes that always takes more: once it is full, what is written replaces the oldest bytes. It keeps the
/// tail of a trace or a history.
///
/// The stream owns its storage. One thread at a time. Writing and reading never fail; only the storage can be missing,
/// which throws code 1238 of "ut_Buffer". Once the ring has wrapped it yields at most one byte less than its capacity.
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
    /// A ring of `capacity` bytes; one of 0 bytes takes everything and holds nothing. Throws code 1238 when there is no
    /// storage, also for a negative capacity.
    explicit CircularStream(int capacity);
    ~CircularStream() override;

    /// The bytes between the read and the write position, in the ring's order.
    int ReadAvailable() const override;
    /// The capacity, always: a ring never runs out of room.
    int WriteRemaining() const override;
    /// Moves the write position by `n`, round the end where needed; a read position that is overrun moves on to the
    /// oldest byte left. Below 1 does nothing.
    void WriteAdvance(int n) override;
    /// Moves the read position by `n`, at most by what is readable. Below 1 does nothing.
    void ReadAdvance(int n) override;

    /// Drops what is unread and writes from the start of the storage. The ring keeps knowing that it once wrapped:
    /// callers that then start reading see the bytes of before, as far as they were not written over. Always true.
    bool StartOutputStream() override;
    /// Does nothing.
    void EndOutputStream() override;
    /// Takes all `size` bytes and keeps the last of them. Null data are taken as none. Always true.
    bool SendOutputStream(const char* data, unsigned int size) override;
    /// A transfer from the ring itself changes nothing and is true.
    bool TransferFromInputStream(framework::InputStream& in) override;
    /// Always true.
    bool isOutputStreamOpen() override;
    /// Always false, as a ring takes everything.
    bool isOutputStreamInError() override;
    bool isOutputStreamAtEnd() override;

    /// Reads from the oldest byte that is still held. Always true.
    bool StartInputStream() override;
    /// Does nothing.
    void EndInputStream() override;
    /// Copies at most `size` bytes and returns the count, 0 when there is nothing to read. A null `buffer` takes
    /// nothing.
    int ReceiveInputStream(char* buffer, unsigned int size) override;
    /// Always true.
    bool isInputStreamOpen() override;
    /// Always false.
    bool isInputStreamInError() override;
    /// True while nothing is readable.
    bool isInputStreamAtEnd() override;

private:
    bool m_wrapped;
};

} // namespace utility
