#pragma once

#include "ut_Export.h"

namespace utility {

/// Holds a lock, such as a `Waiter` or a `Locker`, until the end of the scope, even if an exception leaves it.
///
/// The lock must outlive the scope. Code in the scope may wait on a `Waiter` that it holds.
///
///     const utility::LockScope scope(waiter);
///     while (queue.Count() == 0) waiter.wait(0);
///     element = queue.deQueue();
template<typename Lock>
class VXFW_THREADS(scoped_lockable) LockScope {
public:
    /// Calls `lock.lock()`.
    explicit LockScope(const Lock& lock) VXFW_THREADS(acquire_capability(lock)) : m_lock(lock) {
        m_lock.lock();
    }
    LockScope(const LockScope&) = delete;
    LockScope& operator=(const LockScope&) = delete;
    /// Calls `unlock` of the lock.
    ~LockScope() VXFW_THREADS(release_capability()) {
        m_lock.unlock();
    }

private:
    const Lock& m_lock;
};

template<typename Lock>
LockScope(const Lock&) -> LockScope<Lock>;

} // namespace utility
