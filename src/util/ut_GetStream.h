#pragma once

#include "ut_Buffer.h"
#include "ut_Export.h"
#include "ut_InputStream.h"

namespace utility {

class IntArray;
class ShortArray;
class StringArray;
class UIntArray;
class UShortArray;

/// Characters, lines and parameters out of a buffer.
///
/// Lines and texts are handed out in place: the pointers are into the buffer and valid until it is refilled or
/// destroyed. One thread at a time. Reading past the content gives false, null or 0 and never throws; only an index
/// outside throws code 1240, and a parameter block whose length exceeds the content code 1239 of "ut_Buffer".
///
///     utility::GetStream in("/etc/hosts");
///     while (char* line = in.ReadLine()) use(line);
class VXUT_EXPORT GetStream : public framework::InputStream, public virtual Buffer {
public:
    /// No storage: nothing is readable until a derived class supplies some.
    GetStream();
    /// Loads a file with `fromFile`. A file that cannot be read leaves an empty stream, and nothing says so.
    explicit GetStream(const char* path);
    /// Reads from the caller's `text` of `length` bytes, which one more byte must follow, for a terminator. Nothing is
    /// readable until the caller calls `WriteAdvance(length)`: callers rely on that order.
    GetStream(const char* text, int length);
    ~GetStream() override;

    /// Loads a whole file into own storage. False when it cannot be opened; an empty file is true. Meant for a fresh
    /// stream: storage held before is not released. Throws code 1238 when there is no storage.
    /// The file's size says how much to read: a file under /proc, which has the size 0, and one of 2 GiB or more load
    /// as an empty stream, with the result true. Read these with `FileInputStream`.
    bool fromFile(const char* path);

    /// Stores the next byte in `out` (null drops it); false when nothing is readable.
    bool GetC(char* out);
    /// The next line that ends in a newline, terminated in place instead of it; null when there is none, and then
    /// nothing is consumed.
    char* GetLine();
    /// The next line, or the rest as the last one; null when nothing is readable. A line that ended in CR LF keeps its
    /// CR: callers that care strip it. In front of a source a line comes in pieces when it is not held whole; one that
    /// fills a caller's array to its last byte cannot be terminated there and is null, to be taken as bytes.
    char* ReadLine();
    /// The byte at `index`, counted from the start of the storage. Valid from the read position to the write position,
    /// whose NUL may be asked for too; otherwise code 1240 is thrown.
    virtual char& operator[](unsigned int index);

    /// Readers of the compact parameter encoding of `PutStream`, to be used in the order of the writers. False when too
    /// few bytes are readable; then nothing is consumed. A null target takes nothing and is false.
    bool GetParmUint16(unsigned short* value);
    bool GetParmSint16(short* value);
    bool GetParmUint32(unsigned int* value);
    bool GetParmSint32(int* value);
    /// The next text, in place, or null when nothing is readable. It ends at the write position at the latest.
    char* GetParmString();
    /// Copies the next block, at most `maximum` bytes of it, and returns its stored length, or 0 when that cannot be
    /// read. The whole block is consumed, so bytes beyond `maximum` are skipped: callers rely on the next parameter
    /// following. A length beyond what is readable, or a negative one, throws code 1239 of "ut_Buffer".
    int GetParmBuf(char* destination, int maximum);
    /// Append the next array's elements to `array`. When the data run out, the last value read (0 when there was none)
    /// is appended for each element missing, up to 65,535 of them; a count with more missing is refused: false, and the
    /// array is as it was, but what was read is consumed. False also when the count cannot be read.
    bool GetParmUint16Array(UShortArray& array);
    bool GetParmUint32Array(UIntArray& array);
    bool GetParmSint16Array(ShortArray& array);
    bool GetParmSint32Array(IntArray& array);
    /// The same for texts; each missing text is a null element.
    bool GetParmStringArray(StringArray& array);

    /// Back to the first byte; always true.
    bool StartInputStream() override;
    /// Does nothing.
    void EndInputStream() override;
    /// Copies at most `n` readable bytes and returns the count. The destination may lie in the stream's own storage; a
    /// null one takes nothing.
    int ReceiveInputStream(char* destination, unsigned int n) override;
    /// True while something is readable, so that a stream without content is not open.
    bool isInputStreamOpen() override;
    /// Always false.
    bool isInputStreamInError() override;
    /// True while nothing is readable.
    bool isInputStreamAtEnd() override;

private:
    bool getBytes(void* value, int width);
    template<typename Value, typename ArrayType>
    bool getArray(ArrayType& array);
};

} // namespace utility
