#pragma once

#include <pthread.h>
#include <signal.h>

namespace framework {

/// A mutex that blocks all signals of the thread that holds it: a handler that wants it too must not deadlock with its
/// own thread. Not a `std::mutex`, which throws if locking fails: a crash report would end there. Constant-initialized
/// and trivially destructible, for use in static constructors and destructors.
///
///     SignalSafeMutex mutex;
///     const std::lock_guard<SignalSafeMutex> guard(mutex);
class SignalSafeMutex {
public:
    void lock() {
        sigset_t all, former;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &former);
        pthread_mutex_lock(&m_mutex);
        m_formerSignals = former;
    }
    void unlock() {
        const sigset_t former = m_formerSignals;
        pthread_mutex_unlock(&m_mutex);
        pthread_sigmask(SIG_SETMASK, &former, nullptr);
    }

private:
    pthread_mutex_t m_mutex = PTHREAD_MUTEX_INITIALIZER;
    sigset_t m_formerSignals = {};
};

} // namespace framework
