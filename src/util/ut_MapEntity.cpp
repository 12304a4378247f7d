#include "ut_MapEntity.h"

#include <cstdio>
#include <new>
#include <string>

namespace utility {

typedef HashChains<PointerKeys>::Node Node;

MapEntity::MapEntity(unsigned int numBuckets, framework::Memory* memory) {
    if (memory != nullptr)
        setMemory(memory);
    if (!m_chains.isBucketCount(numBuckets)) {
        LogMethodError(__PRETTY_FUNCTION__, __LINE__, "need to use num buckets at power of 2 instead of %s\n",
                       std::to_string(numBuckets).c_str());
        return;
    }
    m_chains.useTable(Alloc(m_chains.tableSize(numBuckets)), numBuckets);
}

MapEntity::~MapEntity() {
    DeleteAll();
    Free(m_chains.table);
}

bool MapEntity::Add(void* key, void* value) {
    return m_chains.add(m_chains.bucketOf(key), key, value, [this, key]() -> Node* {
        void* storage = Alloc(sizeof(Node));
        return storage != nullptr ? new (storage) Node{nullptr, key, nullptr} : nullptr;
    });
}

bool MapEntity::Delete(void* key) {
    if (m_chains.table == nullptr)
        return false;
    Node** link = m_chains.linkTo(m_chains.bucketOf(key), key);
    if (*link == nullptr)
        return true;
    if ((*link)->key != key)
        return false;
    Free(m_chains.unlink(link));
    return true;
}

void* MapEntity::Lookup(void* key) {
    const Node* node = m_chains.find(m_chains.bucketOf(key), key);
    return node != nullptr ? node->value : absentEntry();
}

void* MapEntity::First(void*& value) {
    const Node* node = m_chains.firstFrom(0);
    if (node == nullptr)
        return absentEntry();
    value = node->value;
    return node->key;
}

void* MapEntity::Next(void* key, void*& value) {
    const unsigned int bucket = m_chains.bucketOf(key);
    const Node* node = m_chains.find(bucket, key);
    if (node != nullptr)
        node = m_chains.after(node, bucket);
    if (node == nullptr)
        return absentEntry();
    value = node->value;
    return node->key;
}

void MapEntity::DeleteAll() {
    m_chains.clear([this](const Node* node) { Free(node); });
}

void MapEntity::dump() {
    for (unsigned int bucket = 0; bucket < m_chains.numBuckets; ++bucket) {
        const Node* node = m_chains.table[bucket];
        if (node == nullptr)
            continue;
        std::printf("%u: ", bucket);
        for (; node != nullptr; node = node->next)
            std::printf("%p ", node->key);
        std::printf("\n");
    }
}

} // namespace utility
