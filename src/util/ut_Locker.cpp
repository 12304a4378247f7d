#include "ut_Locker.h"

#include <cstring>

#include "internal/ut_Trace.h"
#include "ut_Debug.h"

namespace utility {

Locker::Locker() {
    std::memset(&m_mutex, 0, sizeof m_mutex);
    const int error = pthread_mutex_init(&m_mutex, nullptr);
    if (error != 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "initializing Consistency mutex %d", error);
}

Locker::~Locker() {
    pthread_mutex_destroy(&m_mutex);
}

void Locker::lock() const {
    const int error = pthread_mutex_lock(&m_mutex);
    if (error == 0)
        return;
    VXUT_LOG(framework::Logger::LOG_ERROR, "locking consistency mutex %d", error);
    Debug::ErrorContext();
}

void Locker::unlock() const {
    const int error = pthread_mutex_unlock(&m_mutex);
    if (error == 0)
        return;
    VXUT_LOG(framework::Logger::LOG_ERROR, "unlocking consistency mutex %d", error);
    Debug::ErrorContext();
}

bool Locker::trylock() const {
    return pthread_mutex_trylock(&m_mutex) == 0;
}

} // namespace utility
