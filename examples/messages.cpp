// Passes messages between threads: two producers report ports, one consumer counts them.

#include <cstdio>
#include <thread>

#include "ut_MessageChannel.h"

namespace {

void produce(utility::MessageChannel& channel, int first) {
    for (int port = first; port < first + 50; ++port) {
        // Waits for a free message when the consumer is slower.
        auto message = channel.allocate();
        message->PutF("port %d is %s\n", port, port % 10 == 0 ? "offline" : "online");
        channel.send(std::move(message));
    }
}

} // namespace

int main() {
    utility::MessageChannel channel(8, 64);
    int offline = 0;
    std::thread consumer([&] {
        // Ends when the channel is closed and empty. The message returns to the pool at the end of the block.
        while (auto message = channel.receive()) {
            int port = 0;
            char state[16];
            if (std::sscanf(message->GetLine(), "port %d is %15s", &port, state) == 2 && state[1] == 'f')
                ++offline;
        }
    });
    std::thread first(produce, std::ref(channel), 0);
    std::thread second(produce, std::ref(channel), 50);
    first.join();
    second.join();
    channel.close();
    consumer.join();
    std::printf("%d ports are offline\n", offline);
}
