#pragma once

#include <string>
#include <vector>

namespace console {

/// The file with the lines that were entered before, one in each line of the file; only its owner can read it.
///
/// Several consoles may add lines at the same time. A file that cannot be read or written is left alone: it must not
/// keep the user from working.
///
///     console::RecallFile file(console::RecallFile::defaultPath());
///     file.add("show disks");
class RecallFile {
public:
    /// The largest number of lines that `lines` returns.
    static constexpr std::size_t most = 1000;

    /// Does nothing if `path` is empty.
    explicit RecallFile(const std::string& path) : m_path(path) {}

    /// Returns the last lines, the oldest first. A file that is much longer is shortened to them.
    std::vector<std::string> lines() const;
    /// Appends a line; makes the file and its folders if necessary.
    void add(const std::string& line) const;

    /// Returns "vxconsole/history" in XDG_STATE_HOME or in ".local/state" of the user's home; empty if there is
    /// neither.
    static std::string defaultPath();

private:
    void shorten(const std::vector<std::string>& lines) const;

    std::string m_path;
};

} // namespace console
