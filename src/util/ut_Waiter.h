#pragma once

#include "ut_Export.h"

#include <pthread.h>

#include <cstdint>
#include <ctime>

namespace utility {

/// A mutex and a condition variable with time-outs.
///
/// Any thread may use it. It must not be destroyed while a thread may still begin to wait. Wake-ups can be spurious:
/// test the condition again after each true result. A failing POSIX call is logged at level 0 with its error number;
/// nothing is thrown. Debug switch 2301 traces each step.
///
///     const utility::LockScope scope(waiter);
///     while (queue.Count() == 0) waiter.wait(0);
///     element = queue.deQueue();
class VXUT_EXPORT VXFW_THREADS(capability("mutex")) Waiter {
public:
    Waiter();
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;
    /// Wakes every waiting thread first.
    ~Waiter();

    void lock() const VXFW_THREADS(acquire_capability());
    void unlock() const VXFW_THREADS(release_capability());
    /// Waits to be woken. The caller must hold the lock. 0 seconds waits without limit. The time-out is rounded down to
    /// a whole second, so it can come up to one second early. Returns true if woken, also by an error; false on a
    /// time-out.
    bool wait(long seconds) const VXFW_THREADS(requires_capability(this));
    /// The same in microseconds. The sub-second part of the time-out replaces that of the current time, so it can come
    /// up to one second early.
    bool waitMicroseconds(unsigned long long microseconds) const VXFW_THREADS(requires_capability(this));
    /// The same for a caller that does not hold the lock: locks, waits, and unlocks.
    bool waitNoLock(long seconds) VXFW_THREADS(locks_excluded(this));
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
