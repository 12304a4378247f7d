#pragma once

#include <dlfcn.h>

// Finds the object and the symbol of an address. Internal.

namespace utility {

/// Does the same as `dladdr`, but does not acquire a lock of the dynamic linker, so a signal handler may call it while
/// its own thread or another one is inside `dlopen`. If the C library lacks `_dl_find_object` (glibc before 2.35),
/// calls `dladdr` itself, which waits until no other thread is inside `dlopen`.
///
/// Returns false if no loaded object contains `address`. `found.dli_sname` and `found.dli_saddr` are null if no symbol
/// contains it.
bool findSymbol(const void* address, Dl_info& found);

} // namespace utility
