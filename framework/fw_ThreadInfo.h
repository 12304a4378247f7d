#pragma once

#include "fw_Export.h"

#include <pthread.h>

namespace framework {

/// The record of a thread: its number and its name.
///
/// A thread gets its record when it first calls `MyThreadInfo` and keeps it until it ends. The framework owns the
/// record. Numbers count upward from 1 and are not reused. Thread-safe.
///
///     framework::ThreadInfo::MyThreadInfo()->setThreadName("worker");
class VXFW_EXPORT ThreadInfo {
public:
    /// Returns the calling thread's record, or null if there is none yet. Async-signal-safe.
    static ThreadInfo* getMyself();
    /// Returns the calling thread's record, which the first call creates without an allocation, even in a signal
    /// handler. Returns null only if all thread-specific keys of the process are in use, or after the last round of the
    /// thread's thread-exit destructors, when nothing would remove the record.
    static ThreadInfo* MyThreadInfo();

    /// Returns the thread's number.
    int getNum() const {
        return m_number;
    }
    /// Returns the thread's name, never null. Until a name is set, it is the platform's name of the thread, or "thread"
    /// if there is none. Slashes are replaced by underscores.
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
