#include "ut_StringMap.h"

#include <cstdio>
#include <cstring>
#include <new>

#include "fw_KnownTokens.h"
#include "fw_Memory.h"
#include "internal/ut_Trace.h"
#include "ut_Debug.h"

using framework::Memory;

namespace utility {

namespace {

typedef HashChains<TextKeys>::Node Node;

Node* makeNode(const char* key) {
    void* storage = Memory::StaticAlloc(sizeof(Node));
    if (storage == nullptr)
        return nullptr;
    const char* copy = Memory::StaticAllocString(key);
    if (copy != nullptr)
        return new (storage) Node{nullptr, copy, nullptr};
    Memory::StaticFree(storage);
    return nullptr;
}

// Calls `hash` only if it is to be traced: the call would slow every lookup.
unsigned int bucketOf(StringMap& map, const HashChains<TextKeys>& chains, const char* key) {
    return Debug::isDebugOn(strings::TOKEN_STRING_MAP) ? map.hash(key) : chains.bucketOf(key);
}

void releaseNode(const Node* node) {
    Memory::StaticFreeString(node->key);
    Memory::StaticFree(node);
}

} // namespace

StringMap::StringMap(unsigned int numBuckets) {
    if (!m_chains.isBucketCount(numBuckets)) {
        VXUT_LOG(framework::Logger::LOG_ERROR, "need to use num buckets at power of 2 instead of %d\n",
                 static_cast<int>(numBuckets));
        return;
    }
    m_chains.useTable(Memory::StaticAlloc(m_chains.tableSize(numBuckets)), numBuckets);
    VXUT_TRACE(TOKEN_STRING_MAP, "numBuckets = %u, hashMask = %u", m_chains.numBuckets, m_chains.hashMask);
}

StringMap::~StringMap() {
    DeleteAll();
    Memory::StaticFree(m_chains.table);
}

uint32_t StringMap::hash(const char* key) {
    if (key == nullptr)
        return 0;
    const uint32_t bucket = m_chains.bucketOf(key);
    if (!Debug::isDebugOn(strings::TOKEN_STRING_MAP))
        return bucket;
    VXUT_LOG(framework::Logger::LOG_DEBUG, "string to hash: %s, length=%d", key, static_cast<int>(std::strlen(key)));
    for (const char* at = key; *at != 0; ++at)
        VXUT_LOG(framework::Logger::LOG_DEBUG, "hash char %c", *at);
    VXUT_LOG(framework::Logger::LOG_DEBUG, "result = %d", static_cast<int>(TextKeys::hash(key)));
    VXUT_LOG(framework::Logger::LOG_DEBUG, "numBuckets = %d", static_cast<int>(m_chains.numBuckets));
    VXUT_LOG(framework::Logger::LOG_DEBUG, "hashMask = %d", static_cast<int>(m_chains.hashMask));
    VXUT_LOG(framework::Logger::LOG_DEBUG, "final value=%d", static_cast<int>(bucket));
    return bucket;
}

bool StringMap::Add(const char* key, void* value) {
    if (key == nullptr)
        return false;
    return m_chains.add(bucketOf(*this, m_chains, key), key, value, [key] { return makeNode(key); });
}

bool StringMap::Delete(const char* key) {
    if (key == nullptr || m_chains.table == nullptr)
        return false;
    Node** link = &m_chains.table[bucketOf(*this, m_chains, key)];
    if (*link == nullptr)
        return true;
    const int order = std::strcmp(key, (*link)->key);
    if (order == 0)
        releaseNode(m_chains.unlink(link));
    // If `key` is less than the first key, all keys of the bucket are greater.
    return order <= 0;
}

void* StringMap::Lookup(const char* key) {
    const Node* node = key != nullptr ? m_chains.find(bucketOf(*this, m_chains, key), key) : nullptr;
    return node != nullptr ? node->value : absentEntry();
}

const char* StringMap::First(void*& value) {
    const Node* node = m_chains.firstFrom(0);
    if (node == nullptr)
        return nullptr;
    value = node->value;
    return node->key;
}

const char* StringMap::Next(const char* key, void*& value) {
    if (key == nullptr)
        return nullptr;
    const unsigned int bucket = bucketOf(*this, m_chains, key);
    const Node* node = m_chains.find(bucket, key);
    if (node != nullptr)
        node = m_chains.after(node, bucket);
    if (node == nullptr)
        return nullptr;
    value = node->value;
    return node->key;
}

void StringMap::DeleteAll() {
    m_chains.clear(releaseNode);
}

void StringMap::dump() {
    for (unsigned int bucket = 0; bucket < m_chains.numBuckets; ++bucket) {
        const Node* node = m_chains.table[bucket];
        if (node == nullptr)
            continue;
        std::printf("%u: ", bucket);
        for (; node != nullptr; node = node->next)
            std::printf("%s ", node->key);
        std::printf("\n");
    }
}

} // namespace utility
