#pragma once

#include "ut_Export.h"
#include "ut_GetStream.h"

namespace utility {

/// Reads input of any length through a buffer of fixed size, which is filled from a source stream on demand.
///
/// The source is kept, not owned, and must outlive the stream; the buffer is the stream's own or the caller's array,
/// which is never freed. Bytes can be looked at by their offset in the whole input as long as they are held. One thread
/// at a time. A source that gives 0 bytes is asked again as long as it stays good, which a file at its end does not.
/// With waiting off, 0 bytes end the input at once and "Response not received: Timed out" is logged, also at the end of
/// a file. An offset that is not held throws code 1240.
///
///     utility::FileInputStream file("/etc/hosts");
///     utility::VirtualGetStream in(file, 256, 16, 128, nullptr);
///     if (in.StartInputStream()) {
///         while (char* line = in.ReadLine()) use(line);
///     }
class VXUT_EXPORT VirtualGetStream : public GetStream {
public:
    /// A buffer of `size` bytes: the caller's `buffer`, or own storage when that is null (code 1238 when there is
    /// none). `keepBehind` bytes stay held before the highest offset asked for; fewer than `lowWater` bytes held are a
    /// reason to refill.
    VirtualGetStream(framework::InputStream& source, int size, int keepBehind, int lowWater, char* buffer);
    /// No source and no storage; for derived classes, which set them with `setSource` and `allocBuffer`.
    VirtualGetStream(int keepBehind, int lowWater);
    ~VirtualGetStream() override;

    /// Drops what is no longer needed and receives once from the source.
    void load();
    /// Drops everything before `offset`, which becomes offset 0: callers count afresh from there. Throws code 1240 when
    /// `offset` is not held.
    void MoveTo(unsigned int offset);
    /// Makes the present read position offset 0.
    void MoveTo();

    /// Bytes held, after a refill when they are fewer than the low water mark.
    int ReadAvailable() const override;
    /// The byte at `index` of the whole input, after a refill when it comes close to the end of what is held. At the
    /// write position it is a NUL. An offset that was dropped or is not there yet throws code 1240 and is logged.
    char& operator[](unsigned int index) override;
    /// Starts the source and fills the buffer; the source's answer.
    bool StartInputStream() override;
    /// Ends the source and drops what is held.
    void EndInputStream() override;
    /// Copies at most `size` bytes, and no more than one buffer full; 0 when the source is exhausted.
    int ReceiveInputStream(char* buffer, unsigned int size) override;
    /// The source's states; a stream without a source is not open and at its end.
    bool isInputStreamOpen() override;
    bool isInputStreamInError() override;
    /// False while bytes are held.
    bool isInputStreamAtEnd() override;

    /// Whether a source that gives 0 bytes is asked again; true at construction. One that fails and stays good all the
    /// same is asked again in any case, but while this is false no more than 1000 times in one refill.
    void setWaitForData(bool wait) {
        m_waitForData = wait;
    }
    /// Traces each step; false at construction.
    void setTrace(bool trace) {
        m_trace = trace;
    }
    /// Bytes received from the source since the last start.
    int received() const {
        return m_received;
    }

protected:
    /// Reads from `source` from now on; null is no source. The source is kept, not owned; it is neither started nor
    /// ended here. Bytes held from the former source stay readable, and offsets continue after them.
    void setSource(framework::InputStream* source) {
        m_source = source;
    }

private:
    void dropRead();
    bool isHeld(int position) const;
    bool isSourceOpen() const {
        return m_source != nullptr && m_source->isInputStreamOpen();
    }
    bool isSourceInError() const {
        return m_source != nullptr && m_source->isInputStreamInError();
    }
    bool isSourceAtEnd() const {
        return m_source == nullptr || m_source->isInputStreamAtEnd();
    }

    framework::InputStream* m_source;
    int m_keepBehind;
    int m_lowWater;
    int m_maxIndex;
    int m_base;
    int m_received;
    bool m_waitForData;
    bool m_trace;
    char m_behind; // stands for the byte behind a full array of the caller's
};

} // namespace utility
