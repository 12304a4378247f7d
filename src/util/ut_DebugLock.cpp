// Debug: the lock of the crash reports.

#include "ut_Debug.h"

#include <new>

#include <pthread.h>

#include "ut_Locker.h"

namespace utility {

Locker Debug::m_locker;

// The thread that holds the lock does not exist in a forked child and would never release it.
void Debug::watchForks() {
    pthread_atfork(nullptr, nullptr, [] { new (&m_locker) Locker; });
}

} // namespace utility
