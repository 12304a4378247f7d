#include "ut_Map.h"

#include <cstdio>
#include <limits>
#include <new>
#include <string>

#include "fw_Memory.h"
#include "fw_StringRepository.h"
#include "internal/ut_Trace.h"

using framework::Memory;

namespace utility {

namespace {

typedef HashChains<PointerKeys>::Node Node;

Node* makeNode(void* key) {
    void* storage = Memory::StaticAlloc(sizeof(Node));
    return storage != nullptr ? new (storage) Node{nullptr, key, nullptr} : nullptr;
}

// Returns "(null)", as glibc prints a null text, if `key` is not a token.
const char* tokenText(const void* key) {
    const auto number = reinterpret_cast<std::uintptr_t>(key);
    if (number > std::numeric_limits<stringtoken>::max())
        return "(null)";
    const char* text = strings::StringRepository::toString(static_cast<stringtoken>(number));
    return text != nullptr ? text : "(null)";
}

} // namespace

Map::Map(unsigned int numBuckets) {
    if (!m_chains.isBucketCount(numBuckets)) {
        VXUT_LOG(framework::Logger::LOG_ERROR, "need to use num buckets at power of 2 instead of %s\n",
                 std::to_string(numBuckets).c_str());
        return;
    }
    m_chains.useTable(Memory::StaticAlloc(m_chains.tableSize(numBuckets)), numBuckets);
}

Map::~Map() {
    DeleteAll();
    Memory::StaticFree(m_chains.table);
}

bool Map::Add(void* key, void* value) {
    return m_chains.add(m_chains.bucketOf(key), key, value, [key] { return makeNode(key); });
}

bool Map::Delete(void* key) {
    if (m_chains.table == nullptr)
        return false;
    Node** link = m_chains.linkTo(m_chains.bucketOf(key), key);
    if (*link == nullptr)
        return true;
    if ((*link)->key != key)
        return false;
    Memory::StaticFree(m_chains.unlink(link));
    return true;
}

void* Map::Lookup(void* key) const {
    const Node* node = m_chains.find(m_chains.bucketOf(key), key);
    return node != nullptr ? node->value : absentEntry();
}

void* Map::First(void*& value) const {
    const Node* node = m_chains.firstFrom(0);
    if (node == nullptr)
        return absentEntry();
    value = node->value;
    return node->key;
}

void* Map::Next(void* key, void*& value) const {
    const unsigned int bucket = m_chains.bucketOf(key);
    const Node* node = m_chains.find(bucket, key);
    if (node != nullptr)
        node = m_chains.after(node, bucket);
    if (node == nullptr)
        return absentEntry();
    value = node->value;
    return node->key;
}

void Map::DeleteAll() {
    m_chains.clear(Memory::StaticFree);
}

void Map::dump() {
    for (unsigned int bucket = 0; bucket < m_chains.numBuckets; ++bucket) {
        const Node* node = m_chains.table[bucket];
        if (node == nullptr)
            continue;
        std::printf("bucket %u: ", bucket);
        for (; node != nullptr; node = node->next)
            std::printf("%p[%s] ", node->key, tokenText(node->key));
        std::printf("\n");
    }
}

} // namespace utility
