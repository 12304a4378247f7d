#pragma once

#include "ut_Export.h"

#include "fw_RWLockIF.h"

namespace framework {
namespace thread {

/// Holds the read lock of a read-write lock until the end of the scope, even if an exception leaves it.
///
/// The lock must outlive the guard.
///
///     framework::thread::ReadLockGuard guard(lock);
class VXUT_EXPORT VXFW_THREADS(scoped_lockable) ReadLockGuard {
public:
    /// Calls `lock.readLock()`.
    [[gnu::used]] explicit ReadLockGuard(RWLockIF& lock) VXFW_THREADS(acquire_shared_capability(lock)) : m_lock(lock) {
        m_lock.readLock();
    }
    /// Calls `unlock` of the lock.
    [[gnu::used]] ~ReadLockGuard() VXFW_THREADS(release_capability()) {
        m_lock.unlock();
    }
    ReadLockGuard(const ReadLockGuard&) = delete;
    ReadLockGuard& operator=(const ReadLockGuard&) = delete;

private:
    RWLockIF& m_lock;
};

} // namespace thread
} // namespace framework
