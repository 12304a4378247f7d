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

/// Writes formatted text to a bounded buffer in memory; the base class of every formatting stream.
///
/// The storage belongs to the caller, is never freed, and must outlive the stream; derived streams may own their
/// storage. One thread at a time. Text that does not fit throws code 1239; what was written before the failure stays.
/// With the no-throw flag set, text that does not fit is truncated at a character boundary (UTF-8) and logged at level
/// 0 instead.
///
///     char text[64];
///     utility::PutStream out(text, sizeof text);
///     out.PutF("%s=%d", "ports", 4);   // text is "ports=4"
class VXUT_EXPORT PutStream : public framework::OutputStream, public Decorator, public virtual Buffer {
public:
    /// Creates a stream without storage: nothing fits until a derived class supplies storage.
    PutStream();
    /// Writes to the caller's `storage` of `size` bytes; the last byte is reserved for the terminating NUL. Nothing
    /// fits if `storage` is null or `size` is below 1.
    PutStream(char* storage, int size);
    /// Does not release a caller's storage.
    ~PutStream() override;

    /// Writes one character. With the no-throw flag, a character that does not fit is dropped and not logged.
    void PutC(char c);
    /// Writes `n` bytes of `data` without a terminating NUL; does nothing if `data` is null. Data that does not fit is
    /// not written at all; with the no-throw flag it is truncated.
    virtual void PutB(const char* data, int n);
    /// Writes the NUL-terminated `text`; does nothing if it is null. A text exactly as long as the remaining space does
    /// not fit: `WriteAdvance` throws code 1239 of "ut_Buffer", or with the no-throw flag moves the write position back
    /// to the read position. Callers rely on this: they keep one byte spare.
    void PutS(const char* text);
    /// Writes text formatted as `printf` does; writes nothing if `format` is null. If the text does not fit, writes the
    /// part that fits before throwing code 1239. If `vsnprintf` fails, writes nothing and fails in the same way, with
    /// the length -1 in the message.
    void PutF(const char* format, ...) VXUT_PRINTF(2, 3);
    /// Does what `PutF` does, with the arguments in a `va_list`.
    void PutV(const char* format, va_list arguments) VXUT_PRINTF(2, 0);
    /// Writes `n` blanks. If `n` is negative, writes blanks until one does not fit, at most the capacity plus one; the
    /// overflow is reported as by `PutC`.
    virtual void Indent(int n);

    /// Writes the readable bytes to the file `path`, which is created with permission bits 0666 or truncated first. The
    /// bytes stay readable. Returns false if `path` is null, or the file cannot be opened or cannot seek. Otherwise
    /// compares the result of the send as a number (0 or 1) with the byte count. Callers rely on this: they see true
    /// for one byte written and false for any other count.
    bool ToFile(const char* path);

    /// @name Compact parameter encoding
    ///
    /// Values are written in the byte order of the platform, without tags or padding. Read them back in the same order
    /// with the `GetParm` operations of `GetStream`. A value that does not fit throws code 1239 with an empty message;
    /// with the no-throw flag it is not written.
    /// @{

    /// Writes two bytes.
    void PutParmUint16(uint16_t value);
    /// Writes two bytes.
    void PutParmSint16(int16_t value);
    /// Writes four bytes.
    void PutParmUint32(uint32_t value);
    /// Writes four bytes.
    void PutParmSint32(int32_t value);
    /// Writes the text and its terminating NUL. Do not pass null: nothing is written for it, and the reader then reads
    /// the next field as the text.
    void PutParmString(const char* text);
    /// Writes a 32-bit length and `length` bytes of `block`. With the no-throw flag set, the block is truncated to the
    /// space left, and the truncated length is written. A null `block` or a negative `length` counts as empty.
    void PutParmBuf(char* block, int length);
    /// Writes a 32-bit count and the elements. An array that does not fit is not written at all. With the no-throw flag
    /// set, the full count is written even if later elements do not fit and are dropped: readers then read past the
    /// written elements.
    void PutParmUint16Array(UShortArray& array);
    /// Does what `PutParmUint16Array` does, for unsigned 32-bit elements.
    void PutParmUint32Array(UIntArray& array);
    /// Does what `PutParmUint16Array` does, for signed 16-bit elements.
    void PutParmSint16Array(ShortArray& array);
    /// Does what `PutParmUint16Array` does, for signed 32-bit elements.
    void PutParmSint32Array(IntArray& array);
    /// Writes a 32-bit count and the texts, each as `PutParmString` does; nothing is written for a null element. Only
    /// the space for the count is checked in advance: if a text does not fit, the texts before it are already written
    /// when code 1239 is thrown.
    void PutParmStringArray(StringArray& array);
    /// @}

    /// Discards the content; always returns true.
    bool StartOutputStream() override;
    /// Does nothing.
    void EndOutputStream() override;
    /// Writes as much of `data` as fits, but advances the write position by the full `n`: if not all fits, throws code
    /// 1239 of "ut_Buffer", or, with the no-throw flag set, leaves the stream full. Returns whether all was written. A
    /// null `data` is not written; the result is then true only if `n` is 0.
    bool SendOutputStream(const char* data, unsigned int n) override;
    /// Returns whether any space is left.
    bool isOutputStreamOpen() override;
    /// Returns whether the stream is full.
    bool isOutputStreamInError() override;
    /// Returns whether the stream is full.
    bool isOutputStreamAtEnd() override;

protected:
    /// A flag for derived streams that render decorations. This class only initializes it.
    bool m_decorating;

private:
    bool putCharacter(char c);
    VXUT_HIDDEN bool putText(const char* text, int space);
    int formatAtHead(int remaining, const char* format, va_list arguments) VXUT_PRINTF(3, 0);
    bool advanceFormatted(int wrote, int remaining);
    template<typename Number>
    VXUT_HIDDEN bool putValue(Number value);
    template<typename Number>
    VXUT_HIDDEN bool putValueSlowly(Number value);
    bool fitsArray(unsigned int count, unsigned int width) const;
    template<typename ArrayType, typename Writer>
    void putArray(ArrayType& array, Writer put);
};

} // namespace utility
