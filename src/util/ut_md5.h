#pragma once

#include <stdint.h>

#include "ut_CExport.h"

#ifdef __cplusplus
extern "C" {
#endif

/// An MD5 digest in the making, as RFC 1321 defines it, for C and C++ callers alike.
///
/// The state is the caller's and needs no clean-up; it may be copied, to go on from one beginning in two ways. Its
/// layout is shared with callers. One thread at a time for each state. Nothing fails. MD5 is here for the formats that
/// name it: it withstands no attacker.
///
///     md5_state_t state;
///     unsigned char digest[16];
///     md5_init(&state);
///     md5_append(&state, (const unsigned char*)"abc", 3);
///     md5_finish(&state, digest);   // begins with 90 01 50 98
typedef struct md5_state_s {
    uint32_t count[2];     ///< length of the message in bits, low word first
    uint32_t abcd[4];      ///< chaining values
    unsigned char buf[64]; ///< pending input, less than a block
} md5_state_t;

/// Starts a digest.
VXUT_EXPORT void md5_init(md5_state_t* state);

/// Adds `nbytes` bytes of `data`, which is not kept; null and a count below 1 do nothing.
VXUT_EXPORT void md5_append(md5_state_t* state, const unsigned char* data, int nbytes);

/// Pads the message, adds its length and writes the 16 bytes of the digest. The state must be started again before
/// more is added.
VXUT_EXPORT void md5_finish(md5_state_t* state, unsigned char digest[16]);

#ifdef __cplusplus
}
#endif
