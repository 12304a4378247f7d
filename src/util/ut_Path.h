#pragma once

#include "ut_Export.h"

#include <string>

#include "fw_Item.h"

namespace utility {

/// A file-system path in three parts: directory, base name and extension.
///
/// The object owns its texts. A pointer from `getFullFile`, `getValue` or `component` is valid until the next call of
/// the same operation; one from `getPath`, `getFile` or `getExtension`, until the path changes. Not thread-safe. Null
/// texts count as empty. Only `std::bad_alloc` is thrown; a setter or search that throws leaves the path unchanged.
/// Debug switch 489 traces.
///
///     utility::Path path("/usr/lib/libx.so.1");
///     path.getPath();        // "/usr/lib/"
///     path.getFile();        // "libx.so"
///     path.getExtension();   // "1"
class VXUT_EXPORT Path : public framework::Item {
public:
    /// Splits `value` into the three parts.
    explicit Path(const char* value);
    /// Sets the three parts, as `setPath`, `setFile` and `setExtension` do.
    Path(const char* path, const char* file, const char* extension);
    ~Path() override;

    /// Returns the token of the directory part.
    stringtoken getName() const override;
    /// Returns the interned text of the directory part.
    const char* getNameString() const override;

    /// Splits `value` and sets the selected parts:
    /// - the directory, up to and including the last "/",
    /// - the base name, up to the last dot; if several dots are adjacent, up to the first of them,
    /// - the extension, after that dot.
    ///
    /// A part that `value` does not have is empty. If the only dots are at the beginning of the name, the base name is
    /// empty: callers rely on ".profile" being an extension.
    void setValue(const char* value, bool setPath, bool setFile, bool setExtension);
    /// Splits `value` and sets all three parts, as `setValue` does.
    void setFullPath(const char* value);
    /// Splits `value` and sets the base name and the extension, as `setValue` does.
    void setFullFile(const char* value);
    /// Sets the directory part, and appends "/" unless the part is empty or ends with one.
    void setPath(const char* path);
    /// Sets the directory part to at most `n` characters of `path`. Appends "/" as the other overload does.
    void setPath(const char* path, unsigned int n);
    /// Sets the base name, without splitting it.
    void setFile(const char* file);
    /// Sets the extension. One leading dot is removed.
    void setExtension(const char* extension);

    /// Returns the directory part, which ends with "/" unless it is empty.
    const char* getPath() const {
        return m_path.c_str();
    }
    /// Returns the base name.
    const char* getFile() const {
        return m_file.c_str();
    }
    /// Returns the extension, without its dot.
    const char* getExtension() const {
        return m_extension.c_str();
    }
    /// Returns the file part: base name, dot and extension, or only the base name if the extension is empty.
    const char* getFullFile() const;
    /// Returns the whole path.
    const char* getValue() const;

    /// Returns whether the directory part begins with "/".
    bool isAbsolute() const;
    /// Returns whether the whole path exists. Returns false if `stat` fails for any reason.
    bool exists() const;
    /// Creates the whole path as a directory with mode 0770; its parent must exist. Returns whether `mkdir` succeeded.
    bool makeDir();

    /// Returns the number of directory components, at most 32, plus 1 if the file part is not empty.
    unsigned int componentCount() const;
    /// Returns directory component `i` without slashes, the file part if `i` is the number of directory components, or
    /// null if `i` is out of range. The root is not a component.
    const char* component(unsigned int i) const;
    /// Removes directory component `i` and the slash after it, or the file part, with `i` as in `component`. Does
    /// nothing if `i` is out of range.
    void removeComponent(unsigned int i);
    /// Normalizes the path: removes ".", empty components, and ".." together with the component before it. The file
    /// part counts as a component. Returns false if a ".." had no component before it; such a ".." is also removed.
    ///
    /// Directory components after the 32nd are not checked, and callers rely on them being unchanged. The result can
    /// therefore be true although a ".." remains: a security check must also reject the path if `componentCount()` is
    /// 32 or more after this call.
    bool isValid();
    /// Computes the components unless they are up to date. The other operations call this when needed.
    void evaluatePath() const;
    /// Logs the components if debug switch 489 is on.
    void dumpComponents();

    /// Searches for the file part in the directories of a colon-separated list. If one of them contains the file, sets
    /// the directory part to the first such directory and returns true. Otherwise, or if `searchPath` is null, changes
    /// nothing and returns false. An empty element of the list means an empty directory part.
    bool find(const char* searchPath);
    /// Searches as `find` does, but with the current directory part appended to each directory of the list.
    bool findFull(const char* searchPath);

private:
    static const unsigned int largestCount = 32;

    void assignPath(std::string path);
    bool findIn(const char* searchPath, bool appended, const char* function);

    std::string m_path;
    std::string m_file;
    std::string m_extension;
    mutable std::string m_fullFile;
    mutable std::string m_value;
    mutable std::string m_component;
    mutable bool m_evaluated;
    mutable unsigned int m_numComponents;
    mutable unsigned int m_starts[largestCount];
    mutable unsigned int m_lengths[largestCount];
};

} // namespace utility
