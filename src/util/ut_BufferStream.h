#pragma once

#include "ut_Export.h"

#include "ut_GetStream.h"
#include "ut_PutStream.h"

namespace utility {

/// Writes to and reads from one buffer: data is written at the write position and read at the read position.
///
/// The stream owns its storage or uses an array of the caller, which is never freed and must outlive the stream. One
/// thread at a time. Failures are those of `PutStream` and `GetStream`.
///
///     char text[32];
///     utility::BufferStream stream(text, sizeof text, false);
///     stream.PutF("%d ports", 4);   // text is "4 ports"
class VXUT_EXPORT BufferStream : public PutStream, public GetStream {
public:
    /// Allocates storage of `size` bytes. Throws code 1238 if the allocation fails or `size` is negative.
    explicit BufferStream(int size);
    /// Uses the caller's array `data` of `size` bytes; the last byte is reserved for the terminating NUL. `quiet` is
    /// the no-throw flag. Nothing fits if `data` is null or `size` is below 1.
    BufferStream(char* data, int size, bool quiet);
    /// Loads a whole file with `fromFile`; if it cannot be read, the stream is empty. Throws code 1238 if the
    /// allocation fails.
    explicit BufferStream(char const* fileName);
    /// Releases the storage if the stream owns it.
    ~BufferStream() override;
};

} // namespace utility
