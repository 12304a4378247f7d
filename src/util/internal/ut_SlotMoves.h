#pragma once

#include "internal/ut_Trace.h"

// Moves the elements of the typed arrays one by one. Internal.

namespace utility {

/// Moves the elements from `index` to `length` - 1 up by one slot, the last one first. If `isTraced`, traces each move
/// as a message of `function`, the signature text of the public operation.
template<typename T>
void moveSlotsUp(T* slots, unsigned int index, unsigned int length, bool isTraced, const char* function) {
    if (!isTraced) {
        // The compiler can turn this loop into a block move.
        for (T* to = slots + length; to > slots + index; --to)
            *to = to[-1];
        return;
    }
    for (unsigned int to = length; to > index; --to) {
        VXUT_LOG_AS(function, framework::Logger::LOG_DEBUG, "moving from %d to %d", to - 1, to);
        slots[to] = slots[to - 1];
    }
}

/// Moves the elements from `index` + 1 to `length` - 1 down by one slot, the first one first.
template<typename T>
void moveSlotsDown(T* slots, unsigned int index, unsigned int length) {
    T* const last = slots + length - 1;
    for (T* to = slots + index; to < last; ++to)
        *to = to[1];
}

} // namespace utility
