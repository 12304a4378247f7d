#pragma once

#include <cstdint>
#include <ctime>

#include <pthread.h>

// Wrappers of POSIX mutexes and condition variables. A call that fails is logged at level 0 with its error number, as a
// message of `function`, the signature text of the public operation. Nothing is thrown. Internal.

namespace utility {

/// Fills `mutex` with zeros, then initializes it with default attributes. If that fails, the zeros are still a valid
/// mutex.
void initMutex(pthread_mutex_t& mutex, const char* function);
/// Initializes `condition` in the same way.
void initCondition(pthread_cond_t& condition, const char* function);

/// Locks `mutex`. Returns false if that fails.
bool lockMutex(pthread_mutex_t& mutex, const char* function);
/// Unlocks `mutex`. Returns false if that fails.
bool unlockMutex(pthread_mutex_t& mutex, const char* function);

/// Waits for `condition` until `deadline`, or without a time limit if `deadline` is null. The caller must hold `mutex`.
/// Returns false after a time-out and true otherwise, even if the wait failed. `waiters` counts the waiting threads,
/// and is traced if `isTraced` is true.
bool waitForCondition(pthread_cond_t& condition, pthread_mutex_t& mutex, const timespec* deadline, int32_t& waiters,
                      bool isTraced, const char* function);
/// Wakes one thread that waits for `condition`.
void signalCondition(pthread_cond_t& condition, const char* function);
/// Wakes every thread that waits for `condition`.
void broadcastCondition(pthread_cond_t& condition, const char* function);

} // namespace utility
