#pragma once

#include "ut_Export.h"

#include "ut_InputStream.h"

namespace utility {

/// Reads a file through a descriptor, with one system call for each receive.
///
/// - A stream for a path opens the file with close-on-exec, and closes it on destruction. It stores the pointer to the
///   path, which must outlive the stream. Its descriptor is never 0 to 2, even if these are closed, so that output to
///   standard error cannot reach the file.
/// - A stream for a descriptor does not own it: the caller closes the descriptor.
///
/// One thread at a time. Nothing is thrown or logged. A failed system call stores its `errno` (`errorNumber`) and sets
/// the error state, which is never cleared; nothing is read in the error state.
///
///     utility::FileInputStream file("/etc/hosts");
///     char block[512];
///     int count = file.ReceiveInputStream(block, sizeof block);   // 0 at the end, -1 on failure
class VXUT_EXPORT FileInputStream : public framework::InputStream {
public:
    /// Opens `path` for reading. A null path fails like a path that does not exist.
    explicit FileInputStream(const char* path);
    /// Uses the caller's descriptor `fd` and seeks it to offset 0; if the seek fails, the stream is in error. Only
    /// direct calls of `ReceiveInputStream` work: `isInputStreamInError` sets the error state of a stream without a
    /// path, and `TransferFromInputStream` and `VirtualGetStream` call it before they read. To use these with a
    /// descriptor N, open the path "/proc/self/fd/N".
    explicit FileInputStream(int fd);
    FileInputStream(const FileInputStream&) = delete;
    FileInputStream& operator=(const FileInputStream&) = delete;
    /// Closes the file if the stream opened it.
    ~FileInputStream() override;

    /// Closes the descriptor, even a caller's, and opens the path again, which may name another file by now. Returns 0,
    /// or -1 if the file cannot be opened or the stream has no path. Does not clear the error state.
    int Reopen();
    /// Seeks to `offset`, in bytes from the start of the file, and clears the end state. Returns false if the stream is
    /// not open or in error, or the seek fails.
    bool Position(unsigned int offset);
    /// Returns the current offset in bytes, truncated to 32 bits; all bits set if the stream is not open or in error,
    /// or the system call fails. Clears the end state.
    unsigned int At();
    /// Returns the inode number of the open file, truncated to 32 bits; all bits set if the stream is not open or the
    /// system call fails.
    unsigned int GetInode();
    /// Returns the inode number of the file `path`, truncated to 32 bits; all bits set if `path` is null or does not
    /// exist.
    static unsigned int GetInode(const char* path);

    /// Seeks to offset 0, as `Position` does.
    bool StartInputStream() override;
    /// Sets the end state; the file stays open.
    void EndInputStream() override;
    /// Reads at most `size` bytes into `buffer`. Returns their count, 0 at the end of the file, or -1 if the stream is
    /// not open or in error, `buffer` is null, or the read fails.
    int ReceiveInputStream(char* buffer, unsigned int size) override;
    /// Returns whether the file is open.
    bool isInputStreamOpen() override;
    /// Returns whether the stream is in error, after setting the error state if the path no longer exists or the stream
    /// has no path. So this call ends reading from a file that was moved or removed. A file that was replaced by
    /// another one with the same path can still be read.
    bool isInputStreamInError() override;
    /// Returns whether `EndInputStream` was called, or a receive returned 0, since the last seek.
    bool isInputStreamAtEnd() override;
    /// Returns the size of the file in bytes, even in the error state; -1 if the stream is not open, the size is
    /// unknown or it does not fit an `int`.
    int GetInputStreamSize() override;

    /// Returns the `errno` of the last failure; 0 if there was none.
    int errorNumber() const {
        return m_errno;
    }

private:
    VXUT_HIDDEN void adopt(int fd);
    VXUT_HIDDEN bool fail();
    bool isUsable() const {
        return m_open && !m_error;
    }

    int m_fd;
    const char* m_path;
    bool m_open;
    bool m_error;
    bool m_atEnd;
    int m_errno;
};

} // namespace utility
