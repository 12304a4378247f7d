#pragma once

#include "ut_Export.h"
#include "ut_InputStream.h"

namespace utility {

/// Reads a file through a descriptor, one system call for each receive.
///
/// A stream made for a path opens the file, close-on-exec, and closes it when destroyed; it keeps the path's pointer,
/// so the text must outlive it. It does not use the numbers 0 to 2, even if they are free: what is written to standard
/// error never reaches the file. A descriptor given in stays the caller's. One thread at a time. Nothing is thrown or
/// logged: a failed system call leaves its `errno` (`errorNumber`) and sets the error state for good; from then on
/// nothing is read.
///
///     utility::FileInputStream file("/etc/hosts");
///     char block[512];
///     int count = file.ReceiveInputStream(block, sizeof block);   // 0 at the end, -1 on an error
class VXUT_EXPORT FileInputStream : public framework::InputStream {
public:
    /// Opens `path` for reading. A null path fails like one that does not exist.
    explicit FileInputStream(const char* path);
    /// Adopts `fd` and seeks it to offset 0; where that fails, the stream is in error from the start. Receive from it
    /// directly: `isInputStreamInError` puts an adopted descriptor into the error state, and
    /// `TransferFromInputStream` and `VirtualGetStream` ask for that first, so they read nothing. For these, open the
    /// path "/proc/self/fd/N" instead.
    explicit FileInputStream(int fd);
    FileInputStream(const FileInputStream&) = delete;
    FileInputStream& operator=(const FileInputStream&) = delete;
    ~FileInputStream() override;

    /// Closes the descriptor, an adopted one too, and opens the path again, which may be another file by now. 0, or -1
    /// on a failure, also for a stream without a path. An error state stays set.
    int Reopen();
    /// Seeks to `offset`, counted in bytes from the start, and clears the end; false when not open, in error, or the
    /// seek fails.
    bool Position(unsigned int offset);
    /// The present offset; all bits set when there is none. Clears the end.
    unsigned int At();
    /// The inode number, cut to 32 bits; all bits set when there is none.
    unsigned int GetInode();
    static unsigned int GetInode(const char* path);

    /// Seeks to offset 0, as `Position` does.
    bool StartInputStream() override;
    void EndInputStream() override;
    /// Reads at most `size` bytes: their count, 0 at the end of the file, -1 when not open, in error or `buffer` is
    /// null.
    int ReceiveInputStream(char* buffer, unsigned int size) override;
    bool isInputStreamOpen() override;
    /// Whether a system call failed, or the path does not exist any more: a stream without a path is always in error
    /// here. So the question itself ends the reading of a file that was moved or removed; one that another file
    /// replaced is read on.
    bool isInputStreamInError() override;
    /// Whether the stream was ended, or a receive gave 0 bytes, since the last seek.
    bool isInputStreamAtEnd() override;
    /// The size of the file in bytes, also in error; -1 when it is not open, or the size cannot be had or does not fit
    /// an `int`.
    int GetInputStreamSize() override;

    /// The `errno` of the last failure, 0 when there was none.
    int errorNumber() const {
        return m_errno;
    }

private:
    void adopt(int fd);
    bool fail();
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
