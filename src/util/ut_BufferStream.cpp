#include "ut_BufferStream.h"

namespace utility {

BufferStream::BufferStream(int size) {
    setSize(size);
    allocBuffer();
}

BufferStream::BufferStream(char* data, int size, bool quiet) : PutStream(data, size) {
    setNoThrow(quiet);
}

BufferStream::BufferStream(char const* fileName) : GetStream(fileName) {}

BufferStream::~BufferStream() = default;

} // namespace utility
