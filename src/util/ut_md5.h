#pragma once

#include "ut_CExport.h"

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// The state of an MD5 computation (RFC 1321), for C and C++ callers.
///
/// The caller owns the state, which needs no cleanup and may be copied, for example to compute the digests of two
/// messages with a common prefix. Its layout is part of the interface. Only one thread at a time may use a state. No
/// operation fails. Use MD5 only where a format requires it: it is not secure against attackers.
///
///     md5_state_t state;
///     unsigned char digest[16];
///     md5_init(&state);
///     md5_append(&state, (const unsigned char*)"abc", 3);
///     md5_finish(&state, digest);   // begins with 90 01 50 98
typedef struct md5_state_s {
    uint32_t count[2];     ///< length of the message in bits, low word first
    uint32_t abcd[4];      ///< chaining values
    unsigned char buf[64]; ///< input not yet processed, less than one block
} md5_state_t;

/// Starts a new message.
VXUT_EXPORT void md5_init(md5_state_t* state);

/// Appends `nbytes` bytes of `data` to the message. Does nothing if `data` is null or `nbytes` is below 1.
VXUT_EXPORT void md5_append(md5_state_t* state, const unsigned char* data, int nbytes);

/// Pads the message, appends its length and writes the 16 bytes of the digest. Call `md5_init` before the state is used
/// again.
VXUT_EXPORT void md5_finish(md5_state_t* state, unsigned char digest[16]);

#ifdef __cplusplus
}
#endif
