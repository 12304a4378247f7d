#pragma once

#include "ut_Export.h"

#include <memory>

#include "ut_BufferStreamElement.h"

namespace utility {

/// Passes messages between threads: a pool of streams, a queue and the waiting for both in one object.
///
/// A producer takes an empty message from the pool, writes it and sends it; a consumer receives it, reads it, and
/// returns it to the pool by destroying the `Message`. The pool bounds the memory: when it is empty, producers wait for
/// consumers. Messages are received in the order in which they were sent, each by one consumer.
///
/// `close` ends the channel: producers get no more messages and cannot send, and consumers receive what was sent before
/// and then nothing. Any thread may use the channel at any time until its destructor begins; a `Message` is for one
/// thread at a time. A failed POSIX call is logged at level 0 with its error number; only the constructor throws.
///
/// A time limit is in milliseconds of the monotonic clock: 0 does not wait, and a negative one is no limit. A call
/// returns at once if it need not wait, and never before its time limit otherwise.
///
///     utility::MessageChannel channel(8, 256);
///     std::thread consumer([&] {
///         while (auto message = channel.receive()) std::puts(message->GetLine());
///     });
///     auto message = channel.allocate();
///     message->PutF("port %d is offline\n", 4);
///     channel.send(std::move(message));
///     channel.close();
///     consumer.join();
class VXUT_EXPORT MessageChannel {
    struct State;

public:
    /// Returns a message to the pool of its channel, or deletes it if the channel no longer exists.
    class VXUT_EXPORT Return {
    public:
        Return() : m_state(nullptr) {}
        /// Returns or deletes `element`.
        void operator()(BufferStreamElement* element) const;

    private:
        friend class MessageChannel;
        explicit Return(State* state) : m_state(state) {}

        State* m_state;
    };
    /// A stream that its holder owns, or null.
    using Message = std::unique_ptr<BufferStreamElement, Return>;

    /// No time limit.
    static constexpr long withoutLimit = -1;

    /// Creates `count` messages of `size` bytes each. Throws code 1238 if the storage of one cannot be allocated or
    /// `size` is negative, and `std::bad_alloc` if there is no memory for the channel. Below 1, `count` is 1.
    MessageChannel(int count, int size);
    MessageChannel(const MessageChannel&) = delete;
    MessageChannel& operator=(const MessageChannel&) = delete;
    /// Closes the channel and deletes its messages; a message that is still held is deleted when its holder destroys
    /// it. No thread may be in an operation of the channel, or begin one.
    ~MessageChannel();

    /// Takes an empty message from the pool, which may wait for up to `milliseconds` until one is returned. Returns
    /// null after the time limit and on a closed channel. Its user fields are 0 and its no-throw flag is clear.
    Message allocate(long milliseconds = withoutLimit);
    /// Sends `message`, which is null afterwards. Returns false, and returns the message to its pool, if the channel is
    /// closed or the message is null or of another channel. Does not wait.
    bool send(Message message);
    /// Receives the message that was sent first, which may wait for up to `milliseconds`. Returns null after the time
    /// limit, and on a channel that is closed and empty.
    Message receive(long milliseconds = withoutLimit);

    /// Closes the channel and wakes all waiting threads. More calls have no effect.
    void close();
    /// Returns whether the channel is closed.
    bool isClosed() const;
    /// Returns whether the channel is closed and every message sent was received: `receive` returns null from now on.
    bool isAtEnd() const;
    /// Returns the number of messages that were sent and not yet received.
    int count() const;

private:
    State* m_state;
};

} // namespace utility
