#pragma once

#include <cstddef>

// Writes text that is formatted outside the streams; for the library's sources, not for its callers.

namespace utility {

class PutStream;

/// Writes `length` bytes of `text` and a NUL after them, and moves the write position over the bytes. Returns false and
/// does nothing if they do not fit, or if a derived class overrides `WriteRemaining` or `WriteAdvance`: use the
/// operations of the stream then.
bool putWhole(PutStream& out, const char* text, std::size_t length);
/// Does what one `PutC` for each of `length` characters of `text` does.
void putCharacters(PutStream& out, const char* text, std::size_t length);

} // namespace utility
