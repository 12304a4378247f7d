#pragma once

#include "ut_OutputStream.h"

namespace console {

/// Writes to a terminal, a pipe or a file through a descriptor that stays the caller's.
///
/// Unlike a file stream it neither seeks nor gives up on a short write. A failed write sets the error state for good
/// and leaves its `errno`. One thread at a time.
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

    /// The `errno` of the failure, 0 when there was none.
    int errorNumber() const {
        return m_errorNumber;
    }
    /// Whether the next byte will be the first of a line.
    bool isAtLineStart() const {
        return m_lastByte == '\n' || m_lastByte == '\r';
    }

private:
    int m_fd;
    int m_errorNumber;
    char m_lastByte;
};

} // namespace console
