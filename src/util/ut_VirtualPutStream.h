#pragma once

#include "ut_Export.h"
#include "ut_PutStream.h"

namespace utility {

/// Formats output of any length through a buffer of fixed size, which is handed to a target stream whenever it fills.
///
/// The target is kept, not owned, and must outlive the stream; the buffer is the stream's own or the caller's array.
/// What is held is not flushed by the destructor. One thread at a time. Output for a target that is closed or in error
/// is thrown away, so that it never blocks the writer; a target that is alive but refuses a send keeps its bytes
/// queued. Code 1239 is thrown for what fits neither into the buffer nor through it; with the no-throw flag it is
/// logged and dropped.
///
/// A target that answers false cannot tell how much of the send it took. All bytes of the send stay queued and are sent
/// again, so the reader sees twice what was taken: after a short write of `FileOutputStream`, for example. If no byte
/// may arrive twice, use a target that repeats short writes until the send is complete, and that goes into the error
/// state if it cannot complete it: the rest is then dropped.
///
///     utility::FileOutputStream file("/tmp/ports", false, 0600);
///     utility::VirtualPutStream out(file, 256, 200);
///     for (int i = 0; i < 1000; ++i) out.PutF("port %d\n", i);
///     out.FlushOutputStream();
class VXUT_EXPORT VirtualPutStream : public PutStream {
public:
    /// Own buffer of `size` bytes, flushed when `flushThreshold` bytes are held: never by itself when that is more than
    /// `size`, at every write when it is below 1. Throws code 1238 when there is no storage.
    VirtualPutStream(framework::OutputStream& target, int size, int flushThreshold);
    /// The caller's array of `size` bytes, the last of which is kept for the terminator.
    VirtualPutStream(framework::OutputStream& target, char* buffer, int size, int flushThreshold);
    /// No target and no storage; for derived classes that supply their own flushing.
    explicit VirtualPutStream(int flushThreshold);
    ~VirtualPutStream() override;

    /// Ends an earlier use, drops what is left of it, and starts the target; the target's answer.
    bool StartOutputStream() override;
    /// Flushes and ends the target.
    void EndOutputStream() override;
    /// Takes `size` bytes: straight to the target when nothing is held and output is not to be held, else through the
    /// buffer. True when all were taken.
    bool SendOutputStream(const char* data, unsigned int size) override;
    void FlushOutputStream() override;
    /// The target's states; a stream without a target is not open.
    bool isOutputStreamOpen() override;
    bool isOutputStreamInError() override;
    bool isOutputStreamAtEnd() override;
    /// Writes `length` bytes of `data`, flushing as often as it takes; null writes nothing.
    void PutB(const char* data, int length) override;
    /// The room in the buffer, after a flush when the threshold is reached.
    int WriteRemaining() const override;

    /// Whether sends go through the buffer also when nothing is held; false at construction.
    void setHoldOutput(bool hold) {
        m_holdOutput = hold;
    }
    /// Traces each flush; false at construction.
    void setTrace(bool trace) {
        m_trace = trace;
    }
    /// Bytes handed from the buffer to the target since the last start.
    int transferred() const {
        return m_transferred;
    }

protected:
    bool isTargetUsable() const;
    void countTransferred(int count);

    framework::OutputStream* m_target;

private:
    int m_flushThreshold;
    bool m_holdOutput;
    int m_transferred;
    bool m_trace;
};

} // namespace utility
