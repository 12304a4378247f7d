#pragma once

#include "ut_OutputStream.h"

namespace console {

/// Writes to a terminal, a pipe or a file through a descriptor that the caller owns.
///
/// Unlike a file stream it never seeks, and continues after a short write. A failed write sets a sticky error and
/// stores its `errno`. One thread at a time.
///
///     console::DescriptorOutputStream out(STDOUT_FILENO);
///     if (!out.SendOutputStream("ready\n", 6)) report(out.errorNumber());
class DescriptorOutputStream : public framework::OutputStream {
public:
    explicit DescriptorOutputStream(int fd);

    bool StartOutputStream() override;
    void EndOutputStream() override;
    bool SendOutputStream(const char* data, unsigned int size) override;
    bool isOutputStreamOpen() override;
    bool isOutputStreamInError() override;
    bool isOutputStreamAtEnd() override;

    /// The `errno` of the failed write; 0 if none has failed.
    int errorNumber() const {
        return m_errorNumber;
    }
    /// Whether the next byte starts a line.
    bool isAtLineStart() const {
        return m_lastByte == '\n' || m_lastByte == '\r';
    }

private:
    int m_fd;
    int m_errorNumber;
    char m_lastByte;
};

} // namespace console
