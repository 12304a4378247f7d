#pragma once

#include "ut_Export.h"

#include <cstdint>

namespace utility {

/// What `Map`, `MapEntity` and `StringMap` return for an absent key, and what `First` and `Next` of the two pointer
/// maps return at the end: −1 as a pointer.
///
/// Unlike null it should be neither a key nor a value, because then it cannot be told from an absent one.
///
///     if (names.Lookup(&port) == utility::absentEntry()) addName(port);
inline void* absentEntry() {
    return reinterpret_cast<void*>(std::intptr_t{-1});
}

} // namespace utility
