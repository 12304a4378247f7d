// Messages from thread to thread: a pool and a queue of streams beside the standard library and GLib.

#include <condition_variable>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <queue>
#include <thread>
#include <vector>

#include <glib.h>

#include "bench.h"
#include "ut_BufferStreamList.h"
#include "ut_BufferStreamQueue.h"
#include "ut_LockScope.h"

namespace bench {
namespace {

constexpr unsigned int messages = 5000;
constexpr int poolSize = 256;
constexpr int messageSize = 64;

// Sends numbers through a channel; the receiver adds them up.
template<typename Channel>
std::uint64_t sumThrough(Channel& channel) {
    std::uint64_t sum = 0;
    std::thread receiver([&] {
        for (unsigned int number = 0; number < messages; ++number)
            sum += channel.receive();
    });
    for (unsigned int number = 0; number < messages; ++number)
        channel.send(number);
    receiver.join();
    return sum;
}

// A pool and a queue of streams.
class Ours {
public:
    explicit Ours(int poolSize) : m_pool(poolSize, messageSize) {}

    void send(unsigned int number) {
        m_pool.Lock();
        utility::BufferStreamElement* element = m_pool.Allocate();
        while (element == nullptr) {
            m_pool.Wait(0);
            element = m_pool.Allocate();
        }
        m_pool.UnLock();
        element->PutParmUint32(number);
        const utility::LockScope scope(m_queue.m_waiter);
        m_queue.enQueue(element);
        m_queue.m_waiter.signal();
    }

    unsigned int receive() {
        utility::BufferStreamElement* element = nullptr;
        {
            const utility::LockScope scope(m_queue.m_waiter);
            while (m_queue.Count() == 0)
                m_queue.m_waiter.wait(0);
            element = m_queue.deQueue();
        }
        unsigned int number = 0;
        element->GetParmUint32(&number);
        element->Rewind();
        m_pool.Lock();
        m_pool.Insert(element);
        m_pool.Signal();
        m_pool.UnLock();
        return number;
    }

private:
    utility::BufferStreamList m_pool;
    utility::BufferStreamQueue m_queue;
};

// The same with the standard library.
class Standard {
    struct Message {
        std::size_t size = 0;
        char bytes[messageSize] = {};
    };

public:
    Standard() {
        for (int count = 0; count < poolSize; ++count) {
            m_messages.push_back(std::make_unique<Message>());
            m_pool.push_back(m_messages.back().get());
        }
    }

    void send(unsigned int number) {
        Message* message = nullptr;
        {
            std::unique_lock<std::mutex> lock(m_poolMutex);
            m_poolFilled.wait(lock, [this] { return !m_pool.empty(); });
            message = m_pool.back();
            m_pool.pop_back();
        }
        std::memcpy(message->bytes, &number, sizeof number);
        message->size = sizeof number;
        const std::lock_guard<std::mutex> lock(m_queueMutex);
        m_queue.push(message);
        m_queueFilled.notify_one();
    }

    unsigned int receive() {
        Message* message = nullptr;
        {
            std::unique_lock<std::mutex> lock(m_queueMutex);
            m_queueFilled.wait(lock, [this] { return !m_queue.empty(); });
            message = m_queue.front();
            m_queue.pop();
        }
        unsigned int number = 0;
        std::memcpy(&number, message->bytes, message->size);
        message->size = 0;
        const std::lock_guard<std::mutex> lock(m_poolMutex);
        m_pool.push_back(message);
        m_poolFilled.notify_one();
        return number;
    }

private:
    std::vector<std::unique_ptr<Message>> m_messages;
    std::vector<Message*> m_pool;
    std::mutex m_poolMutex;
    std::condition_variable m_poolFilled;
    std::queue<Message*> m_queue;
    std::mutex m_queueMutex;
    std::condition_variable m_queueFilled;
};

// A thread that returns every message, until it gets `last`.
template<typename Queue>
class Echo {
public:
    Echo()
        : m_thread([this] {
              for (void* message = m_there.get(); message != &m_last; message = m_there.get())
                  m_back.put(message);
          }) {}
    ~Echo() {
        m_there.put(&m_last);
        m_thread.join();
    }
    bool roundTrip() {
        m_there.put(&m_message);
        return m_back.get() == &m_message;
    }

private:
    typename Queue::Message m_message;
    typename Queue::Message m_last;
    Queue m_there;
    Queue m_back;
    std::thread m_thread;
};

class OurQueue {
public:
    struct Message : utility::BufferStreamElement {
        Message() : BufferStreamElement(messageSize, nullptr) {}
    };
    void put(void* message) {
        const utility::LockScope scope(m_queue.m_waiter);
        m_queue.enQueue(static_cast<Message*>(message));
        m_queue.m_waiter.signal();
    }
    void* get() {
        const utility::LockScope scope(m_queue.m_waiter);
        while (m_queue.Count() == 0)
            m_queue.m_waiter.wait(0);
        return static_cast<Message*>(m_queue.deQueue());
    }

private:
    utility::BufferStreamQueue m_queue;
};

class GlibQueue {
public:
    struct Message {
        char bytes[messageSize];
    };
    GlibQueue() : m_queue(g_async_queue_new()) {}
    ~GlibQueue() {
        g_async_queue_unref(m_queue);
    }
    void put(void* message) {
        g_async_queue_push(m_queue, message);
    }
    void* get() {
        return g_async_queue_pop(m_queue);
    }

private:
    GAsyncQueue* m_queue;
};

void takeAndReturn(utility::BufferStreamList& pool) {
    pool.Lock();
    utility::BufferStreamElement* const element = pool.Allocate();
    pool.UnLock();
    pool.Lock();
    pool.Insert(element);
    pool.UnLock();
}

// A queue of `count` elements, one of which moves from the front to the end.
class Rotation {
public:
    explicit Rotation(int count) {
        for (int number = 0; number < count; ++number)
            m_queue.enQueue(new utility::BufferStreamElement(16, nullptr));
    }
    void rotate() {
        m_queue.enQueue(m_queue.deQueue());
    }

private:
    utility::BufferStreamQueue m_queue;
};

} // namespace

void benchMessages(Bench& bench) {
    Ours ours(poolSize);
    Standard standard;
    const std::uint64_t sum = std::uint64_t{messages} * (messages - 1) / 2;
    bench.row(
        {"message between threads, pool of 256, processor time", "std::queue, mutex, condition", 0.95, messages,
         CLOCK_PROCESS_CPUTIME_ID},
        sumThrough(ours) == sum && sumThrough(standard) == sum, [&](long) { sumThrough(ours); },
        [&](long) { sumThrough(standard); });

    {
        Echo<OurQueue> ourEcho;
        Echo<GlibQueue> glibEcho;
        const bool same = ourEcho.roundTrip() && glibEcho.roundTrip();
        bench.row(
            {"wake-up of a thread, wall time", "GAsyncQueue", 1.0, 2, CLOCK_MONOTONIC}, same,
            [&](long) { ourEcho.roundTrip(); }, [&](long) { glibEcho.roundTrip(); });
    }

    utility::BufferStreamList large(32000, 16);
    utility::BufferStreamList small(4, 16);
    bench.row(
        {"pool of 32,000, take and return", "pool of 4", 1.0}, large.Count() == 32000 && small.Count() == 4,
        [&](long) { takeAndReturn(large); }, [&](long) { takeAndReturn(small); });
    Rotation longQueue(32000);
    Rotation shortQueue(4);
    bench.row(
        {"queue of 32,000, remove and add", "queue of 4", 1.0}, true, [&](long) { longQueue.rotate(); },
        [&](long) { shortQueue.rotate(); });
    for (const int size : {30, 300, 3000, 30000}) {
        Rotation queue(size);
        std::queue<void*> peer;
        for (int number = 0; number < size; ++number)
            peer.push(&peer);
        bench.point(
            "BufferStreamQueue, remove and add", "std::queue", static_cast<std::size_t>(size),
            [&](long) { queue.rotate(); },
            [&](long) {
                void* const first = peer.front();
                peer.pop();
                peer.push(first);
                keep(peer);
            });
    }
}

} // namespace bench
