#pragma once

namespace utility {

class Buffer;

/// The room at a buffer's write position, for texts that are written there without the stream's own operations.
///
/// The buffer is the caller's. A buffer without storage, or with a write position outside it, offers no room. For the
/// library's sources, not for its callers. `advance` fails as `Buffer::WriteAdvance` does.
///
///     WriteHead head(stream);
///     inet_ntop(AF_INET, &address, head.place(), head.room());
///     head.advance(head.place());
class WriteHead {
public:
    /// Asks the buffer how much may still be written, which makes a stream with a target write out first.
    explicit WriteHead(Buffer& buffer);
    WriteHead(const WriteHead&) = delete;
    WriteHead& operator=(const WriteHead&) = delete;

    /// Where to write, and how many bytes at most; never null, also when there is no room.
    char* place() const {
        return m_place;
    }
    unsigned int room() const {
        return m_room;
    }
    /// Moves the write position behind `text`, which ends at its terminator or at the end of the room; null is empty.
    void advance(const char* text);

private:
    Buffer& m_buffer;
    char* m_place;
    unsigned int m_room;
    char m_nowhere;
};

} // namespace utility
