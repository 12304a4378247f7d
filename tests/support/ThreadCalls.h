#pragma once

// Replaces the mutex and condition functions in the test program that includes this header, and in the libraries it
// loads. Include it in only one source of a program.

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <pthread.h>

namespace test {

enum ThreadCall {
    MUTEX_INIT,
    MUTEX_DESTROY,
    MUTEX_LOCK,
    MUTEX_TRYLOCK,
    MUTEX_UNLOCK,
    CONDITION_INIT,
    CONDITION_DESTROY,
    CONDITION_WAIT,
    CONDITION_TIMEDWAIT,
    CONDITION_SIGNAL,
    CONDITION_BROADCAST,
    THREAD_CALLS
};

/// Intercepts the calling thread's calls for the mutexes and conditions inside one object, while it exists. Records the
/// calls, replaces the result of a call, or runs an action before a call. One at a time in each thread.
///
///     test::ThreadCalls calls(&waiter, sizeof waiter);
///     calls.answerNext(test::MUTEX_LOCK, EINVAL);
///     waiter.lock();   // fails
class ThreadCalls {
public:
    ThreadCalls(const void* object, std::size_t size)
        : m_begin(reinterpret_cast<std::uintptr_t>(object)), m_end(m_begin + size) {
        watcher() = this;
    }
    ThreadCalls(const ThreadCalls&) = delete;
    ThreadCalls& operator=(const ThreadCalls&) = delete;
    ~ThreadCalls() {
        watcher() = nullptr;
    }

    /// Makes the next such call return `result` without calling the platform's function.
    void answerNext(ThreadCall call, int result) {
        m_steps[call].answered = true;
        m_steps[call].result = result;
    }
    /// Runs `action` before the next such call is made.
    void beforeNext(ThreadCall call, std::function<void()> action) {
        m_steps[call].before = std::move(action);
    }
    /// The calls so far, in order.
    const std::vector<ThreadCall>& calls() const {
        return m_calls;
    }
    /// The deadline of the last timed wait.
    timespec deadline() const {
        return m_deadline;
    }

    /// For the functions below: records the call. Returns whether it must return `*result` at once.
    static bool isAnswered(ThreadCall call, const void* object, const timespec* deadline, int* result) {
        ThreadCalls* const watching = watcher();
        const auto address = reinterpret_cast<std::uintptr_t>(object);
        if (watching == nullptr || address < watching->m_begin || address >= watching->m_end)
            return false;
        watcher() = nullptr;
        const bool answered = watching->take(call, deadline, result);
        watcher() = watching;
        return answered;
    }

private:
    struct Step {
        bool answered = false;
        int result = 0;
        std::function<void()> before;
    };

    static ThreadCalls*& watcher() {
        static thread_local ThreadCalls* current = nullptr;
        return current;
    }

    bool take(ThreadCall call, const timespec* deadline, int* result) {
        m_calls.push_back(call);
        if (deadline != nullptr)
            m_deadline = *deadline;
        const Step step = std::exchange(m_steps[call], Step());
        if (step.before)
            step.before();
        *result = step.result;
        return step.answered;
    }

    std::uintptr_t m_begin;
    std::uintptr_t m_end;
    std::vector<ThreadCall> m_calls;
    timespec m_deadline = {0, 0};
    Step m_steps[THREAD_CALLS];
};

namespace detail {

/// The platform's function, or the sanitizer's; looked up once and stored in `*found`.
template<class Function>
__attribute__((no_sanitize("thread"))) Function* platformThreadCall(void** found, const char* name) {
    void* function = __atomic_load_n(found, __ATOMIC_ACQUIRE);
    if (function == nullptr) {
        function = dlsym(RTLD_NEXT, name);
        __atomic_store_n(found, function, __ATOMIC_RELEASE);
    }
    return reinterpret_cast<Function*>(function);
}

} // namespace detail
} // namespace test

#define VXTEST_THREAD_CALL(call, name, object, deadline, arguments)                                                    \
    int result = 0;                                                                                                    \
    if (::test::ThreadCalls::isAnswered(::test::call, object, deadline, &result))                                      \
        return result;                                                                                                 \
    static void* found = nullptr;                                                                                      \
    return ::test::detail::platformThreadCall<decltype(name)>(&found, #name) arguments

// The first of these calls comes before a sanitizer is initialized.
#define VXTEST_EXPORTED __attribute__((visibility("default"), no_sanitize("thread")))

extern "C" {

VXTEST_EXPORTED int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes) noexcept {
    VXTEST_THREAD_CALL(MUTEX_INIT, pthread_mutex_init, mutex, nullptr, (mutex, attributes));
}

VXTEST_EXPORTED int pthread_mutex_destroy(pthread_mutex_t* mutex) noexcept {
    VXTEST_THREAD_CALL(MUTEX_DESTROY, pthread_mutex_destroy, mutex, nullptr, (mutex));
}

VXTEST_EXPORTED int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    VXTEST_THREAD_CALL(MUTEX_LOCK, pthread_mutex_lock, mutex, nullptr, (mutex));
}

VXTEST_EXPORTED int pthread_mutex_trylock(pthread_mutex_t* mutex) noexcept {
    VXTEST_THREAD_CALL(MUTEX_TRYLOCK, pthread_mutex_trylock, mutex, nullptr, (mutex));
}

VXTEST_EXPORTED int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept {
    VXTEST_THREAD_CALL(MUTEX_UNLOCK, pthread_mutex_unlock, mutex, nullptr, (mutex));
}

VXTEST_EXPORTED int pthread_cond_init(pthread_cond_t* condition, const pthread_condattr_t* attributes) noexcept {
    VXTEST_THREAD_CALL(CONDITION_INIT, pthread_cond_init, condition, nullptr, (condition, attributes));
}

VXTEST_EXPORTED int pthread_cond_destroy(pthread_cond_t* condition) noexcept {
    VXTEST_THREAD_CALL(CONDITION_DESTROY, pthread_cond_destroy, condition, nullptr, (condition));
}

VXTEST_EXPORTED int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
    VXTEST_THREAD_CALL(CONDITION_WAIT, pthread_cond_wait, condition, nullptr, (condition, mutex));
}

VXTEST_EXPORTED int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t* mutex,
                                           const timespec* deadline) {
    VXTEST_THREAD_CALL(CONDITION_TIMEDWAIT, pthread_cond_timedwait, condition, deadline, (condition, mutex, deadline));
}

VXTEST_EXPORTED int pthread_cond_signal(pthread_cond_t* condition) noexcept {
    VXTEST_THREAD_CALL(CONDITION_SIGNAL, pthread_cond_signal, condition, nullptr, (condition));
}

VXTEST_EXPORTED int pthread_cond_broadcast(pthread_cond_t* condition) noexcept {
    VXTEST_THREAD_CALL(CONDITION_BROADCAST, pthread_cond_broadcast, condition, nullptr, (condition));
}

} // extern "C"

#undef VXTEST_THREAD_CALL
#undef VXTEST_EXPORTED
