#pragma once

#include "ut_Export.h"
#include "ut_InputStream.h"
#include "ut_OutputStream.h"

namespace utility {

/// Counts and discards output, and gives a set number of zero bytes as input.
///
/// It holds no data and never fails. One thread at a time.
///
///     utility::NullStream sink(0);
///     sink.StartOutputStream();
///     sink.SendOutputStream("ports", 5);
///     sink.outputCount();   // 5
class VXUT_EXPORT NullStream : public framework::InputStream, public framework::OutputStream {
public:
    /// `inputSize`: the number of zero bytes that one input pass gives. Neither side is open yet.
    explicit NullStream(unsigned int inputSize);
    ~NullStream() override;

    bool StartInputStream() override;
    void EndInputStream() override;
    /// Writes zero bytes to `buffer`, as long as both `size` and the input last, and returns their number; never
    /// negative. It works without `StartInputStream`, but then the input is empty. A null buffer takes nothing.
    int ReceiveInputStream(char* buffer, unsigned int size) override;
    bool isInputStreamOpen() override;
    bool isInputStreamInError() override;
    bool isInputStreamAtEnd() override;

    bool StartOutputStream() override;
    void EndOutputStream() override;
    /// Counts `size` bytes and never reads them; false when output is not open.
    bool SendOutputStream(const char* data, unsigned int size) override;
    bool isOutputStreamOpen() override;
    bool isOutputStreamInError() override;
    bool isOutputStreamAtEnd() override;

    /// Bytes discarded, and zero bytes given, since construction; both wrap round at 32 bits.
    unsigned int outputCount() const {
        return m_outputCount;
    }
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
