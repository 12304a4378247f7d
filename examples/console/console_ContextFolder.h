#pragma once

#include <string>
#include <vector>

namespace console {

/// A temporary folder for context files, which the environment variable VX_MEM names while the object exists.
///
/// The destructor removes the folder and the files, unless `remove` did.
///
///     console::ContextFolder folder;
///     if (!folder.isMade()) report(folder.root(), errno);
class ContextFolder {
public:
    /// Makes the folder in TMPDIR. If that fails, `errno` is set.
    ContextFolder();
    ContextFolder(const ContextFolder&) = delete;
    ContextFolder& operator=(const ContextFolder&) = delete;
    ~ContextFolder();

    /// Removes the folder. Returns false and sets `errno` if that fails.
    bool remove();

    bool isMade() const {
        return m_isMade;
    }
    const std::string& root() const {
        return m_root;
    }
    /// The folder in the root that the context files are in.
    std::string path() const;
    /// Returns the names of the context files. If the folder cannot be read, sets `failure` unless it is set already.
    std::vector<std::string> names(std::string* failure) const;

private:
    bool m_isMade;
    bool m_hadRoot;
    std::string m_formerRoot;
    std::string m_root;
};

} // namespace console
