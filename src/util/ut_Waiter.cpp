#include "ut_Waiter.h"

#include "internal/ut_Deadline.h"
#include "internal/ut_PosixThreads.h"
#include "internal/ut_Trace.h"
#include "ut_Debug.h"
#include "ut_LockScope.h"

namespace utility {

Waiter::Waiter() : m_waiters(0) {
    initMutex(m_mutex, __PRETTY_FUNCTION__);
    initCondition(m_condition, __PRETTY_FUNCTION__);
}

Waiter::~Waiter() {
    broadcast();
    pthread_cond_destroy(&m_condition);
    pthread_mutex_destroy(&m_mutex);
}

void Waiter::lock() const {
    VXUT_TRACE(TOKEN_WAITER, "Locking .....");
    if (!lockMutex(m_mutex, __PRETTY_FUNCTION__))
        Debug::ErrorContext();
}

void Waiter::unlock() const {
    VXUT_TRACE(TOKEN_WAITER, ".....  Unlocking");
    if (!unlockMutex(m_mutex, __PRETTY_FUNCTION__))
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
    return waitForCondition(m_condition, m_mutex, deadline, m_waiters, Debug::isDebugOn(strings::TOKEN_WAITER),
                            function);
}

bool Waiter::waitNoLock(long seconds) {
    const LockScope scope(*this);
    return wait(seconds);
}

bool Waiter::waitMicrosecondsNoLock(unsigned long long microseconds) {
    const LockScope scope(*this);
    return waitMicroseconds(microseconds);
}

void Waiter::signal() const {
    VXUT_TRACE(TOKEN_WAITER, "Signal");
    signalCondition(m_condition, __PRETTY_FUNCTION__);
}

void Waiter::broadcast() const {
    broadcastCondition(m_condition, __PRETTY_FUNCTION__);
}

} // namespace utility
