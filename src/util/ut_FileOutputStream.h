#pragma once

#include "ut_Export.h"

#include "ut_OutputStream.h"

namespace utility {

/// Writes a file through a descriptor, with one system call for each send.
///
/// - A stream for a path opens the file with close-on-exec, and closes it on destruction. It stores the pointer to the
///   path, which must outlive the stream. Its descriptor is never 0 to 2, even if these are closed, so that output to
///   standard error cannot reach the file.
/// - A stream for a descriptor does not own it: the caller closes the descriptor.
///
/// One thread at a time. Nothing is thrown or logged. A failed system call stores its `errno` (`errorNumber`) and sets
/// the error state, which is never cleared; sends are discarded in the error state. The stream keeps writing to its
/// file after the file was moved or removed: to start a new log file, use a new stream.
///
///     utility::FileOutputStream file("/tmp/ports", false, 0600);
///     if (!file.SendOutputStream("4\n", 2) || file.isOutputStreamInError()) report(file.errorNumber());
class VXUT_EXPORT FileOutputStream : public framework::OutputStream {
public:
    /// Opens `path` for writing. If `append` is true, every send goes to the end of the file; otherwise the file is
    /// truncated. A new file gets the permission bits `mode` without those in the umask. A null path fails like a path
    /// that does not exist.
    FileOutputStream(const char* path, bool append, unsigned int mode);
    /// Uses the caller's descriptor `fd` and seeks it to offset 0. The seek fails for a pipe or terminal, and the
    /// stream is then in error: callers rely on such descriptors being files. Sends overwrite the file from its first
    /// byte, unless the descriptor has O_APPEND.
    explicit FileOutputStream(int fd);
    FileOutputStream(const FileOutputStream&) = delete;
    FileOutputStream& operator=(const FileOutputStream&) = delete;
    /// Closes the file if the stream opened it.
    ~FileOutputStream() override;

    /// Seeks to offset 0 and clears the end state. Returns false if the stream is not open or in error, or the seek
    /// fails.
    bool StartOutputStream() override;
    /// Sets the end state; the file stays open, and sends still write to it.
    void EndOutputStream() override;
    /// Writes `size` bytes of `data`. Returns false only for a short write. Returns true if the stream is not open or
    /// in error, `data` is null, or the write fails: check `isOutputStreamInError` after each send.
    bool SendOutputStream(const char* data, unsigned int size) override;
    /// Returns whether the file is open.
    bool isOutputStreamOpen() override;
    /// Returns whether an open, seek or write has failed since construction.
    bool isOutputStreamInError() override;
    /// Returns whether `EndOutputStream` was called since the last start.
    bool isOutputStreamAtEnd() override;

    /// Returns the `errno` of the last failure; 0 if there was none.
    int errorNumber() const {
        return m_errno;
    }

private:
    VXUT_HIDDEN bool fail();

    int m_fd;
    const char* m_path;
    bool m_open;
    bool m_error;
    bool m_atEnd;
    int m_errno;
};

} // namespace utility
