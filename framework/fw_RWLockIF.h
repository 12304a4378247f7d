#pragma once

#include "fw_Export.h"

namespace framework {
namespace thread {

/// A lock that many readers or one writer hold.
///
///     framework::thread::WriteLockGuard guard(lock);
class VXFW_EXPORT RWLockIF {
public:
    virtual ~RWLockIF();

    /// Waits until no other thread writes, then holds the lock for reading.
    virtual void readLock() = 0;
    /// Waits until no other thread reads or writes, then holds the lock for writing.
    virtual void writeLock() = 0;
    /// Gives back what the calling thread took last.
    virtual void unlock() = 0;
};

} // namespace thread
} // namespace framework
