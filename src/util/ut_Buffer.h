#pragma once

#include "ut_Export.h"

#include <cstddef>
#include <cstdint>

namespace utility {

/// A byte store of fixed capacity with a write position (head) and a read position (tail).
///
/// The storage is the buffer's own or the caller's; the caller's is never freed and must outlive the buffer. Own
/// storage has one byte more than the capacity, for a terminating NUL. One thread at a time. Moving a position past its
/// bound throws code 1239 and leaves the position moved; with the no-throw flag it is clamped silently. A position
/// outside the storage counts as no room and as nothing to read until `Rewind`.
///
/// `new` of a buffer, and so of any stream, asks the process's memory object (`framework::Container::getMemory`) for
/// exactly the size of the object, or `malloc` if there is no memory object; a failed `new` is null. `delete` gives the
/// object to the memory object that is current at that moment, or to `free` if there is none. The same holds for own
/// storage, except that storage of a memory object that is gone is not freed: do not change the memory object while
/// buffers exist.
///
///     utility::BufferStream stream(16);
///     stream.PutS("ports");
///     stream.ReadAvailable();   // 5
class VXUT_EXPORT Buffer {
public:
    /// No storage, capacity 0.
    Buffer();
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    virtual ~Buffer();

    /// Bytes that can still be written: capacity minus write position.
    virtual int WriteRemaining() const;
    /// Bytes that can be read: write position minus read position.
    virtual int ReadAvailable() const;
    /// Moves the write position by `n`. A negative `n` is always refused, also where the result would be inside; with
    /// the no-throw flag it then goes back no further than the read position.
    virtual void WriteAdvance(int n);
    /// Moves the read position by `n`; a negative `n` is always refused, with the no-throw flag only bounded.
    virtual void ReadAdvance(int n);

    /// Takes storage for the current capacity. On failure the capacity becomes 0 and code 1238 is thrown, or logged
    /// with the no-throw flag. Storage held before is not released.
    void allocBuffer();

    /// The storage, the place of the next byte written, and the place of the next byte read; null without storage.
    char* pBuffer() const {
        return m_storage;
    }
    char* pHead() const {
        return m_storage != nullptr ? m_storage + m_head : nullptr;
    }
    char* pTail() const {
        return m_storage != nullptr ? m_storage + m_tail : nullptr;
    }
    int WritePosition() const {
        return m_head;
    }
    int ReadPosition() const {
        return m_tail;
    }
    /// The capacity in bytes.
    int Size() const {
        return m_size;
    }

    /// With the flag set, what does not fit is cut and logged instead of thrown.
    void setNoThrow(bool noThrow) {
        m_noThrow = noThrow;
    }
    bool isNoThrow() const {
        return m_noThrow;
    }

    /// Drops everything: both positions 0, and the storage begins with a NUL.
    void Rewind();
    /// Moves the unread bytes to the front; nothing unread is a `Rewind`.
    void Consolidate();
    /// Moves the readable bytes of `source` to the end of this buffer. Too many throw code 1239; with the no-throw flag
    /// only those that fit are moved. Null does nothing.
    void CopyFrom(Buffer* source);
    /// Cuts an incomplete UTF-8 character, at most three bytes, off the readable text. False, and logged, when the text
    /// is no printable UTF-8 even so; then nothing is cut.
    bool truncatePartialUtf8();

    static void* operator new(std::size_t size) noexcept;
    static void operator delete(void* object) noexcept;

protected:
    enum StorageKind : std::uint32_t { STORAGE_NONE = 0, STORAGE_CALLER = 1, STORAGE_MALLOC = 2, STORAGE_MEMORY = 3 };

    /// Uses the caller's `storage` with `capacity` bytes. `terminated` says that one more byte stands behind them.
    void supplyStorage(char* storage, int capacity, bool terminated);
    /// Uses the caller's array of `size` bytes, the last of which is kept for the terminator.
    void supplyArray(char* array, int size);
    /// Sets the capacity for the next `allocBuffer`.
    void setSize(int size) {
        m_size = size;
    }
    void setWritePosition(int position) {
        m_head = position;
    }
    void setReadPosition(int position) {
        m_tail = position;
    }

    /// How many of `wanted` bytes the storage takes at the write position.
    int boundedRoom(int wanted) const;
    /// How many of `wanted` bytes the storage holds between read and write position.
    int boundedReadable(int wanted) const;
    /// Whether the storage has a byte at `position`, the one for the terminator included.
    bool isStored(int position) const;
    /// Whether a NUL can stand at the write position.
    bool isTerminable() const {
        return isStored(m_head);
    }
    /// Puts a NUL at the write position, where there is room for one.
    void terminate();

private:
    StorageKind m_kind;
    int m_size;
    char* m_storage;
    int m_head;
    int m_tail;
    bool m_noThrow;
    bool m_terminated; // one byte behind the capacity belongs to the storage
};

} // namespace utility
