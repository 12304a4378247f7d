#pragma once

// MD5 as RFC 1321 defines it, for C and C++ callers alike. It is kept for the
// formats that name it; it resists no attacker.
//
// The state is the caller's, holds no pointers and needs no clean-up; it may be
// copied to fork a digest. One thread at a time for each state. Nothing fails.
//
//     md5_state_t state;
//     unsigned char digest[16];
//     md5_init(&state);
//     md5_append(&state, (const unsigned char*)"abc", 3);
//     md5_finish(&state, digest);   // 90 01 50 98 3c d2 4f b0 d6 96 3f 7d 28
//     e1 7f 72

#include <stdint.h>

#include "ut_Export.h"

#ifdef __cplusplus
extern "C" {
#endif

/// A digest in the making. The layout is shared with callers.
typedef struct md5_state_s {
    uint32_t count[2];     ///< length of the message in bits, low word first
    uint32_t abcd[4];      ///< chaining values
    unsigned char buf[64]; ///< pending input, less than a block
} md5_state_t;

/// Starts a digest.
VXUT_EXPORT void md5_init(md5_state_t* state);

/// Adds `nbytes` bytes of `data`, which is not kept; a count below 1 does
/// nothing.
VXUT_EXPORT void md5_append(md5_state_t* state, const unsigned char* data, int nbytes);

/// Pads the message, adds its length and writes the 16 bytes of the digest. The
/// state must be started again before more is added.
VXUT_EXPORT void md5_finish(md5_state_t* state, unsigned char digest[16]);

#ifdef __cplusplus
}
#endif
