#pragma once

#include "ut_Export.h"

#include <pthread.h>

namespace utility {

/// A mutex that is not recursive.
///
/// Any thread may use it. The thread that holds the mutex must not lock it again. A failing POSIX call is logged at
/// level 0 with its error number, followed by the caller's back trace; nothing is thrown.
///
///     const utility::LockScope scope(locker);
///     ++count;
class VXUT_EXPORT VXFW_THREADS(capability("mutex")) Locker {
public:
    /// Creates an unlocked mutex.
    Locker();
    Locker(const Locker&) = delete;
    Locker& operator=(const Locker&) = delete;
    /// Destroys the mutex, which no thread may hold.
    ~Locker();

    /// Waits until the mutex is free, then locks it.
    void lock() const VXFW_THREADS(acquire_capability());
    /// Unlocks the mutex, which the calling thread must hold.
    void unlock() const VXFW_THREADS(release_capability());
    /// Locks the mutex if it is free. Returns true if the caller now holds it. Does not wait or log.
    bool trylock() const VXFW_THREADS(try_acquire_capability(true));

private:
    mutable pthread_mutex_t m_mutex;
};

} // namespace utility
