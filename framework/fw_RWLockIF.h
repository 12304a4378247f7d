#pragma once

#include "fw_Export.h"

namespace framework {
namespace thread {

/// A lock that is held either by any number of readers or by one writer.
///
///     framework::thread::WriteLockGuard guard(lock);
class VXFW_EXPORT VXFW_THREADS(capability("mutex")) RWLockIF {
public:
    virtual ~RWLockIF();

    /// Waits until no other thread holds the write lock, then takes the read lock.
    virtual void readLock() VXFW_THREADS(acquire_shared_capability()) = 0;
    /// Waits until no other thread holds the lock, then takes the write lock.
    virtual void writeLock() VXFW_THREADS(acquire_capability()) = 0;
    /// Releases the lock that the calling thread took last.
    virtual void unlock() VXFW_THREADS(release_generic_capability()) = 0;
};

} // namespace thread
} // namespace framework
