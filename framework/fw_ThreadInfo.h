#pragma once

#include "fw_Export.h"

#include <pthread.h>

namespace framework {

/// The record of a thread: its number and its name.
///
/// A thread has a record from its first `MyThreadInfo` to its end; the record belongs to the framework and dies with
/// the thread. Numbers count upward from 1 and are not given twice. Safe from any thread.
///
///     framework::ThreadInfo::MyThreadInfo()->setThreadName("worker");
class VXFW_EXPORT ThreadInfo {
public:
    /// The calling thread's record, or null when it has none. Safe in a signal handler.
    static ThreadInfo* getMyself();
    /// The calling thread's record, made on first use without taking memory, also in a signal handler. Null only when
    /// the platform has no key left, or when the thread is so near its end that nothing could remove the record any
    /// more.
    static ThreadInfo* MyThreadInfo();

    /// The thread's number.
    int getNum() const {
        return m_number;
    }
    /// The thread's name, never null; a slash in what was set is shown as a low line.
    const char* getThreadName() const {
        return m_name;
    }
    /// Names the thread; at most 31 bytes are kept. Null counts as empty.
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
