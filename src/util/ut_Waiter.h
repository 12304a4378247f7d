#pragma once

#include "ut_Export.h"

#include <cstdint>
#include <ctime>

#include <pthread.h>

namespace utility {

/// A mutex and a condition variable, with time-outs.
///
/// Any thread may use it. Wake-ups can be spurious: test the condition again after each true result. A failing POSIX
/// call is logged at level 0 with its error number; nothing is thrown. Debug switch 2301 traces each step.
///
///     const utility::LockScope scope(waiter);
///     while (queue.Count() == 0) waiter.wait(0);
///     element = queue.deQueue();
class VXUT_EXPORT VXFW_THREADS(capability("mutex")) Waiter {
public:
    /// Creates an unlocked mutex and a condition variable.
    Waiter();
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;
    /// Wakes every waiting thread, then destroys the mutex and the condition variable. No thread may begin to wait at
    /// that time.
    ~Waiter();

    /// Waits until the mutex is free, then locks it. It is not recursive.
    void lock() const VXFW_THREADS(acquire_capability());
    /// Unlocks the mutex, which the calling thread must hold.
    void unlock() const VXFW_THREADS(release_capability());
    /// Waits until `signal` or `broadcast` wakes the thread, for at most `seconds`; 0 waits without a limit. The caller
    /// must hold the lock, which is released during the wait. The deadline is rounded down to a whole second, so a
    /// time-out can be up to one second early. Returns false on a time-out, otherwise true, including after a spurious
    /// wake-up or an error.
    bool wait(long seconds) const VXFW_THREADS(requires_capability(this));
    /// Does what `wait` does, for at most `microseconds`; 0 waits without a limit. In the deadline, the sub-second part
    /// of `microseconds` replaces that of the current time, so a time-out can be up to one second early.
    bool waitMicroseconds(unsigned long long microseconds) const VXFW_THREADS(requires_capability(this));
    /// Locks, calls `wait(seconds)`, and unlocks. The caller must not hold the lock.
    bool waitNoLock(long seconds) VXFW_THREADS(locks_excluded(this));
    /// Locks, calls `waitMicroseconds(microseconds)`, and unlocks. The caller must not hold the lock.
    bool waitMicrosecondsNoLock(unsigned long long microseconds) VXFW_THREADS(locks_excluded(this));
    /// Wakes one waiting thread.
    void signal() const;
    /// Wakes every waiting thread.
    void broadcast() const;

private:
    VXUT_HIDDEN bool waitUntil(const timespec* deadline, const char* function) const
        VXFW_THREADS(requires_capability(this));

    mutable pthread_mutex_t m_mutex;
    mutable pthread_cond_t m_condition;
    mutable int32_t m_waiters VXFW_THREADS(guarded_by(this));
};

} // namespace utility
