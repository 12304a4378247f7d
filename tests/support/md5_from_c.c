#include "md5_from_c.h"

#include <stddef.h>

#include "ut_md5.h"

typedef char states_have_88_bytes
    [sizeof(md5_state_t) == 88 && offsetof(md5_state_t, abcd) == 8 && offsetof(md5_state_t, buf) == 24 ? 1 : -1];

void md5_from_c(const unsigned char* data, int nbytes, unsigned char digest[16]) {
    md5_state_t state;
    md5_init(&state);
    md5_append(&state, data, nbytes);
    md5_finish(&state, digest);
}
