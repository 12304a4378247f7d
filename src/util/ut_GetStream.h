#pragma once

#include "ut_Export.h"

#include "ut_Buffer.h"
#include "ut_InputStream.h"

namespace utility {

class Array;
class IntArray;
class ShortArray;
class StringArray;
class UIntArray;
class UShortArray;

/// Reads characters, lines and parameters from a buffer.
///
/// Lines and texts are returned in place: the pointers point into the buffer, and are valid until it is refilled or
/// destroyed. One thread at a time. Reading past the content returns false, null or 0 and never throws, with two
/// exceptions: an index out of range throws code 1240, and a parameter block longer than the readable content throws
/// code 1239 of "ut_Buffer".
///
///     utility::GetStream in("/etc/hosts");
///     while (char* line = in.ReadLine()) use(line);
class VXUT_EXPORT GetStream : public framework::InputStream, public virtual Buffer {
public:
    /// Creates a stream without storage: nothing is readable until a derived class supplies storage.
    GetStream();
    /// Loads a file with `fromFile`. A file that cannot be read is not reported: the stream is empty. Throws code 1238
    /// if the allocation fails.
    explicit GetStream(const char* path);
    /// Reads from the caller's `text` of `length` bytes; one more byte must follow them, for a terminating NUL. Nothing
    /// is readable until the caller calls `WriteAdvance(length)`: callers rely on that order.
    GetStream(const char* text, int length);
    ~GetStream() override;

    /// Loads a whole file into storage that the stream allocates.
    /// - Returns false if the file cannot be opened, and true for an empty file. Throws code 1238 if the allocation
    ///   fails.
    /// - Call it only on a new stream: existing storage is not released.
    /// - The file's size determines how much is read. A file that reports size 0, such as one under /proc, or a file of
    ///   2 GiB or more loads as an empty stream, and the result is true. Read these with `FileInputStream`.
    bool fromFile(const char* path);

    /// Reads the next byte into `*out`, or discards it if `out` is null. Returns false if nothing is readable.
    bool GetC(char* out);
    /// Returns the next line that ends in a newline, with the newline replaced by a NUL. Returns null, and consumes
    /// nothing, if no newline is readable.
    char* GetLine();
    /// Returns the next line with its newline replaced by a NUL, or the rest of the content if no newline is left.
    /// Returns null if nothing is readable. A line that ended in CR LF keeps its CR: callers that care remove it.
    ///
    /// In a stream with a source, a line that is not completely in the buffer is returned in pieces. A line that fills
    /// a caller's array to its last byte cannot be terminated in place: the result is null, and the bytes can be read
    /// by other operations.
    char* ReadLine();
    /// Returns the byte at `index`, counted from the start of the storage. Throws code 1240 unless `index` is between
    /// the read position and the write position, both included.
    virtual char& operator[](unsigned int index);

    /// @name Compact parameter encoding
    ///
    /// Reads what the `PutParm` operations of `PutStream` wrote, in the order in which it was written. Each value
    /// operation returns false, and consumes nothing, if too few bytes are readable or `value` is null.
    /// @{

    /// Reads two bytes.
    bool GetParmUint16(unsigned short* value);
    /// Reads two bytes.
    bool GetParmSint16(short* value);
    /// Reads four bytes.
    bool GetParmUint32(unsigned int* value);
    /// Reads four bytes.
    bool GetParmSint32(int* value);
    /// Returns the next NUL-terminated text, in place, or null if nothing is readable. A text without a NUL ends at the
    /// write position; if it cannot be terminated there, the result is null.
    char* GetParmString();
    /// Copies at most `maximum` bytes of the next block to `destination`, or none if it is null. Returns the stored
    /// length of the block, or 0 if the length cannot be read. Consumes the whole block, including bytes beyond
    /// `maximum`: callers rely on the next parameter following it. Throws code 1239 of "ut_Buffer" if the length
    /// exceeds the readable bytes or is negative.
    int GetParmBuf(char* destination, int maximum);
    /// Appends the elements of the next array to `array`. If the data ends before the stored count is reached, the last
    /// value read (0 if there was none) is appended for each missing element. Returns false, with `array` unchanged, if
    /// the count cannot be read or more than 65,535 elements are missing; what was read is consumed even then.
    bool GetParmUint16Array(UShortArray& array);
    /// Does what `GetParmUint16Array` does, for unsigned 32-bit elements.
    bool GetParmUint32Array(UIntArray& array);
    /// Does what `GetParmUint16Array` does, for signed 16-bit elements.
    bool GetParmSint16Array(ShortArray& array);
    /// Does what `GetParmUint16Array` does, for signed 32-bit elements.
    bool GetParmSint32Array(IntArray& array);
    /// Does what `GetParmUint16Array` does, for texts; null is appended for each missing text.
    bool GetParmStringArray(StringArray& array);
    /// @}

    /// Sets the read position to the first byte; always returns true.
    bool StartInputStream() override;
    /// Does nothing.
    void EndInputStream() override;
    /// Copies at most `n` readable bytes to `destination` and returns the count. `destination` may be inside the
    /// stream's own storage. If it is null, returns 0 and consumes nothing.
    int ReceiveInputStream(char* destination, unsigned int n) override;
    /// Returns whether anything is readable: an empty stream is not open.
    bool isInputStreamOpen() override;
    /// Always returns false.
    bool isInputStreamInError() override;
    /// Returns whether nothing is readable.
    bool isInputStreamAtEnd() override;

private:
    template<typename Number>
    VXUT_HIDDEN bool getValue(Number* value);
    VXUT_HIDDEN bool getBytes(void* value, int width);
    // Moves past a readable text and its NUL and returns it. Returns null and moves nothing if no NUL is readable or if
    // a derived class overrides a read operation.
    VXUT_HIDDEN char* claimText();
    template<typename ArrayType>
    VXUT_HIDDEN bool getArray(ArrayType& array, unsigned int arraySwitch);
    VXUT_HIDDEN unsigned int appendReadable(Array& array, int width, unsigned int count, unsigned int arraySwitch);
};

} // namespace utility
