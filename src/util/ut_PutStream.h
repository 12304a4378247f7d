#pragma once

#include "ut_Export.h"

#include <cstdarg>
#include <cstdint>

#include "ut_Buffer.h"
#include "ut_Decorator.h"
#include "ut_OutputStream.h"

namespace utility {

class IntArray;
class ShortArray;
class StringArray;
class UIntArray;
class UShortArray;

/// A bounded in-memory text, written with printf-like operations; the base of every formatting stream.
///
/// The storage is the caller's, is never freed, and must outlive the stream; derived streams bring their own. One
/// thread at a time. What does not fit throws code 1239, with what was already written left in place. With the no-throw
/// flag it is cut at a whole UTF-8 character instead, and the cut is logged at level 0.
///
///     char text[64];
///     utility::PutStream out(text, sizeof text);
///     out.PutF("%s=%d", "ports", 4);   // text is "ports=4"
class VXUT_EXPORT PutStream : public framework::OutputStream, public Decorator, public virtual Buffer {
public:
    /// No storage: nothing fits until a derived class supplies some.
    PutStream();
    /// Writes into the caller's `storage` of `size` bytes, the last of which is kept for the terminator. A null
    /// storage, or a size below 1, takes nothing.
    PutStream(char* storage, int size);
    ~PutStream() override;

    /// Writes one character. With the no-throw flag one that does not fit is dropped silently.
    void PutC(char c);
    /// Writes `n` bytes of `data` without a terminator; null writes nothing. A block that does not fit is not written
    /// at all, or with the no-throw flag cut.
    virtual void PutB(const char* data, int n);
    /// Writes `text` up to its terminator; null writes nothing. A text exactly as long as the room is refused by the
    /// write position (code 1239 of "ut_Buffer"; with the no-throw flag the position falls back to the read position):
    /// callers rely on one byte to spare.
    void PutS(const char* text);
    /// Writes formatted text; a null format writes nothing. A text that does not fit is written as far as it does
    /// before the failure is thrown. A format that the platform cannot carry out fails in the same way, with nothing
    /// written and -1 as the length shown.
    void PutF(const char* format, ...) VXUT_PRINTF(2, 3);
    /// The same with the arguments in a list.
    void PutV(const char* format, va_list arguments) VXUT_PRINTF(2, 0);
    /// Writes `n` blanks. A negative `n` writes blanks until one does not fit, so that callers see the overflow, and at
    /// most one more than the stream holds.
    virtual void Indent(int n);

    /// Writes the readable bytes to the file `path`, made with permission bits 0666 or emptied first, and leaves them
    /// readable. False when the file cannot be opened or cannot seek; null is no file. Otherwise the result compares
    /// the file stream's answer with the byte count as numbers: callers see true for one byte written, and false for
    /// any other count.
    bool ToFile(const char* path);

    /// Writers of the compact parameter encoding: values as they lie in memory, without tags or padding, to be read
    /// back in the same order with the `GetParm` operations of `GetStream`. What does not fit throws code 1239 with an
    /// empty message; with the no-throw flag it is not written.
    void PutParmUint16(uint16_t value);
    void PutParmSint16(int16_t value);
    void PutParmUint32(uint32_t value);
    void PutParmSint32(int32_t value);
    /// Writes the text and its terminator. A null text writes nothing at all, so the reader takes the next field for
    /// the text: callers never pass null.
    void PutParmString(const char* text);
    /// Writes a 32-bit length and `length` bytes of `block`. With the no-throw flag the block is cut to what fits, and
    /// the length written is that of the cut block. A null block or a negative length counts as empty.
    void PutParmBuf(char* block, int length);
    /// Write a 32-bit count and the elements. With the no-throw flag the count is always the full one, even when later
    /// elements are dropped for want of room: readers then read beyond the written elements.
    void PutParmUint16Array(UShortArray& array);
    void PutParmUint32Array(UIntArray& array);
    void PutParmSint16Array(ShortArray& array);
    void PutParmSint32Array(IntArray& array);
    /// Writes a 32-bit count and the texts. Only the room for the count is tested beforehand. A null element writes
    /// nothing at all.
    void PutParmStringArray(StringArray& array);

    /// Drops what was written; always true.
    bool StartOutputStream() override;
    void EndOutputStream() override;
    /// Takes as much of `data` as fits, but moves the write position by the whole `n`: a short buffer throws code 1239
    /// of "ut_Buffer", or with the no-throw flag is full. True when all was taken. Null takes nothing.
    bool SendOutputStream(const char* data, unsigned int n) override;
    bool isOutputStreamOpen() override;
    bool isOutputStreamInError() override;
    bool isOutputStreamAtEnd() override;

protected:
    /// For derived streams that decorate; nothing here reads or changes it.
    bool m_decorating;

private:
    bool putCharacter(char c);
    int formatAtHead(int remaining, const char* format, va_list arguments) VXUT_PRINTF(3, 0);
    bool advanceFormatted(int wrote, int remaining);
    bool putBytes(const void* value, int width);
    bool hasRoomForArray(unsigned int count, unsigned int width) const;
    template<typename ArrayType, typename Writer>
    void putArray(ArrayType& array, Writer put);
};

} // namespace utility
