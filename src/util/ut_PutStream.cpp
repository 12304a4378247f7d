#include "ut_PutStream.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>

#include "fw_Logger.h"
#include "internal/ut_Failure.h"
#include "internal/ut_Format.h"
#include "internal/ut_OwnPositions.h"
#include "ut_FileOutputStream.h"
#include "ut_IntArray.h"
#include "ut_ShortArray.h"
#include "ut_StringArray.h"
#include "ut_UIntArray.h"
#include "ut_UShortArray.h"

namespace utility {

namespace {

// Throws an overflow with a formatted message, truncated to 199 characters. Out of line, because the text would need
// space on the stack of every write.
[[noreturn, gnu::cold, gnu::noinline]] void throwOverflow(int line, const char* function, const char* format, ...)
    VXUT_PRINTF(3, 4);

void throwOverflow(int line, const char* function, const char* format, ...) {
    char text[200];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    static constexpr SourceFileName sourceFileName(__FILE__);
    throwFailure(framework::Exception::FAILURE_BUFFER, sourceFileName.text, line, function, text, true);
}

} // namespace

PutStream::PutStream() : m_decorating(false) {}

PutStream::PutStream(char* storage, int size) : m_decorating(false) {
    supplyArray(storage, size);
}

PutStream::~PutStream() = default;

void PutStream::PutC(char c) {
    if (putDirectly(c) || putCharacter(c) || isNoThrow())
        return;
    VXUT_THROW(FAILURE_BUFFER, "");
}

bool PutStream::putCharacter(char c) {
    if (boundedRoom(WriteRemaining()) < 1)
        return false;
    *pHead() = c;
    writeAdvance(1);
    terminate();
    return true;
}

void PutStream::PutB(const char* data, int n) {
    if (data == nullptr)
        return;
    if (char* const head = claimHead(n); head != nullptr) {
        std::memcpy(head, data, static_cast<std::size_t>(n));
        return;
    }
    const int remaining = WriteRemaining();
    const int space = boundedRoom(remaining);
    if (space >= n) {
        if (n > 0)
            std::memcpy(pHead(), data, static_cast<std::size_t>(n));
        writeAdvance(n);
        return;
    }
    if (!isNoThrow()) {
        throwOverflow(__LINE__, __PRETTY_FUNCTION__, "Didn't fit. size=%d remaining=%d msg='%.*s'", n, remaining,
                      std::min(n, 90), data);
    }
    framework::Logger::StaticLog(framework::Logger::LOG_ERROR,
                                 "PutStream::PutB: Didn't fit. size=%d remaining=%d msg='%.*s'", n, remaining,
                                 std::min(n, 200), data);
    if (space > 0)
        std::memcpy(pHead(), data, static_cast<std::size_t>(space));
    writeAdvance(space);
    truncatePartialUtf8();
}

void PutStream::PutS(const char* text) {
    if (text == nullptr || putDirectly(text, 0))
        return;
    const int remaining = WriteRemaining();
    if (putText(text, boundedRoom(remaining)))
        return;
    if (!isNoThrow())
        throwOverflow(__LINE__, __PRETTY_FUNCTION__, "Didn't fit. remaining=%d msg='%.90s'", remaining, text);
    framework::Logger::StaticLog(framework::Logger::LOG_ERROR, "PutStream::PutS: Didn't fit. remaining=%d msg='%.200s'",
                                 remaining, text);
    truncatePartialUtf8();
}

bool PutStream::putText(const char* text, int space) {
    const int length = static_cast<int>(strnlen(text, static_cast<std::size_t>(space) + 1));
    if (length < space) {
        std::memcpy(pHead(), text, static_cast<std::size_t>(length) + 1);
        writeAdvance(length);
        return true;
    }
    if (space > 0)
        std::memcpy(pHead(), text, static_cast<std::size_t>(space));
    if (length == space) {
        // Callers rely on this advance for a text that fills the space exactly: it is always refused.
        WriteAdvance(-1 - WritePosition());
        return true;
    }
    WriteAdvance(space);
    return false;
}

void PutStream::PutF(const char* format, ...) {
    const int remaining = writeRemaining();
    va_list arguments;
    va_start(arguments, format);
    const int wrote = formatAtHead(remaining, format, arguments);
    va_end(arguments);
    if (advanceFormatted(wrote, remaining))
        return;
    if (!isNoThrow()) {
        throwOverflow(__LINE__, __PRETTY_FUNCTION__, "Didn't fit. wrote=%d remaining=%d msg='%.90s'", wrote, remaining,
                      format);
    }
    framework::Logger::StaticLog(framework::Logger::LOG_ERROR,
                                 "PutStream::PutF: Didn't fit. wrote=%d remaining=%d msg='%.200s'", wrote, remaining,
                                 format);
    truncatePartialUtf8();
}

void PutStream::PutV(const char* format, va_list arguments) {
    const int remaining = writeRemaining();
    const int wrote = formatAtHead(remaining, format, arguments);
    if (advanceFormatted(wrote, remaining)) {
        terminate();
        return;
    }
    if (!isNoThrow()) {
        throwOverflow(__LINE__, __PRETTY_FUNCTION__, "Didn't fit. wrote=%d remaining=%d msg='%.90s'", wrote, remaining,
                      format);
    }
    framework::Logger::StaticLog(framework::Logger::LOG_ERROR,
                                 "PutStream::PutV: Didn't fit. wrote=%d remaining=%d msg='%.200s'", wrote, remaining,
                                 format);
    truncatePartialUtf8();
}

int PutStream::formatAtHead(int remaining, const char* format, va_list arguments) {
    if (format == nullptr)
        return 0;
    if (!isTerminable())
        return formatText(nullptr, 0, format, arguments);
    return formatText(pHead(), static_cast<std::size_t>(boundedRoom(remaining)) + 1, format, arguments);
}

bool PutStream::advanceFormatted(int wrote, int remaining) {
    const int space = boundedRoom(remaining);
    const bool fits = wrote >= 0 && wrote <= space;
    // A negative count means that `vsnprintf` failed: discard its output.
    writeAdvance(wrote < 0 ? 0 : std::min(wrote, space));
    if (wrote < 0)
        terminate();
    return fits;
}

void PutStream::Indent(int n) {
    for (; n > 0; --n)
        PutC(' ');
    if (n == 0)
        return;
    // Bound the loop: the capacity plus one blank always overflows the stream.
    for (long long blanks = std::max(Size(), 0) + 1LL; blanks > 0; --blanks) {
        if (!isNoThrow())
            PutC(' ');
        else if (!putCharacter(' '))
            return;
    }
}

bool PutStream::ToFile(const char* path) {
    FileOutputStream file(path, false, 0666);
    if (!file.StartOutputStream())
        return false;
    const int available = boundedReadable(readAvailable());
    // Compare as numbers: callers rely on true for a count of one byte only.
    return static_cast<int>(file.SendOutputStream(pTail(), static_cast<unsigned int>(available))) == available;
}

template<typename Number>
[[gnu::always_inline]] inline bool PutStream::putValue(Number value) {
    char* const head = claimHead(sizeof value);
    if (head == nullptr)
        return putValueSlowly(value);
    std::memcpy(head, &value, sizeof value);
    return true;
}

// Out of line, because the address of `value` would cost every caller a protected stack frame.
template<typename Number>
[[gnu::noinline]] bool PutStream::putValueSlowly(Number value) {
    if (boundedRoom(WriteRemaining()) < static_cast<int>(sizeof value))
        return false;
    std::memcpy(pHead(), &value, sizeof value);
    WriteAdvance(sizeof value);
    return true;
}

void PutStream::PutParmUint16(uint16_t value) {
    if (!putValue(value) && !isNoThrow())
        VXUT_THROW(FAILURE_BUFFER, "");
}

void PutStream::PutParmSint16(int16_t value) {
    if (!putValue(value) && !isNoThrow())
        VXUT_THROW(FAILURE_BUFFER, "");
}

void PutStream::PutParmUint32(uint32_t value) {
    if (!putValue(value) && !isNoThrow())
        VXUT_THROW(FAILURE_BUFFER, "");
}

void PutStream::PutParmSint32(int32_t value) {
    if (!putValue(value) && !isNoThrow())
        VXUT_THROW(FAILURE_BUFFER, "");
}

void PutStream::PutParmString(const char* text) {
    if (text == nullptr)
        return;
    if (putDirectly(text, 1)) {
        terminate();
        return;
    }
    PutS(text);
    PutC(0);
}

void PutStream::PutParmBuf(char* block, int length) {
    const int lengthWidth = 4;
    char* const head = block != nullptr && length >= 0
                           ? claimHead(length < INT_MAX - lengthWidth ? lengthWidth + length : -1)
                           : nullptr;
    if (head != nullptr) {
        std::memcpy(head, &length, sizeof length);
        std::memcpy(head + lengthWidth, block, static_cast<std::size_t>(length));
        return;
    }
    const int space = boundedRoom(writeRemaining());
    int n = space - lengthWidth;
    if (n < 0) {
        if (isNoThrow())
            return;
        VXUT_THROW(FAILURE_BUFFER, "");
    }
    const int wanted = block != nullptr ? std::max(length, 0) : 0;
    if (wanted <= n) {
        n = wanted;
    } else if (!isNoThrow()) {
        VXUT_THROW(FAILURE_BUFFER, "");
    }
    PutParmUint32(static_cast<uint32_t>(n));
    n = std::min(n, boundedRoom(writeRemaining()));
    if (n > 0)
        std::memcpy(pHead(), block, static_cast<std::size_t>(n));
    writeAdvance(n);
}

bool PutStream::fitsArray(unsigned int count, unsigned int width) const {
    const long long space = boundedRoom(writeRemaining());
    return isNoThrow() || space >= 4 + static_cast<long long>(count) * width;
}

template<typename ArrayType, typename Writer>
void PutStream::putArray(ArrayType& array, Writer put) {
    const uint32_t count = array.length();
    if (!putValue(count) || count == 0)
        return;
    const std::size_t bytes = std::size_t{count} * sizeof array[0];
    if (char* const head = bytes <= INT_MAX ? claimHead(static_cast<int>(bytes)) : nullptr; head != nullptr) {
        std::memcpy(head, &array[0], bytes);
        return;
    }
    for (uint32_t i = 0; i < count; ++i)
        (this->*put)(array[i]);
}

void PutStream::PutParmUint16Array(UShortArray& array) {
    if (!fitsArray(array.length(), sizeof(uint16_t)))
        VXUT_THROW(FAILURE_BUFFER, "");
    putArray(array, &PutStream::PutParmUint16);
}

void PutStream::PutParmUint32Array(UIntArray& array) {
    if (!fitsArray(array.length(), sizeof(uint32_t)))
        VXUT_THROW(FAILURE_BUFFER, "");
    putArray(array, &PutStream::PutParmUint32);
}

void PutStream::PutParmSint16Array(ShortArray& array) {
    if (!fitsArray(array.length(), sizeof(int16_t)))
        VXUT_THROW(FAILURE_BUFFER, "");
    putArray(array, &PutStream::PutParmSint16);
}

void PutStream::PutParmSint32Array(IntArray& array) {
    if (!fitsArray(array.length(), sizeof(int32_t)))
        VXUT_THROW(FAILURE_BUFFER, "");
    putArray(array, &PutStream::PutParmSint32);
}

void PutStream::PutParmStringArray(StringArray& array) {
    if (!fitsArray(0, 0))
        VXUT_THROW(FAILURE_BUFFER, "");
    const uint32_t count = array.length();
    if (!putValue(count))
        return;
    for (uint32_t i = 0; i < count; ++i)
        PutParmString(array[i]);
}

bool PutStream::StartOutputStream() {
    Rewind();
    return true;
}

void PutStream::EndOutputStream() {}

bool PutStream::SendOutputStream(const char* data, unsigned int n) {
    if (data == nullptr)
        return n == 0;
    const unsigned int count = std::min(n, static_cast<unsigned int>(boundedRoom(writeRemaining())));
    if (count > 0)
        std::memcpy(pHead(), data, count);
    // Advance by the full size: callers rely on the failure, or with the no-throw flag on a full stream.
    writeAdvance(static_cast<int>(std::min<unsigned int>(n, INT_MAX)));
    terminate();
    return n == count;
}

bool PutStream::isOutputStreamOpen() {
    return writeRemaining() > 0;
}

bool PutStream::isOutputStreamInError() {
    return writeRemaining() < 1;
}

bool PutStream::isOutputStreamAtEnd() {
    return writeRemaining() < 1;
}

} // namespace utility
