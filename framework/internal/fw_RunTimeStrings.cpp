// Not a std::unordered_map with a lock: known texts are looked up in signal handlers and after `fork`, with no lock and
// no allocation, also in static constructors and destructors, and a text that a caller was given never moves.

#include "internal/fw_RunTimeStrings.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>

#include <pthread.h>

#include "internal/fw_SignalSafeMutex.h"

namespace strings {

namespace {

// A node of the hash tree: two bits of the hash select a child. Nodes are added but never changed or freed, so that a
// look-up needs no lock. All stay reachable from the root until the process ends.
struct Node {
    std::atomic<Node*> children[4];
    stringtoken token;
    char text[1];
};

// Texts by number, in blocks that double in size and never move.
constexpr unsigned int firstBlockBits = 8;
constexpr unsigned int blockCount = 24;

typedef std::atomic<const char*> Slot;

// Constant-initialized and trivially destructible: texts are interned in static constructors and destructors too.
std::atomic<Node*> root{nullptr};
std::atomic<Slot*> blocks[blockCount] = {};
stringtoken nextToken = firstRunTimeToken;
framework::SignalSafeMutex growth;

__attribute__((constructor)) void watchForks() {
    pthread_atfork([] { growth.lock(); }, [] { growth.unlock(); }, [] { growth.unlock(); });
}

// FNV-1a
std::uint64_t hashOf(const char* text) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (; *text != '\0'; ++text)
        hash = (hash ^ static_cast<unsigned char>(*text)) * 0x100000001b3;
    return hash;
}

// Returns the link to the node of `text`, or the null link where that node is to be added.
std::atomic<Node*>* linkFor(const char* text) {
    std::atomic<Node*>* link = &root;
    std::uint64_t hash = hashOf(text);
    while (const Node* node = link->load(std::memory_order_acquire)) {
        if (std::strcmp(node->text, text) == 0)
            break;
        link = const_cast<std::atomic<Node*>*>(&node->children[hash >> 62]);
        hash <<= 2;
    }
    return link;
}

struct Place {
    unsigned int block;
    std::uint32_t index;
};

Place placeOf(stringtoken token) {
    const std::uint64_t number = (std::uint64_t{token} - firstRunTimeToken) + (std::uint64_t{1} << firstBlockBits);
    const unsigned int bits = 63U - static_cast<unsigned int>(__builtin_clzll(number));
    return {bits - firstBlockBits, static_cast<std::uint32_t>(number - (std::uint64_t{1} << bits))};
}

// Returns null if the allocation fails or no number is left.
Slot* slotFor(stringtoken token) {
    const Place place = placeOf(token);
    if (place.block >= blockCount)
        return nullptr;
    Slot* block = blocks[place.block].load(std::memory_order_relaxed);
    if (block == nullptr) {
        block = static_cast<Slot*>(std::calloc(std::size_t{1} << (firstBlockBits + place.block), sizeof(Slot)));
        if (block == nullptr)
            return nullptr;
        blocks[place.block].store(block, std::memory_order_release);
    }
    return block + place.index;
}

stringtoken intern(const char* text, std::atomic<Node*>* link) {
    Slot* slot = slotFor(nextToken);
    if (slot == nullptr)
        return 0;
    const std::size_t length = std::strlen(text);
    void* storage = std::calloc(1, sizeof(Node) + length);
    if (storage == nullptr)
        return 0;
    Node* node = new (storage) Node{{}, nextToken++, {}};
    std::memcpy(node->text, text, length + 1);
    slot->store(node->text, std::memory_order_release);
    link->store(node, std::memory_order_release);
    return node->token;
}

} // namespace

stringtoken runTimeToken(const char* text) {
    if (const Node* node = linkFor(text)->load(std::memory_order_acquire))
        return node->token;
    const std::lock_guard<framework::SignalSafeMutex> guard(growth);
    std::atomic<Node*>* link = linkFor(text);
    if (const Node* node = link->load(std::memory_order_acquire))
        return node->token;
    return intern(text, link);
}

const char* runTimeText(stringtoken token) {
    if (token < firstRunTimeToken)
        return nullptr;
    const Place place = placeOf(token);
    const Slot* block = place.block < blockCount ? blocks[place.block].load(std::memory_order_acquire) : nullptr;
    return block != nullptr ? block[place.index].load(std::memory_order_acquire) : nullptr;
}

} // namespace strings
