#include "ut_Locker.h"

#include "internal/ut_PosixThreads.h"
#include "ut_Debug.h"

namespace utility {

Locker::Locker() {
    initMutex(m_mutex, __PRETTY_FUNCTION__);
}

Locker::~Locker() {
    pthread_mutex_destroy(&m_mutex);
}

void Locker::lock() const {
    if (!lockMutex(m_mutex, __PRETTY_FUNCTION__))
        Debug::ErrorContext();
}

void Locker::unlock() const {
    if (!unlockMutex(m_mutex, __PRETTY_FUNCTION__))
        Debug::ErrorContext();
}

bool Locker::trylock() const {
    return pthread_mutex_trylock(&m_mutex) == 0;
}

} // namespace utility
