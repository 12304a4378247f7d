#include "ut_Waiter.h"

#include <cerrno>
#include <cstring>

#include "internal/ut_Deadline.h"
#include "internal/ut_Trace.h"
#include "ut_DateTime.h"
#include "ut_Debug.h"

namespace utility {

Waiter::Waiter() : m_waiters(0) {
    std::memset(&m_mutex, 0, sizeof m_mutex);
    int error = pthread_mutex_init(&m_mutex, nullptr);
    if (error != 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "initializing Consistency mutex %d", error);
    std::memset(&m_condition, 0, sizeof m_condition);
    error = pthread_cond_init(&m_condition, nullptr);
    if (error != 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "initializing wait condition %d", error);
}

Waiter::~Waiter() {
    broadcast();
    pthread_cond_destroy(&m_condition);
    pthread_mutex_destroy(&m_mutex);
}

void Waiter::lock() const {
    VXUT_TRACE(TOKEN_WAITER, "Locking .....");
    const int error = pthread_mutex_lock(&m_mutex);
    if (error == 0)
        return;
    VXUT_LOG(framework::Logger::LOG_ERROR, "locking consistency mutex %d", error);
    Debug::ErrorContext();
}

void Waiter::unlock() const {
    VXUT_TRACE(TOKEN_WAITER, ".....  Unlocking");
    const int error = pthread_mutex_unlock(&m_mutex);
    if (error == 0)
        return;
    VXUT_LOG(framework::Logger::LOG_ERROR, "unlocking consistency mutex %d", error);
    Debug::ErrorContext();
}

bool Waiter::wait(long seconds) const {
    VXUT_TRACE(TOKEN_WAITER, "Waiting: %ld", seconds);
    if (seconds == 0)
        return waitUntil(nullptr, __PRETTY_FUNCTION__);
    const timespec deadline = deadlineAfterSeconds(seconds);
    return waitUntil(&deadline, __PRETTY_FUNCTION__);
}

bool Waiter::waitMicroseconds(unsigned long long microseconds) const {
    VXUT_TRACE(TOKEN_WAITER, "Waiting: %llu", microseconds);
    if (microseconds == 0)
        return waitUntil(nullptr, __PRETTY_FUNCTION__);
    const timespec deadline = deadlineAfterMicroseconds(microseconds);
    return waitUntil(&deadline, __PRETTY_FUNCTION__);
}

bool Waiter::waitUntil(const timespec* deadline, const char* function) const {
    ++m_waiters;
    int error = 0;
    if (deadline == nullptr) {
        VXUT_TRACE_AS(function, TOKEN_WAITER, "Wait .... (%d waiters)", m_waiters);
        error = pthread_cond_wait(&m_condition, &m_mutex);
    } else {
        VXUT_TRACE_AS(function, TOKEN_WAITER, "timed Wait .... (%d waiters)", m_waiters);
        error = pthread_cond_timedwait(&m_condition, &m_mutex, deadline);
    }
    --m_waiters;
    if (deadline != nullptr && error == ETIMEDOUT)
        return false;
    if (error != 0)
        framework::Logger::StaticLogMethod(framework::Logger::LOG_ERROR, function, __LINE__, "Wait condition error %d",
                                           error);
    return true;
}

bool Waiter::waitNoLock(long seconds) {
    lock();
    const bool woken = wait(seconds);
    unlock();
    return woken;
}

bool Waiter::waitMicrosecondsNoLock(unsigned long long microseconds) {
    lock();
    const bool woken = waitMicroseconds(microseconds);
    unlock();
    return woken;
}

void Waiter::signal() const {
    VXUT_TRACE(TOKEN_WAITER, "Signal");
    const int error = pthread_cond_signal(&m_condition);
    if (error != 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "Signal condition error %d", error);
}

void Waiter::broadcast() const {
    const int error = pthread_cond_broadcast(&m_condition);
    if (error != 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "Broadcast condition error %d", error);
}

} // namespace utility
