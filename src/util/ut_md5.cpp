#include "ut_md5.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

constexpr std::size_t blockSize = 64;
constexpr std::size_t lengthOffset = 56; // in the last block

static_assert(offsetof(md5_state_t, abcd) == 8 && offsetof(md5_state_t, buf) == 24 && sizeof(md5_state_t) == 88,
              "the layout is part of the interface");

uint32_t littleEndian(uint32_t word) {
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    return __builtin_bswap32(word);
#else
    return word;
#endif
}

uint32_t loadWord(const unsigned char* bytes) {
    uint32_t word;
    std::memcpy(&word, bytes, sizeof word);
    return littleEndian(word);
}

uint32_t rotateLeft(uint32_t word, int bits) {
    return word << bits | word >> (32 - bits);
}

// The four auxiliary functions. `x` is the result of the previous step, so each has the form with the shortest
// dependency chain from `x`: that chain is what limits the speed.
struct F {
    static uint32_t add(uint32_t sum, uint32_t x, uint32_t y, uint32_t z) {
        return sum + (z ^ (x & (y ^ z)));
    }
};
struct G {
    static uint32_t add(uint32_t sum, uint32_t x, uint32_t y, uint32_t z) {
        return sum + (y & ~z) + (x & z);
    }
};
struct H {
    static uint32_t add(uint32_t sum, uint32_t x, uint32_t y, uint32_t z) {
        return sum + (x ^ (y ^ z));
    }
};
struct I {
    static uint32_t add(uint32_t sum, uint32_t x, uint32_t y, uint32_t z) {
        return sum + (y ^ (x | ~z));
    }
};

template<typename Function>
inline void step(uint32_t& a, uint32_t b, uint32_t c, uint32_t d, uint32_t word, int shift, uint32_t constant) {
    a = b + rotateLeft(Function::add(a + word + constant, b, c, d), shift);
}

// Four steps of a round. They use the words of the block at a fixed distance, modulo 16.
template<typename Function, int first, int distance, int s1, int s2, int s3, int s4>
inline void fourSteps(uint32_t& a, uint32_t& b, uint32_t& c, uint32_t& d, const unsigned char* block, uint32_t k1,
                      uint32_t k2, uint32_t k3, uint32_t k4) {
    step<Function>(a, b, c, d, loadWord(block + 4 * (first % 16)), s1, k1);
    step<Function>(d, a, b, c, loadWord(block + 4 * ((first + distance) % 16)), s2, k2);
    step<Function>(c, d, a, b, loadWord(block + 4 * ((first + 2 * distance) % 16)), s3, k3);
    step<Function>(b, c, d, a, loadWord(block + 4 * ((first + 3 * distance) % 16)), s4, k4);
}

// Uses four variables instead of an array: compilers vectorize the additions on an array, which delays the next block.
void digestBlocks(uint32_t (&abcd)[4], const unsigned char* data, std::size_t blocks) {
    uint32_t a = abcd[0];
    uint32_t b = abcd[1];
    uint32_t c = abcd[2];
    uint32_t d = abcd[3];
    for (; blocks > 0; --blocks, data += blockSize) {
        const uint32_t beforeA = a;
        const uint32_t beforeB = b;
        const uint32_t beforeC = c;
        const uint32_t beforeD = d;

        fourSteps<F, 0, 1, 7, 12, 17, 22>(a, b, c, d, data, 0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee);
        fourSteps<F, 4, 1, 7, 12, 17, 22>(a, b, c, d, data, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501);
        fourSteps<F, 8, 1, 7, 12, 17, 22>(a, b, c, d, data, 0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be);
        fourSteps<F, 12, 1, 7, 12, 17, 22>(a, b, c, d, data, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821);

        fourSteps<G, 1, 5, 5, 9, 14, 20>(a, b, c, d, data, 0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa);
        fourSteps<G, 5, 5, 5, 9, 14, 20>(a, b, c, d, data, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8);
        fourSteps<G, 9, 5, 5, 9, 14, 20>(a, b, c, d, data, 0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed);
        fourSteps<G, 13, 5, 5, 9, 14, 20>(a, b, c, d, data, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a);

        fourSteps<H, 5, 3, 4, 11, 16, 23>(a, b, c, d, data, 0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c);
        fourSteps<H, 1, 3, 4, 11, 16, 23>(a, b, c, d, data, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70);
        fourSteps<H, 13, 3, 4, 11, 16, 23>(a, b, c, d, data, 0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05);
        fourSteps<H, 9, 3, 4, 11, 16, 23>(a, b, c, d, data, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665);

        fourSteps<I, 0, 7, 6, 10, 15, 21>(a, b, c, d, data, 0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039);
        fourSteps<I, 12, 7, 6, 10, 15, 21>(a, b, c, d, data, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1);
        fourSteps<I, 8, 7, 6, 10, 15, 21>(a, b, c, d, data, 0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1);
        fourSteps<I, 4, 7, 6, 10, 15, 21>(a, b, c, d, data, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391);

        a += beforeA;
        b += beforeB;
        c += beforeC;
        d += beforeD;
    }
    abcd[0] = a;
    abcd[1] = b;
    abcd[2] = c;
    abcd[3] = d;
}

std::size_t pendingBytes(const md5_state_t& state) {
    return state.count[0] / 8 % blockSize;
}

void countBytes(md5_state_t& state, uint32_t bytes) {
    const uint32_t low = state.count[0];
    state.count[0] += bytes << 3;
    state.count[1] += (bytes >> 29) + (state.count[0] < low ? 1 : 0);
}

void storeWords(unsigned char* out, const uint32_t* words, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const uint32_t word = littleEndian(words[i]);
        std::memcpy(out + 4 * i, &word, sizeof word);
    }
}

} // namespace

void md5_init(md5_state_t* state) {
    *state = md5_state_t{{0, 0}, {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476}, {}};
}

void md5_append(md5_state_t* state, const unsigned char* data, int nbytes) {
    if (data == nullptr || nbytes < 1)
        return;
    std::size_t left = static_cast<std::size_t>(nbytes);
    const std::size_t pending = pendingBytes(*state);
    countBytes(*state, static_cast<uint32_t>(nbytes));
    if (pending > 0) {
        const std::size_t taken = std::min(left, blockSize - pending);
        std::memcpy(state->buf + pending, data, taken);
        if (pending + taken < blockSize)
            return;
        digestBlocks(state->abcd, state->buf, 1);
        data += taken;
        left -= taken;
    }
    digestBlocks(state->abcd, data, left / blockSize);
    std::memcpy(state->buf, data + (left - left % blockSize), left % blockSize);
}

void md5_finish(md5_state_t* state, unsigned char digest[16]) {
    std::size_t pending = pendingBytes(*state);
    state->buf[pending++] = 0x80;
    if (pending > lengthOffset) {
        std::memset(state->buf + pending, 0, blockSize - pending);
        digestBlocks(state->abcd, state->buf, 1);
        pending = 0;
    }
    std::memset(state->buf + pending, 0, lengthOffset - pending);
    storeWords(state->buf + lengthOffset, state->count, 2);
    digestBlocks(state->abcd, state->buf, 1);
    storeWords(digest, state->abcd, 4);
}
