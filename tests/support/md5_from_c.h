#pragma once

#ifdef __cplusplus
extern "C" {
#endif

/// The MD5 of `nbytes` bytes, as a C program computes it through the library.
void md5_from_c(const unsigned char* data, int nbytes, unsigned char digest[16]);

#ifdef __cplusplus
}
#endif
