#pragma once

#include "fw_Export.h"

namespace framework {

/// Occupies the descriptor numbers of closed standard streams (0 to 2) for its lifetime, so that a file or pipe opened
/// during it does not get one of them: otherwise, later output to standard error, or input from standard input, could
/// reach that file. Any number of threads may have such an object at the same time. If no descriptor is left for a
/// placeholder, a number may stay free.
///
///     const StandardNumbers occupied;
///     const int fd = open(path, flags);
class VXFW_EXPORT StandardNumbers {
public:
    /// Opens a placeholder for each closed standard stream.
    StandardNumbers();
    StandardNumbers(const StandardNumbers&) = delete;
    StandardNumbers& operator=(const StandardNumbers&) = delete;
    /// Closes the placeholders if no other object exists. Leaves `errno` unchanged.
    ~StandardNumbers();
};

} // namespace framework
