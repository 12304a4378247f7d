#pragma once

#include "ut_Export.h"
#include "ut_GetStream.h"
#include "ut_PutStream.h"

namespace utility {

/// A writer and a reader over one buffer: what is put at the write position is got from the read position.
///
/// The storage is the stream's own, or the caller's array, which is never freed and must outlive the stream. One thread
/// at a time. Failures are those of `PutStream` and `GetStream`.
///
///     char text[32];
///     utility::BufferStream stream(text, sizeof text, false);
///     stream.PutF("%d ports", 4);   // text is "4 ports"
class VXUT_EXPORT BufferStream : public PutStream, public GetStream {
public:
    /// Own storage of `size` bytes. Throws code 1238 when there is none, also for a negative size.
    explicit BufferStream(int size);
    /// The caller's array of `size` bytes, the last of which is kept for the terminator; `quiet` is the no-throw flag.
    /// With a null array, or a size below 1, nothing fits.
    BufferStream(char* data, int size, bool quiet);
    /// Loads a whole file; one that cannot be read leaves an empty stream. Throws code 1238 when there is no storage.
    explicit BufferStream(char const* fileName);
    ~BufferStream() override;
};

} // namespace utility
