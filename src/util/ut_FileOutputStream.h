#pragma once

#include "ut_Export.h"
#include "ut_OutputStream.h"

namespace utility {

/// Writes a file through a descriptor, one system call for each send.
///
/// A stream made for a path opens the file, close-on-exec, and closes it when destroyed; it keeps the path's pointer,
/// so the text must outlive it. It does not use the numbers 0 to 2, even if they are free: what is written to standard
/// error never reaches the file. A descriptor given in stays the caller's. One thread at a time. Nothing is thrown or
/// logged: a failed system call leaves its `errno` (`errorNumber`) and sets the error state for good; from then on
/// sends are dropped. A file that was moved or removed is written on: a new log file needs a new stream.
///
///     utility::FileOutputStream file("/tmp/ports", false, 0600);
///     if (!file.SendOutputStream("4\n", 2) || file.isOutputStreamInError()) report(file.errorNumber());
class VXUT_EXPORT FileOutputStream : public framework::OutputStream {
public:
    /// Opens `path` for writing, at its end when `append`, else emptied; a new file gets the permission bits `mode`. A
    /// null path fails like one that does not exist.
    FileOutputStream(const char* path, bool append, unsigned int mode);
    /// Adopts `fd` and seeks it to offset 0. On a pipe or terminal that fails, and the stream is in error from the
    /// start: callers rely on adopted descriptors being files. Sends overwrite what such a file holds from its first
    /// byte on, unless the descriptor has O_APPEND.
    explicit FileOutputStream(int fd);
    FileOutputStream(const FileOutputStream&) = delete;
    FileOutputStream& operator=(const FileOutputStream&) = delete;
    ~FileOutputStream() override;

    /// Seeks to offset 0 and clears the end; false when not open, in error, or the seek fails.
    bool StartOutputStream() override;
    void EndOutputStream() override;
    /// Writes `size` bytes. False only for a short write: a stream that is not open or in error, a null `data`, and a
    /// write that fails all answer true, and callers see the failure through `isOutputStreamInError`.
    bool SendOutputStream(const char* data, unsigned int size) override;
    bool isOutputStreamOpen() override;
    bool isOutputStreamInError() override;
    /// Whether the stream was ended and not started again.
    bool isOutputStreamAtEnd() override;

    /// The `errno` of the last failure, 0 when there was none.
    int errorNumber() const {
        return m_errno;
    }

private:
    bool fail();

    int m_fd;
    const char* m_path;
    bool m_open;
    bool m_error;
    bool m_atEnd;
    int m_errno;
};

} // namespace utility
