#pragma once

#include "ut_Export.h"

#include <cstddef>
#include <cstdint>

namespace utility {

/// A byte buffer of fixed capacity with a write position (head) and a read position (tail).
///
/// The buffer owns its storage or uses storage of the caller, which is never freed and must outlive the buffer. Owned
/// storage is one byte larger than the capacity, for a terminating NUL. One thread at a time.
///
/// Moving a position out of range throws code 1239 and leaves the position moved; with the no-throw flag set, the
/// position is clamped without a message instead. Nothing can be written while the write position is outside the
/// storage, and nothing can be read while the read position is; `Rewind` resets both.
///
/// Memory comes from the process's memory object (`framework::Container::getMemory`), or from `malloc` if there is no
/// memory object:
/// - `new` of a buffer or stream requests exactly the size of the object and returns null on failure. `delete` returns
///   the object to the memory object that is current when it is called, or to `free` if there is none.
/// - Owned storage from `malloc` is released with `free`. Owned storage from a memory object is returned to the current
///   memory object, and is leaked if there is none.
///
/// Do not change the memory object while buffers exist.
///
///     utility::BufferStream stream(16);
///     stream.PutS("ports");
///     stream.ReadAvailable();   // 5
class VXUT_EXPORT Buffer {
public:
    /// Creates a buffer without storage; its capacity is 0.
    Buffer();
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    /// Releases owned storage.
    virtual ~Buffer();

    /// Returns the number of bytes that can still be written: capacity minus write position.
    virtual int WriteRemaining() const;
    /// Returns the number of bytes that can be read: write position minus read position.
    virtual int ReadAvailable() const;
    /// Moves the write position by `n`. Throws code 1239 if the result exceeds the capacity or `n` is negative, even if
    /// the result would be in range. With the no-throw flag, clamps the result to the capacity, and moves back at most
    /// to the read position.
    virtual void WriteAdvance(int n);
    /// Moves the read position by `n`. Throws code 1239 if the result exceeds the write position or `n` is negative,
    /// even if the result would be in range. With the no-throw flag, clamps the result to the range from 0 to the write
    /// position.
    virtual void ReadAdvance(int n);

    /// Allocates storage for the current capacity and a terminating NUL. On failure, sets the capacity to 0 and throws
    /// code 1238, or logs the failure if the no-throw flag is set. Does not release existing storage.
    void allocBuffer();

    /// Returns the start of the storage, or null without storage.
    char* pBuffer() const {
        return m_storage;
    }
    /// Returns a pointer to the write position, where the next byte is written, or null without storage.
    char* pHead() const {
        return m_storage != nullptr ? m_storage + m_head : nullptr;
    }
    /// Returns a pointer to the read position, where the next byte is read, or null without storage.
    char* pTail() const {
        return m_storage != nullptr ? m_storage + m_tail : nullptr;
    }
    /// Returns the write position, in bytes from the start of the storage.
    int WritePosition() const {
        return m_head;
    }
    /// Returns the read position, in bytes from the start of the storage.
    int ReadPosition() const {
        return m_tail;
    }
    /// Returns the capacity in bytes.
    int Size() const {
        return m_size;
    }

    /// Sets the no-throw flag. While it is set, data that does not fit is truncated and the failure is logged, not
    /// thrown.
    void setNoThrow(bool noThrow) {
        m_noThrow = noThrow;
    }
    /// Returns whether the no-throw flag is set; it is clear at construction.
    bool isNoThrow() const {
        return m_noThrow;
    }

    /// Discards the content: sets both positions to 0 and the first byte of the storage to NUL.
    void Rewind();
    /// Moves the unread bytes to the start of the storage; without unread bytes, does what `Rewind` does.
    void Consolidate();
    /// Moves the readable bytes of `source` to the write position, and the read position of `source` past them. Throws
    /// code 1239 if they do not fit; with the no-throw flag, moves only those that fit. Does nothing if `source` is
    /// null.
    void CopyFrom(Buffer* source);
    /// Removes an incomplete UTF-8 character (at most three bytes) from the end of the readable text. Returns true if
    /// the remaining text is printable UTF-8. Otherwise leaves the text unchanged, logs an error and returns false.
    bool truncatePartialUtf8();

    /// Allocates an object from the memory object, or with `malloc`; returns null on failure.
    static void* operator new(std::size_t size) noexcept;
    /// Returns an object to the current memory object, or to `free`; does nothing if `object` is null.
    static void operator delete(void* object) noexcept;

protected:
    /// Where the storage comes from: nowhere, the caller, `malloc`, or a memory object. The destructor releases the
    /// last two.
    enum StorageKind : std::uint32_t { STORAGE_NONE = 0, STORAGE_CALLER = 1, STORAGE_MALLOC = 2, STORAGE_MEMORY = 3 };

    /// Uses the caller's `storage` of `capacity` bytes. `terminated`: one more byte follows them, for a NUL.
    void supplyStorage(char* storage, int capacity, bool terminated);
    /// Uses the caller's array of `size` bytes; the last byte is reserved for a NUL. Nothing fits if `array` is
    /// null or `size` is below 1.
    void supplyArray(char* array, int size);
    /// Sets the capacity for the next `allocBuffer`.
    void setSize(int size) {
        m_size = size;
    }
    /// Sets the write position, unchecked.
    void setWritePosition(int position) {
        m_head = position;
    }
    /// Sets the read position, unchecked.
    void setReadPosition(int position) {
        m_tail = position;
    }

    /// Returns how many of `wanted` bytes fit between the write position and the capacity; 0 if the write position is
    /// outside the storage or `wanted` is negative.
    int boundedRoom(int wanted) const {
        if (m_storage == nullptr || m_head < 0 || m_head > m_size || wanted < 0)
            return 0;
        return wanted < m_size - m_head ? wanted : m_size - m_head;
    }
    /// Returns how many of `wanted` bytes are between the read position and the write position, and inside the storage;
    /// 0 if the read position is outside that range or `wanted` is negative.
    int boundedReadable(int wanted) const {
        const int end = m_head < m_size ? m_head : m_size;
        if (m_storage == nullptr || m_tail < 0 || m_tail > end || wanted < 0)
            return 0;
        return wanted < end - m_tail ? wanted : end - m_tail;
    }
    /// Returns whether the storage has a byte at `position`; the byte for the terminating NUL counts.
    bool isStored(int position) const {
        return m_storage != nullptr && position >= 0 && (m_terminated ? position <= m_size : position < m_size);
    }
    /// Returns whether the storage has a byte for a NUL at the write position.
    bool isTerminable() const {
        return isStored(m_head);
    }
    /// Writes a NUL at the write position if the storage has a byte there; does not move the position.
    void terminate() {
        if (isTerminable())
            m_storage[m_head] = 0;
    }

    // Non-virtual forms of the four position operations, for the library's streams only. Each calls the virtual
    // operation if a derived class overrides it or if it would fail, and otherwise does the same without a virtual
    // call.

    /// Returns whether no derived class overrides `WriteRemaining` and `WriteAdvance`.
    VXUT_HIDDEN bool hasOwnWriting() const;
    /// Returns whether no derived class overrides `ReadAvailable` and `ReadAdvance`.
    VXUT_HIDDEN bool hasOwnReading() const;
    /// Does what `WriteRemaining` does.
    VXUT_HIDDEN int writeRemaining() const;
    /// Does what `ReadAvailable` does.
    VXUT_HIDDEN int readAvailable() const;
    /// Does what `WriteAdvance` does.
    VXUT_HIDDEN void writeAdvance(int n);
    /// Does what `ReadAdvance` does.
    VXUT_HIDDEN void readAdvance(int n);
    /// Advances the write position by `n` bytes and returns a pointer to them; the caller writes them. Returns null and
    /// moves nothing if they do not fit or if a derived class overrides a write operation.
    VXUT_HIDDEN char* claimHead(int n);
    /// Advances the read position by `n` readable bytes and returns a pointer to them. Returns null and moves nothing
    /// if there are fewer or if a derived class overrides a read operation.
    VXUT_HIDDEN char* claimTail(int n);
    /// Writes `c` and a NUL after it. Returns false and does nothing if `claimHead` would return null.
    VXUT_HIDDEN bool putDirectly(char c);
    /// Writes `text` and a NUL after it, and moves the write position past the text if `nuls` is 0, past the NUL too if
    /// it is 1. Returns false and does nothing if text and NUL do not fit or if a derived class overrides a write
    /// operation.
    VXUT_HIDDEN bool putDirectly(const char* text, int nuls);

private:
    friend class BufferStreamElement;

    StorageKind m_kind;
    int m_size;
    char* m_storage;
    int m_head;
    int m_tail;
    bool m_noThrow;
    // Bits of one byte, because the members of a derived class can begin at the next one.
    bool m_terminated : 1;     // the storage has one byte more than the capacity
    unsigned char m_links : 2; // the links to this `BufferStreamElement`; 2 means two or more
};

} // namespace utility
