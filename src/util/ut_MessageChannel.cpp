#include "ut_MessageChannel.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <pthread.h>

#include "internal/ut_Failure.h"
#include "internal/ut_PosixThreads.h"
#include "ut_BufferStreamQueue.h"

namespace utility {

namespace {

constexpr long nanosecondsPerMillisecond = 1000000;
constexpr long nanosecondsPerSecond = 1000000000;

// Returns the time of the monotonic clock after `milliseconds`, clamped to the largest time.
timespec deadlineAfter(long milliseconds) {
    timespec deadline = {};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    const auto seconds = static_cast<time_t>(milliseconds / 1000);
    if (seconds >= std::numeric_limits<time_t>::max() - deadline.tv_sec)
        return {std::numeric_limits<time_t>::max(), 0};
    deadline.tv_sec += seconds;
    deadline.tv_nsec += milliseconds % 1000 * nanosecondsPerMillisecond;
    if (deadline.tv_nsec >= nanosecondsPerSecond) {
        ++deadline.tv_sec;
        deadline.tv_nsec -= nanosecondsPerSecond;
    }
    return deadline;
}

// A condition variable whose time limits do not depend on the time of day.
class MonotonicCondition {
public:
    MonotonicCondition() : m_condition() {
        pthread_condattr_t attributes;
        pthread_condattr_init(&attributes);
        pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
        pthread_cond_init(&m_condition, &attributes);
        pthread_condattr_destroy(&attributes);
    }
    MonotonicCondition(const MonotonicCondition&) = delete;
    MonotonicCondition& operator=(const MonotonicCondition&) = delete;
    ~MonotonicCondition() {
        pthread_cond_destroy(&m_condition);
    }

    // Waits until `isReady()` for at most `milliseconds`, under the locked `mutex`. Returns `isReady()`.
    template<typename Ready>
    bool wait(pthread_mutex_t& mutex, long milliseconds, Ready isReady, const char* function) {
        const timespec deadline = deadlineAfter(std::max(milliseconds, 0L));
        const timespec* const limit = milliseconds >= 0 ? &deadline : nullptr;
        bool isInTime = milliseconds != 0;
        while (isInTime && !isReady())
            isInTime = waitForCondition(m_condition, mutex, limit, m_waiters, false, function);
        return isReady();
    }
    void wakeOne(const char* function) {
        signalCondition(m_condition, function);
    }
    void wakeAll(const char* function) {
        broadcastCondition(m_condition, function);
    }

private:
    pthread_cond_t m_condition;
    int32_t m_waiters = 0;
};

// Holds `mutex` while it exists.
class Lock {
public:
    Lock(pthread_mutex_t& mutex, const char* function) : m_mutex(mutex), m_function(function) {
        lockMutex(m_mutex, m_function);
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() {
        unlockMutex(m_mutex, m_function);
    }

private:
    pthread_mutex_t& m_mutex;
    const char* m_function;
};

} // namespace

// Outlives the channel as long as a message is held.
struct MessageChannel::State {
    State() : mutex() {
        initMutex(mutex, __PRETTY_FUNCTION__);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        pthread_mutex_destroy(&mutex);
    }

    // Takes the first element of `queue`, after waiting until `isReady()`.
    template<typename Ready>
    Message take(BufferStreamQueue& queue, MonotonicCondition& condition, long milliseconds, Ready isReady,
                 const char* function) {
        const Lock lock(mutex, function);
        if (!condition.wait(mutex, milliseconds, isReady, function) || queue.Count() == 0)
            return nullptr;
        ++held;
        return Message(queue.deQueue(), Return(this));
    }
    // Adds `element` to `queue` and wakes one thread that waits for it. The caller has the lock.
    void put(BufferStreamElement* element, BufferStreamQueue& queue, MonotonicCondition& condition,
             const char* function) {
        --held;
        queue.enQueue(element);
        condition.wakeOne(function);
    }

    pthread_mutex_t mutex;
    MonotonicCondition poolChanged;
    MonotonicCondition sentChanged;
    BufferStreamQueue pool;
    BufferStreamQueue sent;
    int held = 0;
    bool isClosed = false;
    bool hasChannel = true;
};

void MessageChannel::Return::operator()(BufferStreamElement* element) const {
    bool isLast = false;
    {
        const Lock lock(m_state->mutex, __PRETTY_FUNCTION__);
        element->Rewind();
        element->setNoThrow(false);
        element->m_userValue = 0;
        element->m_userWord1 = 0;
        element->m_userWord2 = 0;
        m_state->put(element, m_state->pool, m_state->poolChanged, __PRETTY_FUNCTION__);
        isLast = !m_state->hasChannel && m_state->held == 0;
    }
    if (isLast)
        delete m_state;
}

MessageChannel::MessageChannel(int count, int size) : m_state(nullptr) {
    auto state = std::make_unique<State>();
    for (int i = 0; i < std::max(count, 1); ++i) {
        auto* const element = new BufferStreamElement(size, nullptr);
        if (element == nullptr)
            VXUT_THROW(FAILURE_BUFFER_STORAGE, "");
        state->pool.enQueue(element);
    }
    m_state = state.release();
}

MessageChannel::~MessageChannel() {
    close();
    bool isLast = false;
    {
        const Lock lock(m_state->mutex, __PRETTY_FUNCTION__);
        m_state->hasChannel = false;
        isLast = m_state->held == 0;
    }
    if (isLast)
        delete m_state;
}

MessageChannel::Message MessageChannel::allocate(long milliseconds) {
    State* const state = m_state;
    Message message = state->take(
        state->pool, state->poolChanged, milliseconds, [state] { return state->pool.Count() > 0 || state->isClosed; },
        __PRETTY_FUNCTION__);
    // The pool of a closed channel may contain messages.
    return isClosed() ? nullptr : std::move(message);
}

bool MessageChannel::send(Message message) {
    if (message == nullptr || message.get_deleter().m_state != m_state)
        return false;
    const Lock lock(m_state->mutex, __PRETTY_FUNCTION__);
    if (m_state->isClosed)
        return false;
    m_state->put(message.release(), m_state->sent, m_state->sentChanged, __PRETTY_FUNCTION__);
    return true;
}

MessageChannel::Message MessageChannel::receive(long milliseconds) {
    State* const state = m_state;
    return state->take(
        state->sent, state->sentChanged, milliseconds, [state] { return state->sent.Count() > 0 || state->isClosed; },
        __PRETTY_FUNCTION__);
}

void MessageChannel::close() {
    const Lock lock(m_state->mutex, __PRETTY_FUNCTION__);
    m_state->isClosed = true;
    m_state->poolChanged.wakeAll(__PRETTY_FUNCTION__);
    m_state->sentChanged.wakeAll(__PRETTY_FUNCTION__);
}

bool MessageChannel::isClosed() const {
    const Lock lock(m_state->mutex, __PRETTY_FUNCTION__);
    return m_state->isClosed;
}

bool MessageChannel::isAtEnd() const {
    const Lock lock(m_state->mutex, __PRETTY_FUNCTION__);
    return m_state->isClosed && m_state->sent.Count() == 0;
}

int MessageChannel::count() const {
    const Lock lock(m_state->mutex, __PRETTY_FUNCTION__);
    return m_state->sent.Count();
}

} // namespace utility
