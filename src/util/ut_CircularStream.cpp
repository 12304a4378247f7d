#include "ut_CircularStream.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace utility {

CircularStream::CircularStream(int capacity) : m_wrapped(false) {
    setSize(capacity);
    allocBuffer();
}

CircularStream::~CircularStream() = default;

int CircularStream::ReadAvailable() const {
    return unread();
}

int CircularStream::WriteRemaining() const {
    return Size();
}

void CircularStream::WriteAdvance(int n) {
    if (n < 1 || Size() < 1)
        return;
    // Unsigned, because a sum of two positive ints may overflow an int.
    const unsigned int count = static_cast<unsigned int>(n);
    const unsigned int capacity = static_cast<unsigned int>(Size());
    const bool overrunsReader = static_cast<unsigned int>(unread()) + count >= capacity;
    const unsigned int end = static_cast<unsigned int>(WritePosition()) + count;
    m_wrapped = m_wrapped || end >= capacity;
    setWritePosition(static_cast<int>(end % capacity));
    if (overrunsReader)
        setReadPosition(static_cast<int>((end + 1) % capacity));
}

void CircularStream::ReadAdvance(int n) {
    const int count = std::min(n, ReadAvailable());
    if (count < 1)
        return;
    // Compare with the bytes up to the end of the storage: the sum of position and count may overflow an int.
    const int tail = Size() - ReadPosition();
    setReadPosition(count < tail ? ReadPosition() + count : count - tail);
}

bool CircularStream::StartOutputStream() {
    Rewind();
    return true;
}

void CircularStream::EndOutputStream() {}

bool CircularStream::SendOutputStream(const char* data, unsigned int size) {
    while (data != nullptr && size > 0) {
        const int count = boundedRoom(static_cast<int>(std::min<unsigned int>(size, INT_MAX)));
        if (count < 1)
            break;
        std::memmove(pHead(), data, static_cast<std::size_t>(count));
        WriteAdvance(count);
        data += count;
        size -= static_cast<unsigned int>(count);
    }
    return true;
}

bool CircularStream::TransferFromInputStream(framework::InputStream& in) {
    // Copying a ring into itself would never end.
    return dynamic_cast<const CircularStream*>(&in) == this || OutputStream::TransferFromInputStream(in);
}

bool CircularStream::isOutputStreamOpen() {
    return true;
}

bool CircularStream::isOutputStreamInError() {
    return false;
}

bool CircularStream::isOutputStreamAtEnd() {
    return false;
}

bool CircularStream::StartInputStream() {
    const int oldest = m_wrapped ? WritePosition() + 1 : 0;
    setReadPosition(oldest < Size() ? oldest : 0);
    return true;
}

void CircularStream::EndInputStream() {}

int CircularStream::ReceiveInputStream(char* buffer, unsigned int size) {
    if (buffer == nullptr)
        return 0;
    const unsigned int available = static_cast<unsigned int>(std::max(ReadAvailable(), 0));
    const int wanted = static_cast<int>(std::min(available, size));
    int total = 0;
    while (total < wanted) {
        const int count = std::min(wanted - total, Size() - ReadPosition());
        if (count < 1)
            break;
        std::memmove(buffer + total, pTail(), static_cast<std::size_t>(count));
        ReadAdvance(count);
        total += count;
    }
    return total;
}

bool CircularStream::isInputStreamOpen() {
    return true;
}

bool CircularStream::isInputStreamInError() {
    return false;
}

bool CircularStream::isInputStreamAtEnd() {
    return ReadAvailable() < 1;
}

} // namespace utility
