#include "internal/ut_WholeText.h"

#include <climits>
#include <cstring>

#include "internal/ut_OwnPositions.h"
#include "ut_PutStream.h"

namespace utility {

namespace {

// Gives access to the protected operations of every buffer.
class OpenBuffer : public Buffer {
public:
    static bool put(Buffer& buffer, const char* text, int length) {
        char* const head = (buffer.*&OpenBuffer::claimHead)(length);
        if (head == nullptr)
            return false;
        std::memcpy(head, text, static_cast<std::size_t>(length));
        (buffer.*&OpenBuffer::terminate)();
        return true;
    }
};

} // namespace

bool putWhole(PutStream& out, const char* text, std::size_t length) {
    return length <= INT_MAX && OpenBuffer::put(out, text, static_cast<int>(length));
}

void putCharacters(PutStream& out, const char* text, std::size_t length) {
    if (putWhole(out, text, length))
        return;
    for (std::size_t i = 0; i < length; ++i)
        out.PutC(text[i]);
}

} // namespace utility
