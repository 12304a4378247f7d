#pragma once

#include "ut_Export.h"

#include <string>

#include "fw_Item.h"

namespace utility {

/// A file-system path in three parts: directory, base name and extension.
///
/// The object owns its texts. A pointer from `getFullFile`, `getValue` or `component` is valid until the next call of
/// the same operation; one from `getPath`, `getFile` or `getExtension`, until the path changes. One thread at a time.
/// Null texts are empty. Only `std::bad_alloc` is thrown; a setter or search that throws has changed nothing. Debug
/// switch 489 traces.
///
///     utility::Path path("/usr/lib/libx.so.1");
///     path.getPath();        // "/usr/lib/"
///     path.getFile();        // "libx.so"
///     path.getExtension();   // "1"
class VXUT_EXPORT Path : public framework::Item {
public:
    /// Splits `value` into the three parts.
    explicit Path(const char* value);
    /// Sets the three parts.
    Path(const char* path, const char* file, const char* extension);
    ~Path() override;

    /// The token of the directory part.
    stringtoken getName() const override;
    /// The interned text of the directory part.
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
    /// Sets the directory part. Appends "/" unless it is empty or ends with one.
    void setPath(const char* path);
    /// Sets the directory part to at most `n` characters of `path`. Appends "/" as the other overload does.
    void setPath(const char* path, unsigned int n);
    /// Sets the base name, without splitting it.
    void setFile(const char* file);
    /// Sets the extension. One leading dot is removed.
    void setExtension(const char* extension);

    /// The directory part; unless it is empty, it ends with "/".
    const char* getPath() const {
        return m_path.c_str();
    }
    /// The base name.
    const char* getFile() const {
        return m_file.c_str();
    }
    /// The extension, without its dot.
    const char* getExtension() const {
        return m_extension.c_str();
    }
    /// The file part: base name, dot and extension; only the base name if the extension is empty.
    const char* getFullFile() const;
    /// The whole path.
    const char* getValue() const;

    /// Whether the directory part begins with "/".
    bool isAbsolute() const;
    /// Whether the whole path exists; false if `stat` fails.
    bool exists() const;
    /// Creates the whole path as a directory with mode 0770; its parent must exist. Returns whether `mkdir` succeeded.
    bool makeDir();

    /// The number of directory components, at most 32, plus 1 if the file part is not empty.
    unsigned int componentCount() const;
    /// Directory component `i` without slashes; after the last of them, the file part. Null if `i` is out of range. The
    /// root is not a component.
    const char* component(unsigned int i) const;
    /// Removes component `i` and the slash after it, or the file part. Does nothing if `i` is out of range.
    void removeComponent(unsigned int i);
    /// Normalizes the path: removes ".", empty components, and ".." together with the component before it. The file
    /// part counts as a component. Returns false if a ".." had no component before it; it is removed nevertheless.
    ///
    /// Directory components after the 32nd are not checked, and callers rely on them being unchanged. So the result can
    /// be true although a ".." remains. A check against ".." must also refuse the path if `componentCount()` is 32 or
    /// more after this call.
    bool isValid();
    /// Computes the components, unless that was done since the directory part was last changed.
    void evaluatePath() const;
    /// Traces the components.
    void dumpComponents();

    /// Searches for the file part in the directories of a colon-separated list. Sets the directory part to the first
    /// one in which the file exists, and returns true. Returns false and changes nothing if there is none or
    /// `searchPath` is null. An empty element of the list is an empty directory part.
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
