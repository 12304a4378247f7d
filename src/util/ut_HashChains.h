#pragma once

#include "ut_Export.h"

#include <cstdint>
#include <cstring>

// The implementation shared by the hash maps. Internal to the library.

namespace utility {

/// Key traits of opaque pointers, which are in the order of their addresses.
struct PointerKeys {
    typedef void* Key;

    /// Returns a negative number, 0 or a positive number if `left` is less than, equal to or greater than `right`.
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

/// Key traits of texts, which are in the order of `strcmp`: by bytes from 0 to 255.
struct TextKeys {
    typedef const char* Key;

    /// Returns a negative number, 0 or a positive number if `left` is less than, equal to or greater than `right`.
    static int compare(const char* left, const char* right) {
        return std::strcmp(left, right);
    }
    /// Returns the sum of the bytes, less 32 each.
    static unsigned int hash(const char* key) {
        unsigned int sum = 0;
        for (; *key != 0; ++key)
            sum += static_cast<unsigned char>(*key) - 32u;
        return sum;
    }
    static void reportPlaced(const char* key, unsigned int bucket);
    static void reportInserted(const char* key, unsigned int bucket, const char* before);
    static void reportAppended(const char* key, unsigned int bucket);
};

/// A hash table with separate chaining; the keys of a chain are in ascending order. The map allocates and releases
/// nodes and table. Without a table, no key is found or added.
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

    /// Returns whether `buckets` is a power of two from 2 to 65,536.
    static bool isBucketCount(unsigned int buckets) {
        return buckets >= 2 && buckets <= 65536 && (buckets & (buckets - 1)) == 0;
    }

    /// Returns the size in bytes of a table of `buckets` buckets.
    static unsigned long tableSize(unsigned int buckets) {
        return buckets * sizeof(void*);
    }

    /// Uses `storage`, `tableSize(buckets)` bytes, as the table. Does nothing if `storage` is null.
    void useTable(void* storage, unsigned int buckets) {
        if (storage == nullptr)
            return;
        std::memset(storage, 0, tableSize(buckets));
        table = static_cast<Node**>(storage);
        numBuckets = buckets;
        hashMask = buckets - 1;
    }

    /// Returns the bucket of `key`.
    unsigned int bucketOf(Key key) const {
        return Keys::hash(key) & hashMask;
    }

    /// Returns the node of `key` in `bucket`, or null if there is none.
    const Node* find(unsigned int bucket, Key key) const {
        for (const Node* node = table != nullptr ? table[bucket] : nullptr; node != nullptr; node = node->next) {
            const int order = Keys::compare(node->key, key);
            if (order >= 0)
                return order == 0 ? node : nullptr;
        }
        return nullptr;
    }

    /// Returns the first node of `bucket` or of the first bucket in use after it, or null if there is none.
    const Node* firstFrom(unsigned int bucket) const {
        for (; bucket < numBuckets; ++bucket) {
            if (table[bucket] != nullptr)
                return table[bucket];
        }
        return nullptr;
    }

    /// Returns the node after `node`, which is in `bucket`, or null if it is the last of the table.
    const Node* after(const Node* node, unsigned int bucket) const {
        return node->next != nullptr ? node->next : firstFrom(bucket + 1);
    }

    /// Adds the node returned by `makeNode`, with its `key` set, and returns true. Returns false if `key` was present,
    /// after replacing its value, or if `makeNode` returns null.
    template<class MakeNode>
    bool add(unsigned int bucket, Key key, void* value, MakeNode makeNode) {
        if (table == nullptr)
            return false;
        Node** link = linkTo(bucket, key);
        Node* next = *link;
        if (next != nullptr && Keys::compare(next->key, key) == 0) {
            next->value = value;
            return false;
        }
        Node* node = makeNode();
        if (node == nullptr)
            return false;
        if (placementTrace)
            report(link, bucket, key);
        node->next = next;
        node->value = value;
        *link = node;
        ++count;
        return true;
    }

    /// Removes the node that `link` points to from its chain and returns it.
    Node* unlink(Node** link) {
        Node* node = *link;
        *link = node->next;
        --count;
        return node;
    }

    /// Removes all nodes and passes each to `release`. Does not reset `count`.
    template<class Release>
    void clear(Release release) {
        for (unsigned int bucket = 0; bucket < numBuckets; ++bucket) {
            Node* node = table[bucket];
            table[bucket] = nullptr;
            while (node != nullptr) {
                Node* next = node->next;
                release(node);
                node = next;
            }
        }
    }

    /// Returns the link in the chain of `bucket` to the first node with a key not less than `key`, or the null link at
    /// the end.
    Node** linkTo(unsigned int bucket, Key key) const {
        Node** link = &table[bucket];
        while (*link != nullptr && Keys::compare((*link)->key, key) < 0)
            link = &(*link)->next;
        return link;
    }

private:
    void report(Node* const* link, unsigned int bucket, Key key) const {
        if (table[bucket] == nullptr)
            Keys::reportPlaced(key, bucket);
        else if (*link != nullptr)
            Keys::reportInserted(key, bucket, (*link)->key);
        else
            Keys::reportAppended(key, bucket);
    }
};

} // namespace utility
