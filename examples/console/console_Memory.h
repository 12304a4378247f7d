#pragma once

#include <optional>
#include <string>

namespace console {

/// The memory of a machine in bytes; a figure that the kernel does not report is absent.
struct Memory {
    using Bytes = std::optional<unsigned long long>;

    Bytes total;
    Bytes available; ///< what programs can get without swapping
    Bytes free;      ///< what is not used at all
    Bytes buffers;
    Bytes cached;
    Bytes swapTotal;
    Bytes swapFree;
};

/// Reads the file at `path`, which has the form of /proc/meminfo.
/// - `failure`: set to the path and the reason if the file cannot be read or does not contain the total
Memory readMemory(const std::string& path, std::string* failure);

} // namespace console
