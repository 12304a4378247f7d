#pragma once

#include "ut_Export.h"

#include <pthread.h>

namespace utility {

/// A plain mutex.
///
/// Any thread may use it. The thread that holds it must not lock it again. A failing POSIX call is logged at level 0
/// with its error number, followed by the caller's back trace; nothing is thrown.
///
///     const utility::LockScope scope(locker);
///     ++count;
class VXUT_EXPORT VXFW_THREADS(capability("mutex")) Locker {
public:
    Locker();
    Locker(const Locker&) = delete;
    Locker& operator=(const Locker&) = delete;
    ~Locker();

    void lock() const VXFW_THREADS(acquire_capability());
    void unlock() const VXFW_THREADS(release_capability());
    /// Returns true if the lock was free and is now held by the caller. Never waits and never logs.
    bool trylock() const VXFW_THREADS(try_acquire_capability(true));

private:
    mutable pthread_mutex_t m_mutex;
};

} // namespace utility
