#pragma once

#include "ut_Export.h"

#include <cstdint>
#include <cstring>

// What the hash maps have in common. Not for callers of the library.

namespace utility {

/// Opaque pointers as keys, in the order of their numbers.
struct PointerKeys {
    typedef void* Key;

    /// Negative, 0 or positive, as `left` is before, the same as, or behind `right`.
    static int compare(const void* left, const void* right) {
        if (left == right)
            return 0;
        return reinterpret_cast<std::uintptr_t>(left) < reinterpret_cast<std::uintptr_t>(right) ? -1 : 1;
    }
    static unsigned int hash(const void* key) {
        return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(key));
    }
    static void reportPlaced(const void* key, unsigned int bucket);
    static void reportInserted(const void* key, unsigned int bucket, const void* before);
    static void reportAppended(const void* key, unsigned int bucket);
};

/// Texts as keys, in the order of their bytes as 0 to 255.
struct TextKeys {
    typedef const char* Key;

    /// Negative, 0 or positive, as `left` is before, the same as, or behind `right`.
    static int compare(const char* left, const char* right) {
        return std::strcmp(left, right);
    }
    /// The sum of the bytes less 32 each.
    static unsigned int hash(const char* key) {
        unsigned int sum = 0;
        for (; *key; ++key)
            sum += static_cast<unsigned char>(*key) - 32u;
        return sum;
    }
    static void reportPlaced(const char* key, unsigned int bucket);
    static void reportInserted(const char* key, unsigned int bucket, const char* before);
    static void reportAppended(const char* key, unsigned int bucket);
};

/// A table of chains, each in ascending order of its keys. Where nodes and table come from, and when they are released,
/// is up to the map. Without a table nothing is found and nothing is added.
template<class Keys>
struct HashChains {
    typedef typename Keys::Key Key;

    struct Node {
        Node* next;
        Key key;
        void* value;
    };

    unsigned int count = 0;
    unsigned int numBuckets = 0;
    unsigned int hashMask = 0;
    Node** table = nullptr;
    bool placementTrace = false;

    /// Whether a table may have `buckets` chains: a power of two from 2 to 65,536.
    static bool isBucketCount(unsigned int buckets) {
        return buckets >= 2 && buckets <= 65536 && (buckets & (buckets - 1)) == 0;
    }

    static unsigned long tableSize(unsigned int buckets) {
        return buckets * sizeof(void*);
    }

    /// Takes `storage` of `tableSize(buckets)` bytes as its table; null leaves it without one.
    void useTable(void* storage, unsigned int buckets) {
        if (!storage)
            return;
        std::memset(storage, 0, tableSize(buckets));
        table = static_cast<Node**>(storage);
        numBuckets = buckets;
        hashMask = buckets - 1;
    }

    unsigned int bucketOf(Key key) const {
        return Keys::hash(key) & hashMask;
    }

    /// The node of `key` in the chain of `bucket`; null when there is none.
    const Node* find(unsigned int bucket, Key key) const {
        for (const Node* node = table ? table[bucket] : nullptr; node; node = node->next) {
            const int order = Keys::compare(node->key, key);
            if (order >= 0)
                return order == 0 ? node : nullptr;
        }
        return nullptr;
    }

    /// The first node from the chain of `bucket` on; null when there is none.
    const Node* firstFrom(unsigned int bucket) const {
        for (; bucket < numBuckets; ++bucket) {
            if (table[bucket])
                return table[bucket];
        }
        return nullptr;
    }

    /// The node behind `node`, which is in the chain of `bucket`.
    const Node* after(const Node* node, unsigned int bucket) const {
        return node->next ? node->next : firstFrom(bucket + 1);
    }

    /// Gives an existing `key` the new value, or links in what `makeNode` gives, whose key is set; false when nothing
    /// was linked in.
    template<class MakeNode>
    bool add(unsigned int bucket, Key key, void* value, MakeNode makeNode) {
        if (!table)
            return false;
        Node** link = linkTo(bucket, key);
        Node* next = *link;
        if (next && Keys::compare(next->key, key) == 0) {
            next->value = value;
            return false;
        }
        Node* node = makeNode();
        if (!node)
            return false;
        if (placementTrace)
            report(link, bucket, key);
        node->next = next;
        node->value = value;
        *link = node;
        ++count;
        return true;
    }

    /// Takes the node at `link` out of its chain.
    Node* unlink(Node** link) {
        Node* node = *link;
        *link = node->next;
        --count;
        return node;
    }

    /// Hands every node to `release`. The count stays.
    template<class Release>
    void clear(Release release) {
        for (unsigned int bucket = 0; bucket < numBuckets; ++bucket) {
            Node* node = table[bucket];
            table[bucket] = nullptr;
            while (node) {
                Node* next = node->next;
                release(node);
                node = next;
            }
        }
    }

    /// The link in the chain of `bucket` that leads to the first node whose key is not before `key`, or to the end.
    Node** linkTo(unsigned int bucket, Key key) const {
        Node** link = &table[bucket];
        while (*link && Keys::compare((*link)->key, key) < 0)
            link = &(*link)->next;
        return link;
    }

private:
    void report(Node* const* link, unsigned int bucket, Key key) const {
        if (!table[bucket])
            Keys::reportPlaced(key, bucket);
        else if (*link)
            Keys::reportInserted(key, bucket, (*link)->key);
        else
            Keys::reportAppended(key, bucket);
    }
};

} // namespace utility
