#pragma once

namespace utility {

class Buffer;

/// The space at a buffer's write position, for code that writes text there directly instead of through a stream.
///
/// The buffer is not owned and must outlive this object. The capacity is 0 if the buffer has no storage or its write
/// position is outside the storage. Internal. `advance` fails as `Buffer::WriteAdvance` does.
///
///     WriteHead head(stream);
///     inet_ntop(AF_INET, &address, head.start(), head.capacity());
///     head.advance(head.start());
class WriteHead {
public:
    /// Calls `buffer.WriteRemaining`, so a stream with a target may flush first.
    explicit WriteHead(Buffer& buffer);
    WriteHead(const WriteHead&) = delete;
    WriteHead& operator=(const WriteHead&) = delete;

    /// Returns the address to write to; never null, even if the capacity is 0.
    char* start() const {
        return m_start;
    }
    /// Returns the number of bytes that can be written.
    unsigned int capacity() const {
        return m_capacity;
    }
    /// Moves the write position past `text`, which ends at its NUL or after `capacity()` bytes, whichever comes first.
    /// A null `text` counts as empty.
    void advance(const char* text);

private:
    Buffer& m_buffer;
    char* m_start;
    unsigned int m_capacity;
    char m_dummy; // target of `m_start` if the capacity is 0
};

} // namespace utility
