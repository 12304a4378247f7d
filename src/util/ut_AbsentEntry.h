#pragma once

#include "ut_Export.h"

#include <cstdint>

namespace utility {

/// Returns −1 as a pointer: the value that `Map`, `MapEntity` and `StringMap` return for an absent key, and that
/// `First` and `Next` of `Map` and `MapEntity` return at the end.
///
/// Unlike null, do not use this pointer as a key or value: it cannot be told from an absent one.
///
///     if (names.Lookup(&port) == utility::absentEntry()) addName(port);
inline void* absentEntry() {
    return reinterpret_cast<void*>(std::intptr_t{-1});
}

} // namespace utility
