#pragma once

#include "ut_Export.h"

#include <pthread.h>

namespace utility {

/// A plain mutex.
///
/// Any thread may use it. The thread that holds it must not lock it again. A failing POSIX call is logged at level 0
/// with its error number, followed by the caller's back trace; nothing is thrown.
///
///     locker.lock();
///     ++count;
///     locker.unlock();
class VXUT_EXPORT Locker {
public:
    Locker();
    Locker(const Locker&) = delete;
    Locker& operator=(const Locker&) = delete;
    ~Locker();

    void lock() const;
    void unlock() const;
    /// Returns true if the lock was free and is now held by the caller. Never waits and never logs.
    bool trylock() const;

private:
    mutable pthread_mutex_t m_mutex;
};

} // namespace utility
