#include "ut_HashChains.h"

#include <cstdio>

namespace utility {

void PointerKeys::reportPlaced(const void* key, unsigned int bucket) {
    std::printf("place: %p @ %u\n", key, bucket);
}

void PointerKeys::reportInserted(const void* key, unsigned int bucket, const void* before) {
    std::printf("insert: %p @ %u, before %p\n", key, bucket, before);
}

void PointerKeys::reportAppended(const void* key, unsigned int bucket) {
    std::printf("append: %p @ %u\n", key, bucket);
}

void TextKeys::reportPlaced(const char* key, unsigned int bucket) {
    std::printf("place: %s @ %u\n", key, bucket);
}

void TextKeys::reportInserted(const char* key, unsigned int bucket, const char* before) {
    std::printf("insert: %s @ %u, before %s\n", key, bucket, before);
}

void TextKeys::reportAppended(const char* key, unsigned int bucket) {
    std::printf("append: %s @ %u\n", key, bucket);
}

} // namespace utility
