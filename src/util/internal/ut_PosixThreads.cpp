#include "internal/ut_PosixThreads.h"

#include <cerrno>
#include <cstring>

#include "internal/ut_Trace.h"

namespace utility {

namespace {

// Returns true if `error` is 0. Otherwise logs `text` and `error`.
bool succeeds(int error, const char* text, const char* function) {
    if (error != 0)
        VXUT_LOG_AS(function, framework::Logger::LOG_ERROR, "%s %d", text, error);
    return error == 0;
}

} // namespace

void initMutex(pthread_mutex_t& mutex, const char* function) {
    std::memset(&mutex, 0, sizeof mutex);
    succeeds(pthread_mutex_init(&mutex, nullptr), "initializing Consistency mutex", function);
}

void initCondition(pthread_cond_t& condition, const char* function) {
    std::memset(&condition, 0, sizeof condition);
    succeeds(pthread_cond_init(&condition, nullptr), "initializing wait condition", function);
}

bool lockMutex(pthread_mutex_t& mutex, const char* function) {
    return succeeds(pthread_mutex_lock(&mutex), "locking consistency mutex", function);
}

bool unlockMutex(pthread_mutex_t& mutex, const char* function) {
    return succeeds(pthread_mutex_unlock(&mutex), "unlocking consistency mutex", function);
}

bool waitForCondition(pthread_cond_t& condition, pthread_mutex_t& mutex, const timespec* deadline, int32_t& waiters,
                      bool isTraced, const char* function) {
    const bool isTimed = deadline != nullptr;
    ++waiters;
    if (isTraced)
        VXUT_LOG_AS(function, framework::Logger::LOG_DEBUG, "%s .... (%d waiters)", isTimed ? "timed Wait" : "Wait",
                    waiters);
    const int error =
        isTimed ? pthread_cond_timedwait(&condition, &mutex, deadline) : pthread_cond_wait(&condition, &mutex);
    --waiters;
    if (isTimed && error == ETIMEDOUT)
        return false;
    succeeds(error, "Wait condition error", function);
    return true;
}

void signalCondition(pthread_cond_t& condition, const char* function) {
    succeeds(pthread_cond_signal(&condition), "Signal condition error", function);
}

void broadcastCondition(pthread_cond_t& condition, const char* function) {
    succeeds(pthread_cond_broadcast(&condition), "Broadcast condition error", function);
}

} // namespace utility
