#pragma once

#include "fw_Export.h"

namespace framework {

/// Occupies the numbers of closed standard streams while it exists, so that no file or pipe that is opened meanwhile
/// gets one of them: later output to standard error, or input from standard input, must not reach it. Any number of
/// threads may have one at the same time. Where no descriptor is left for a placeholder, a number may stay free.
///
///     const StandardNumbers occupied;
///     const int fd = open(path, flags);
class VXFW_EXPORT StandardNumbers {
public:
    StandardNumbers();
    StandardNumbers(const StandardNumbers&) = delete;
    StandardNumbers& operator=(const StandardNumbers&) = delete;
    /// Leaves errno unchanged.
    ~StandardNumbers();
};

} // namespace framework
