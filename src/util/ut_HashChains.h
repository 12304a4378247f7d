#pragma once

#include "ut_Export.h"

#include <cstdint>
#include <cstring>

// The implementation that the hash maps share. Internal to the library.

namespace utility {

/// Key traits of opaque pointers, ordered by address.
struct PointerKeys {
    /// The type of a key.
    typedef void* Key;

    /// Returns a negative number, 0 or a positive number if `left` is less than, equal to or greater than `right`.
    static int compare(const void* left, const void* right) {
        if (left == right)
            return 0;
        return reinterpret_cast<std::uintptr_t>(left) < reinterpret_cast<std::uintptr_t>(right) ? -1 : 1;
    }
    /// Returns the low 32 bits of the address.
    static unsigned int hash(const void* key) {
        return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(key));
    }
    /// Prints to standard output that `key` is the first of `bucket`.
    static void reportPlaced(const void* key, unsigned int bucket);
    /// Prints to standard output that `key` is inserted in `bucket` before the key `before`.
    static void reportInserted(const void* key, unsigned int bucket, const void* before);
    /// Prints to standard output that `key` is appended to the chain of `bucket`.
    static void reportAppended(const void* key, unsigned int bucket);
};

/// Key traits of NUL-terminated texts, ordered as by `strcmp`: by bytes from 0 to 255. A text must not be null.
struct TextKeys {
    /// The type of a key.
    typedef const char* Key;

    /// Returns a negative number, 0 or a positive number if `left` is less than, equal to or greater than `right`.
    static int compare(const char* left, const char* right) {
        return std::strcmp(left, right);
    }
    /// Returns the sum of the bytes, each minus 32, modulo 2^32.
    static unsigned int hash(const char* key) {
        unsigned int sum = 0;
        for (; *key != 0; ++key)
            sum += static_cast<unsigned char>(*key) - 32u;
        return sum;
    }
    /// Prints to standard output that `key` is the first of `bucket`.
    static void reportPlaced(const char* key, unsigned int bucket);
    /// Prints to standard output that `key` is inserted in `bucket` before the key `before`.
    static void reportInserted(const char* key, unsigned int bucket, const char* before);
    /// Prints to standard output that `key` is appended to the chain of `bucket`.
    static void reportAppended(const char* key, unsigned int bucket);
};

/// A hash table with separate chaining. The keys of a chain are in ascending order. The map that uses it allocates and
/// releases the nodes and the table. Without a table, no key is found or added. Not thread-safe.
template<typename Keys>
struct HashChains {
    /// The type of a key.
    typedef typename Keys::Key Key;

    /// A key with its value, in the chain of its bucket.
    struct Node {
        /// The next node of the chain; null at its end.
        Node* next;
        /// The key.
        Key key;
        /// The value, which the table does not own.
        void* value;
    };

    /// The number of keys.
    unsigned int count = 0;
    /// The number of buckets; 0 without a table.
    unsigned int numBuckets = 0;
    /// The number of buckets minus one, which is the mask for the hash of a key.
    unsigned int hashMask = 0;
    /// The first node of each bucket; null without a table. The map owns it.
    Node** table = nullptr;
    /// Whether each added key is reported to standard output.
    bool placementTrace = false;

    /// Returns whether `buckets` is a power of two from 2 to 65,536.
    static bool isBucketCount(unsigned int buckets) {
        return buckets >= 2 && buckets <= 65536 && (buckets & (buckets - 1)) == 0;
    }

    /// Returns the size in bytes of a table of `buckets` buckets.
    static unsigned long tableSize(unsigned int buckets) {
        return buckets * sizeof(void*);
    }

    /// Uses `storage`, which has `tableSize(buckets)` bytes, as an empty table. Does nothing if `storage` is null.
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

    /// Returns the first node of the first bucket, from `bucket` on, that is not empty, or null if there is none.
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

    /// Adds `key` with `value` and returns true. If `key` is present, replaces its value and returns false.
    /// `makeNode()` returns a new node with its `key` set; if it returns null, the table is unchanged and the result is
    /// false.
    template<typename MakeNode>
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

    /// Removes the node that `*link` points to from its chain and returns it, without releasing it.
    Node* unlink(Node** link) {
        Node* node = *link;
        *link = node->next;
        --count;
        return node;
    }

    /// Removes all nodes and calls `release(node)` for each. Does not reset `count`.
    template<typename Release>
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

    /// Returns the pointer, in the chain of `bucket`, that points to the first node with a key not less than `key`, or
    /// to null at the end of the chain. The table must not be null.
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
