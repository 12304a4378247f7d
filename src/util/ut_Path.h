#pragma once

#include "ut_Export.h"

#include <string>

#include "fw_Item.h"

namespace utility {

/// A file-system path in three parts: directory, base name and extension.
///
/// The texts are the object's own. A pointer that `getFullFile`, `getValue` or `component` gives is valid until the
/// next call of the same operation, one that `getPath` gives until the path changes. One thread at a time. Null texts
/// count as empty. Nothing is thrown but `std::bad_alloc` without memory: a setter or a search has then changed
/// nothing. Debug switch 489 traces.
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

    /// The token of the directory part, and its interned text.
    stringtoken getName() const override;
    const char* getNameString() const override;

    /// Splits `value` at its last "/", and the name behind it at the first of its last dots, and sets the parts asked
    /// for; each of them is cleared first. A name that begins with its only dots has no base name: callers see
    /// ".profile" as an extension.
    void setValue(const char* value, bool setPath, bool setFile, bool setExtension);
    /// Sets all three parts; the second form keeps the directory.
    void setFullPath(const char* value);
    void setFullFile(const char* value);
    /// Sets the directory part, of the second form the first `n` characters; "/" is added unless it is empty or ends in
    /// one.
    void setPath(const char* path);
    void setPath(const char* path, unsigned int n);
    /// Sets the base name as it is.
    void setFile(const char* file);
    /// Sets the extension without one leading dot.
    void setExtension(const char* extension);

    const char* getPath() const {
        return m_path.c_str();
    }
    const char* getFile() const {
        return m_file.c_str();
    }
    const char* getExtension() const {
        return m_extension.c_str();
    }
    /// Base name and extension, with a dot between them unless there is no extension.
    const char* getFullFile() const;
    /// The whole path.
    const char* getValue() const;

    bool isAbsolute() const;
    /// Whether the whole path exists.
    bool exists() const;
    /// Makes the whole path a directory, of one level, with mode 0770.
    bool makeDir();

    /// The number of directory components, at most 32, and one more for a file.
    unsigned int componentCount() const;
    /// Directory component `i` without slashes, the file behind the last of them, or null. The root is no component.
    const char* component(unsigned int i) const;
    /// Removes a component with the slash behind it, or the file; one that is not there changes nothing.
    void removeComponent(unsigned int i);
    /// Normalizes the path: removes ".", empty components, and ".." together with the component before it, in the file
    /// part too. False when a ".." had none before it; the path is normalized in this case too.
    /// Directory components past the 32nd are not looked at: callers see them unchanged, and the result can be true
    /// although a ".." is left. A check against ".." must also refuse a path of which `componentCount()` is 32 or more
    /// after this call.
    bool isValid();
    /// Computes the components, unless they are computed already.
    void evaluatePath() const;
    /// Traces the components.
    void dumpComponents();

    /// Sets the directory part to the first element of a colon-separated list under which the file exists, and returns
    /// true; else keeps it. An empty element means no directory part.
    bool find(const char* searchPath);
    /// The same with the present directory part appended to each element.
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
