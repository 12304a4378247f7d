#include "ut_BufferStreamList.h"

#include <cerrno>
#include <cstring>

#include "internal/ut_Deadline.h"
#include "internal/ut_Trace.h"

namespace utility {

BufferStreamList::BufferStreamList() {
    init();
}

// Delegates, so that the destructor runs after a failure and deletes the elements created before it.
BufferStreamList::BufferStreamList(int count, int size) : BufferStreamList() {
    for (int i = 0; i < count; ++i) {
        BufferStreamElement* element = new BufferStreamElement(size, m_head);
        if (element != nullptr)
            m_head = element;
    }
}

BufferStreamList::~BufferStreamList() {
    while (BufferStreamElement* element = Allocate())
        delete element;
    pthread_cond_destroy(&m_condition);
    pthread_mutex_destroy(&m_mutex);
}

void BufferStreamList::init() {
    m_head = nullptr;
    m_waiters = 0;
    std::memset(&m_mutex, 0, sizeof m_mutex);
    int error = pthread_mutex_init(&m_mutex, nullptr);
    if (error != 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "initializing Consistency mutex %d", error);
    std::memset(&m_condition, 0, sizeof m_condition);
    error = pthread_cond_init(&m_condition, nullptr);
    if (error != 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "initializing wait condition %d", error);
}

void BufferStreamList::Append(BufferStreamElement* e) {
    if (m_head != nullptr) {
        m_head->Append(e);
    } else {
        m_head = e;
    }
}

void BufferStreamList::Insert(BufferStreamElement* e) {
    m_head = m_head != nullptr ? m_head->Insert(e) : e;
}

void BufferStreamList::Remove(BufferStreamElement* e) {
    if (m_head != nullptr)
        m_head = m_head->Remove(e);
}

int BufferStreamList::Count() const {
    int count = 0;
    for (const BufferStreamElement* element = m_head; element != nullptr; element = element->Next())
        ++count;
    return count;
}

BufferStreamElement* BufferStreamList::Allocate() {
    BufferStreamElement* element = m_head;
    if (element != nullptr)
        m_head = element->Remove(element);
    return element;
}

void BufferStreamList::Lock() {
    const int error = pthread_mutex_lock(&m_mutex);
    if (error != 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "locking consistency mutex %d", error);
}

void BufferStreamList::UnLock() {
    const int error = pthread_mutex_unlock(&m_mutex);
    if (error != 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "unlocking consistency mutex %d", error);
}

bool BufferStreamList::Wait(long seconds) {
    ++m_waiters;
    int error = 0;
    if (seconds == 0) {
        VXUT_TRACE(TOKEN_BUFFER_STREAM_LIST, "Wait .... (%d waiters)", m_waiters);
        error = pthread_cond_wait(&m_condition, &m_mutex);
    } else {
        const timespec deadline = deadlineAfterSeconds(seconds);
        VXUT_TRACE(TOKEN_BUFFER_STREAM_LIST, "timed Wait .... (%d waiters)", m_waiters);
        error = pthread_cond_timedwait(&m_condition, &m_mutex, &deadline);
        if (error == ETIMEDOUT) {
            --m_waiters;
            return false;
        }
    }
    --m_waiters;
    if (error != 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "Wait condition error %d", error);
    return true;
}

void BufferStreamList::Signal() {
    const int error = pthread_cond_signal(&m_condition);
    if (error != 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "Signal condition error %d", error);
}

void BufferStreamList::Broadcast() {
    const int error = pthread_cond_broadcast(&m_condition);
    if (error != 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "Broadcast condition error %d", error);
}

} // namespace utility
