#pragma once

#include <pthread.h>

#include <cstdint>
#include <ctime>

// Mutexes and conditions of POSIX for the classes that own some. A failing call is logged at level 0 with its error
// number, as a message of `function`, the signature text of the public operation. Nothing is thrown. Internal.

namespace utility {

/// Fills `mutex` with zeros, then initializes it with default attributes. The zeros are a valid mutex if that fails.
void initMutex(pthread_mutex_t& mutex, const char* function);
/// Does the same for `condition`.
void initCondition(pthread_cond_t& condition, const char* function);

/// Locks `mutex`. Returns false after a failure.
bool lockMutex(pthread_mutex_t& mutex, const char* function);
/// Unlocks `mutex`. Returns false after a failure.
bool unlockMutex(pthread_mutex_t& mutex, const char* function);

/// Waits for `condition` until `deadline`, without limit if it is null. The caller must hold `mutex`. Returns false on
/// a time-out, otherwise true, also after a failure. `waiters` counts the waiting threads; it is traced if
/// `isTraced`.
bool waitForCondition(pthread_cond_t& condition, pthread_mutex_t& mutex, const timespec* deadline, int32_t& waiters,
                      bool isTraced, const char* function);
/// Wakes one thread that waits for `condition`.
void signalCondition(pthread_cond_t& condition, const char* function);
/// Wakes every thread that waits for `condition`.
void broadcastCondition(pthread_cond_t& condition, const char* function);

} // namespace utility
