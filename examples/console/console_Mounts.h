#pragma once

#include <string>
#include <vector>

namespace console {

/// A file system in the tree of directories.
struct Mount {
    std::string device;
    std::string directory;
    std::string type;
    std::vector<std::string> options;
};

/// Returns the mounts in the file at `path`, which has the form of /proc/mounts, in the order of the file. Lines that
/// do not have that form are ignored.
/// - `failure`: set to the path and the reason if the file cannot be read
std::vector<Mount> readMounts(const std::string& path, std::string* failure);

/// Returns `text` with each '\' and three octal digits replaced by the byte of that number, as the file of mounts
/// writes blanks in names.
///
///     console::withoutOctal("/media/my\\040disk")   // "/media/my disk"
std::string withoutOctal(const std::string& text);

} // namespace console
