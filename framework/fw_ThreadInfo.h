#pragma once

#include "fw_Export.h"

#include <pthread.h>

namespace framework {

/// The record of a thread: its number and its name.
///
/// A thread gets its record at its first `MyThreadInfo` and keeps it until the thread ends. The framework owns the
/// record. Numbers count upward from 1 and are not reused. Thread-safe.
///
///     framework::ThreadInfo::MyThreadInfo()->setThreadName("worker");
class VXFW_EXPORT ThreadInfo {
public:
    /// Returns the calling thread's record, or null if there is none yet. Async-signal-safe.
    static ThreadInfo* getMyself();
    /// Returns the calling thread's record, which is created on first use without an allocation, also in a signal
    /// handler. Null only if the platform has no thread-specific key left, or if the thread is past its last
    /// thread-exit destructor, where nothing could remove the record.
    static ThreadInfo* MyThreadInfo();

    /// Returns the thread's number.
    int getNum() const {
        return m_number;
    }
    /// Returns the thread's name, never null. Each slash of the name that was set is an underscore.
    const char* getThreadName() const {
        return m_name;
    }
    /// Names the thread. The name is truncated to 31 bytes; null counts as empty.
    void setThreadName(const char* name);

private:
    friend class GenericServiceManager;
    friend class ThreadRecords;

    explicit ThreadInfo(int number);
    ~ThreadInfo();

    int m_number;
    char m_name[32];
    pthread_t m_thread;
    ThreadInfo* m_next;
};

} // namespace framework
