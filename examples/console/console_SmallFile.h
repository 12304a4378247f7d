#pragma once

#include <string>

#include "ut_GetStream.h"

namespace console {

/// The whole content of a small file, such as those of the system under /proc, /sys and /etc, line by line.
///
/// The file is read once, at construction, by blocks, because a file of the system reports no size. One thread at a
/// time.
///
///     console::SmallFile hosts("/etc/hosts");
///     while (char* line = hosts.readLine()) use(line);
///     if (!hosts.isRead()) report(hosts.failure());
class SmallFile {
public:
    /// Reads the file at `path`. A file that has more than 64 MiB is not read.
    explicit SmallFile(const std::string& path);
    SmallFile(const SmallFile&) = delete;
    SmallFile& operator=(const SmallFile&) = delete;

    /// Whether the whole file was read.
    bool isRead() const {
        return m_error == 0;
    }
    /// The `errno` of the failure to read the file; 0 if there was none.
    int error() const {
        return m_error;
    }
    /// The path and the reason why the file could not be read.
    std::string failure() const;
    /// The content; `readLine` replaces each newline in it with a NUL. Empty if the file could not be read.
    const std::string& content() const {
        return m_content;
    }
    /// Returns the next line without its newline, in place, so that the caller may split it; null at the end.
    char* readLine();

private:
    const std::string m_path;
    int m_error;
    std::string m_content;
    utility::GetStream m_lines;
};

/// Returns `text` without the blanks, tabs, carriage returns and NUL bytes at its ends.
std::string trimmed(const std::string& text);

} // namespace console
