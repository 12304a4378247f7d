#pragma once

#include <vector>

namespace faults {

/// An exported operation that no row can run, with the reason.
struct WithoutRow {
    const char* operation;
    const char* reason;
};

inline const std::vector<WithoutRow> withoutRow = {};

} // namespace faults
