#include "ut_BufferStreamList.h"

#include "fw_KnownTokens.h"
#include "internal/ut_Deadline.h"
#include "internal/ut_PosixThreads.h"
#include "ut_Debug.h"

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
    initMutex(m_mutex, __PRETTY_FUNCTION__);
    initCondition(m_condition, __PRETTY_FUNCTION__);
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
        m_head = e == m_head ? m_head->takeFirst() : m_head->Remove(e);
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
        m_head = element->takeFirst();
    return element;
}

void BufferStreamList::Lock() {
    lockMutex(m_mutex, __PRETTY_FUNCTION__);
}

void BufferStreamList::UnLock() {
    unlockMutex(m_mutex, __PRETTY_FUNCTION__);
}

bool BufferStreamList::Wait(long seconds) {
    const timespec deadline = seconds != 0 ? deadlineAfterSeconds(seconds) : timespec{};
    return waitForCondition(m_condition, m_mutex, seconds != 0 ? &deadline : nullptr, m_waiters,
                            Debug::isDebugOn(strings::TOKEN_BUFFER_STREAM_LIST), __PRETTY_FUNCTION__);
}

void BufferStreamList::Signal() {
    signalCondition(m_condition, __PRETTY_FUNCTION__);
}

void BufferStreamList::Broadcast() {
    broadcastCondition(m_condition, __PRETTY_FUNCTION__);
}

} // namespace utility
