#pragma once

#include "ut_Export.h"

#include "fw_RWLockIF.h"

namespace framework {
namespace thread {

/// Holds the write lock of a read-write lock until the end of the scope, even if an exception leaves it.
///
/// The lock must outlive the guard.
///
///     framework::thread::WriteLockGuard guard(lock);
class VXUT_EXPORT VXFW_THREADS(scoped_lockable) WriteLockGuard {
public:
    /// Calls `lock.writeLock()`.
    [[gnu::used]] explicit WriteLockGuard(RWLockIF& lock) VXFW_THREADS(acquire_capability(lock)) : m_lock(lock) {
        m_lock.writeLock();
    }
    /// Calls `unlock` of the lock.
    [[gnu::used]] ~WriteLockGuard() VXFW_THREADS(release_capability()) {
        m_lock.unlock();
    }
    WriteLockGuard(const WriteLockGuard&) = delete;
    WriteLockGuard& operator=(const WriteLockGuard&) = delete;

private:
    RWLockIF& m_lock;
};

} // namespace thread
} // namespace framework
