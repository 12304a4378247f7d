#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace test {

/// A simple model of a path, divided into its three parts.
///
///     test::ReferencePath expected("a/b..c");
///     EXPECT_EQ(expected.extension, ".c");
struct ReferencePath {
    std::string directory;
    std::string file;
    std::string extension;

    explicit ReferencePath(const std::string& value) {
        const std::size_t slash = value.rfind('/');
        directory = slash == std::string::npos ? "" : value.substr(0, slash + 1);
        const std::string name = value.substr(directory.size());
        std::size_t dot = name.rfind('.');
        while (dot != std::string::npos && dot > 0 && name[dot - 1] == '.')
            --dot;
        file = name.substr(0, dot);
        extension = dot == std::string::npos ? "" : name.substr(dot + 1);
    }

    std::string fullFile() const {
        return file + (extension.empty() ? "" : "." + extension);
    }
    /// The components of the directory; there is an empty one between two consecutive slashes.
    std::vector<std::string> components() const {
        std::vector<std::string> components;
        std::string component;
        for (std::size_t i = 0; i < directory.size(); ++i) {
            if (directory[i] != '/')
                component += directory[i];
            else if (i > 0)
                components.push_back(component);
            if (directory[i] == '/')
                component.clear();
        }
        return components;
    }
};

/// The path without ".", without empty components, and without each ".." and the component before it.
struct ReferenceNormalPath {
    std::string value;
    bool valid = true;

    explicit ReferenceNormalPath(const ReferencePath& path) {
        std::vector<std::string> kept;
        std::vector<std::string> components = path.components();
        const std::string fullFile = path.fullFile();
        if (!fullFile.empty())
            components.push_back(fullFile);
        bool fileKept = false;
        for (const std::string& component : components) {
            fileKept = false;
            if (component == "..") {
                valid = valid && !kept.empty();
                if (!kept.empty())
                    kept.pop_back();
            } else if (!component.empty() && component != ".") {
                kept.push_back(component);
                fileKept = true;
            }
        }
        value = path.directory.compare(0, 1, "/") == 0 ? "/" : "";
        for (const std::string& component : kept)
            value += component + "/";
        if (fileKept && !fullFile.empty())
            value.pop_back();
    }
};

} // namespace test
