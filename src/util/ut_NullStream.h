#pragma once

#include "ut_Export.h"

#include "ut_InputStream.h"
#include "ut_OutputStream.h"

namespace utility {

/// Counts and discards output, and supplies a fixed number of zero bytes as input.
///
/// No operation fails. One thread at a time.
///
///     utility::NullStream sink(0);
///     sink.StartOutputStream();
///     sink.SendOutputStream("ports", 5);
///     sink.outputCount();   // 5
class VXUT_EXPORT NullStream : public framework::InputStream, public framework::OutputStream {
public:
    /// Creates a stream with a closed input and a closed output. `inputSize` is the number of zero bytes that can be
    /// read after each `StartInputStream`.
    explicit NullStream(unsigned int inputSize);
    ~NullStream() override;

    /// Opens the input with `inputSize` bytes to read; always returns true.
    bool StartInputStream() override;
    /// Closes the input and discards its remaining bytes.
    void EndInputStream() override;
    /// Fills `buffer` with zero bytes, at most `size` and at most the rest of the input. Returns their count, which is
    /// never negative. Returns 0 and consumes nothing if `buffer` is null, and 0 before `StartInputStream`.
    int ReceiveInputStream(char* buffer, unsigned int size) override;
    /// Returns whether the input is open.
    bool isInputStreamOpen() override;
    /// Always returns false.
    bool isInputStreamInError() override;
    /// Returns whether no input is left; true before `StartInputStream`.
    bool isInputStreamAtEnd() override;

    /// Opens the output; always returns true.
    bool StartOutputStream() override;
    /// Closes the output.
    void EndOutputStream() override;
    /// Counts `size` bytes, without reading `data`. Returns false, and counts nothing, if the output is closed.
    bool SendOutputStream(const char* data, unsigned int size) override;
    /// Returns whether the output is open.
    bool isOutputStreamOpen() override;
    /// Always returns false.
    bool isOutputStreamInError() override;
    /// Always returns false.
    bool isOutputStreamAtEnd() override;

    /// Returns the number of bytes discarded since construction, modulo 2^32.
    unsigned int outputCount() const {
        return m_outputCount;
    }
    /// Returns the number of zero bytes supplied since construction, modulo 2^32.
    unsigned int inputCount() const {
        return m_inputCount;
    }

private:
    unsigned int m_inputSize;
    unsigned int m_inputRemaining;
    bool m_inputOpen;
    bool m_outputOpen;
    unsigned int m_outputCount;
    unsigned int m_inputCount;
};

} // namespace utility
