#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>

namespace test {

/// Creates a new directory under TMPDIR, and removes it with its content on destruction.
///
///     test::TemporaryDirectory directory;
///     directory.write("passwd", "root:x:0:0::/root:/bin/sh\n");
///     open(directory.path("passwd").c_str(), O_RDONLY);
class TemporaryDirectory {
public:
    TemporaryDirectory() : m_path((std::filesystem::temp_directory_path() / "vxut.XXXXXX").string()) {
        if (mkdtemp(m_path.data()) == nullptr)
            throw std::runtime_error("cannot create " + m_path);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
        if (error) {
            makeDirectoriesWritable();
            std::filesystem::remove_all(m_path, error);
        }
    }

    /// The path of the directory, without a trailing slash.
    const std::string& path() const {
        return m_path;
    }
    /// The path of `name` in the directory, whether it exists or not.
    std::string path(const std::string& name) const {
        return m_path + "/" + name;
    }

    /// Creates or replaces a file and returns its path.
    std::string write(const std::string& name, const std::string& content) const {
        std::ofstream file(path(name), std::ios::binary | std::ios::trunc);
        if (!file.write(content.data(), static_cast<std::streamsize>(content.size())).flush())
            throw std::runtime_error("cannot write " + path(name));
        return path(name);
    }
    /// The content of a file.
    std::string read(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        if (!file)
            throw std::runtime_error("cannot read " + path(name));
        return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    bool exists(const std::string& name) const {
        return std::filesystem::exists(path(name));
    }

private:
    // Otherwise a directory without write permission could not be removed.
    void makeDirectoriesWritable() const {
        std::error_code error;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, error);
        for (std::filesystem::recursive_directory_iterator it(m_path, error), end; !error && it != end;
             it.increment(error))
            if (it->is_directory(error) && !it->is_symlink(error))
                std::filesystem::permissions(it->path(), std::filesystem::perms::owner_all, error);
    }

    std::string m_path;
};

} // namespace test
