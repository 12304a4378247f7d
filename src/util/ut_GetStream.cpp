#include "ut_GetStream.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <type_traits>

#include "internal/ut_Failure.h"
#include "internal/ut_OwnPositions.h"
#include "internal/ut_Trace.h"
#include "ut_FileInputStream.h"
#include "ut_IntArray.h"
#include "ut_ShortArray.h"
#include "ut_StringArray.h"
#include "ut_UIntArray.h"
#include "ut_UShortArray.h"

namespace utility {

namespace {

// How many missing elements of an array are replaced by the last value. A count with more missing elements does not
// come from a truncated array but from hostile data.
constexpr unsigned int maxMissingElements = 65535;

} // namespace

GetStream::GetStream() = default;

GetStream::GetStream(const char* path) {
    fromFile(path);
}

GetStream::GetStream(const char* text, int length) {
    supplyStorage(const_cast<char*>(text), length, true);
}

GetStream::~GetStream() = default;

bool GetStream::fromFile(const char* path) {
    FileInputStream file(path);
    if (!file.StartInputStream())
        return false;
    setSize(std::max(file.GetInputStreamSize(), 0));
    if (Size() < 1)
        return true;
    allocBuffer();
    if (Size() < 1)
        return true;
    const int count = file.ReceiveInputStream(pBuffer(), static_cast<unsigned int>(Size()));
    if (count > 0)
        setWritePosition(count);
    return true;
}

bool GetStream::GetC(char* out) {
    if (const char* const tail = claimTail(1); tail != nullptr) {
        if (out != nullptr)
            *out = *tail;
        return true;
    }
    if (readAvailable() < 1 || boundedReadable(1) < 1)
        return false;
    if (out != nullptr)
        *out = *pTail();
    readAdvance(1);
    return true;
}

char* GetStream::GetLine() {
    const int available = boundedReadable(readAvailable());
    if (available == 0)
        return nullptr;
    char* start = pTail();
    char* newline = static_cast<char*>(std::memchr(start, '\n', static_cast<std::size_t>(available)));
    if (newline == nullptr)
        return nullptr;
    *newline = 0;
    readAdvance(static_cast<int>(newline + 1 - start));
    return start;
}

char* GetStream::ReadLine() {
    const int available = boundedReadable(readAvailable());
    if (available == 0)
        return nullptr;
    char* start = pTail();
    char* newline = static_cast<char*>(std::memchr(start, '\n', static_cast<std::size_t>(available)));
    char* next = nullptr;
    if (newline != nullptr) {
        *newline = 0;
        next = newline + 1;
    } else {
        // The storage is full and has no byte for a NUL: the line cannot be terminated in place.
        if (!isTerminable())
            return nullptr;
        terminate();
        next = pHead();
    }
    const int advance = static_cast<int>(next - start);
    // Trace the earlier count: `ReadAvailable` would refill the buffer of a stream with a source.
    VXUT_TRACE(TOKEN_GET_STREAM, "advancing %d, readavailable %d", advance, available);
    readAdvance(advance);
    return start;
}

char& GetStream::operator[](unsigned int index) {
    const int position = static_cast<int>(index);
    if (position < ReadPosition() || position > WritePosition() || !isStored(position))
        VXUT_THROW(FAILURE_STREAM_INDEX, "");
    return pBuffer()[position];
}

template<typename Number>
[[gnu::always_inline]] inline bool GetStream::getValue(Number* value) {
    const char* const tail = value != nullptr ? claimTail(sizeof *value) : nullptr;
    if (tail == nullptr)
        return getBytes(value, sizeof *value);
    std::memcpy(value, tail, sizeof *value);
    return true;
}

bool GetStream::getBytes(void* value, int width) {
    if (value == nullptr || ReadAvailable() < width || boundedReadable(width) < width)
        return false;
    std::memcpy(value, pTail(), static_cast<std::size_t>(width));
    ReadAdvance(width);
    return true;
}

bool GetStream::GetParmUint16(unsigned short* value) {
    return getValue(value);
}

bool GetStream::GetParmSint16(short* value) {
    return getValue(value);
}

bool GetStream::GetParmUint32(unsigned int* value) {
    return getValue(value);
}

bool GetStream::GetParmSint32(int* value) {
    return getValue(value);
}

char* GetStream::claimText() {
    const auto available = static_cast<std::size_t>(boundedReadable(INT_MAX));
    if (available == 0 || !hasOwnReading())
        return nullptr;
    const char* const start = pTail();
    const void* const end = std::memchr(start, 0, available);
    return end != nullptr ? claimTail(static_cast<int>(static_cast<const char*>(end) - start) + 1) : nullptr;
}

char* GetStream::GetParmString() {
    if (char* const text = claimText(); text != nullptr)
        return text;
    const int available = boundedReadable(readAvailable());
    if (available < 1)
        return nullptr;
    char* text = pTail();
    const int length = static_cast<int>(strnlen(text, static_cast<std::size_t>(available)));
    if (length == available) {
        if (!isTerminable())
            return nullptr;
        // Do not write to constant storage, which already ends in a NUL.
        if (*pHead() != 0)
            terminate();
    }
    readAdvance(std::min(length + 1, available));
    return text;
}

int GetStream::GetParmBuf(char* destination, int maximum) {
    int length = 0;
    if (!getValue(&length))
        return 0;
    const char* const block = destination != nullptr && length <= maximum ? claimTail(length) : nullptr;
    if (block != nullptr) {
        std::memmove(destination, block, static_cast<std::size_t>(length));
        return length;
    }
    const int count = boundedReadable(std::min({length, maximum, readAvailable()}));
    if (count > 0 && destination != nullptr)
        std::memmove(destination, pTail(), static_cast<std::size_t>(count));
    readAdvance(length);
    return length;
}

template<typename ArrayType>
bool GetStream::getArray(ArrayType& array, unsigned int arraySwitch) {
    std::decay_t<decltype(array[0])> value = 0;
    const unsigned int before = array.length();
    unsigned int count = 0;
    unsigned int missing = 0;
    if (!GetParmUint32(&count))
        return false;
    const unsigned int atOnce = appendReadable(array, sizeof value, count, arraySwitch);
    if (atOnce > 0)
        value = array[array.length() - 1];
    for (unsigned int i = atOnce; i < count; ++i) {
        if (!getValue(&value) && ++missing > maxMissingElements) {
            array.truncate(before);
            return false;
        }
        array.Append(value);
    }
    return true;
}

unsigned int GetStream::appendReadable(Array& array, int width, unsigned int count, unsigned int arraySwitch) {
    // One by one where the switches of the array show each element.
    if (!hasOwnReading() || Debug::isDebugOn(arraySwitch) || Debug::isDebugOn(strings::TOKEN_ARRAY))
        return 0;
    const unsigned int elements = std::min(count, static_cast<unsigned int>(boundedReadable(INT_MAX) / width));
    if (!array.appendBlock(pTail(), elements, static_cast<std::size_t>(width)))
        return 0;
    claimTail(static_cast<int>(elements) * width);
    return elements;
}

bool GetStream::GetParmUint16Array(UShortArray& array) {
    return getArray(array, strings::TOKEN_USHORT_ARRAY);
}

bool GetStream::GetParmUint32Array(UIntArray& array) {
    return getArray(array, strings::TOKEN_UINT_ARRAY);
}

bool GetStream::GetParmSint16Array(ShortArray& array) {
    return getArray(array, strings::TOKEN_SHORT_ARRAY);
}

bool GetStream::GetParmSint32Array(IntArray& array) {
    return getArray(array, strings::TOKEN_INT_ARRAY);
}

bool GetStream::GetParmStringArray(StringArray& array) {
    const unsigned int before = array.length();
    unsigned int count = 0;
    unsigned int missing = 0;
    if (!GetParmUint32(&count))
        return false;
    for (unsigned int i = 0; i < count; ++i) {
        const char* text = GetParmString();
        if (text == nullptr && ++missing > maxMissingElements) {
            while (array.length() > before)
                array.DeleteAt(array.length() - 1);
            return false;
        }
        array.Append(text);
    }
    return true;
}

bool GetStream::StartInputStream() {
    setReadPosition(0);
    return true;
}

void GetStream::EndInputStream() {}

int GetStream::ReceiveInputStream(char* destination, unsigned int n) {
    const int available = boundedReadable(readAvailable());
    const int count = n < static_cast<unsigned int>(available) ? static_cast<int>(n) : available;
    if (destination == nullptr || count == 0)
        return 0;
    // The destination may overlap the source: it may be in the stream's own storage.
    std::memmove(destination, pTail(), static_cast<std::size_t>(count));
    readAdvance(count);
    return count;
}

bool GetStream::isInputStreamOpen() {
    return readAvailable() > 0;
}

bool GetStream::isInputStreamInError() {
    return false;
}

bool GetStream::isInputStreamAtEnd() {
    return readAvailable() < 1;
}

} // namespace utility
