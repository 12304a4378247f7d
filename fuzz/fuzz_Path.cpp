// Compares `Path` with a simple reference: the three parts, the components, their removal and the normal form.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "../tests/support/ReferencePath.h"
#include "Bytes.h"
#include "ut_Path.h"

namespace {

using fuzz::require;
using test::ReferencePath;
using utility::Path;

constexpr std::size_t largestCount = 32;

void checkParts(const Path& path, const ReferencePath& expected) {
    require(path.getPath() == expected.directory);
    require(path.getFile() == expected.file);
    require(path.getExtension() == expected.extension);
    require(path.getFullFile() == expected.fullFile());
    require(path.getValue() == expected.directory + expected.fullFile());
    require(path.isAbsolute() == (expected.directory.compare(0, 1, "/") == 0));
}

void checkComponents(const Path& path, const ReferencePath& expected) {
    std::vector<std::string> components = expected.components();
    components.resize(std::min(components.size(), largestCount));
    const unsigned int count = static_cast<unsigned int>(components.size());
    const std::string file = expected.fullFile();
    require(path.componentCount() == count + (file.empty() ? 0 : 1));
    for (unsigned int i = 0; i < count; ++i)
        require(path.component(i) == components[i]);
    require(file.empty() ? path.component(count) == nullptr : path.component(count) == file);
    require(path.component(count + 1) == nullptr);
}

void checkNormalForm(Path& path, const ReferencePath& expected) {
    const bool valid = path.isValid();
    if (expected.components().size() < largestCount) {
        const test::ReferenceNormalPath normal(expected);
        require(valid == normal.valid && path.getValue() == normal.value);
    }
    require(path.isAbsolute() == (expected.directory.compare(0, 1, "/") == 0));
    const std::string value = path.getValue();
    require(path.isValid() && path.getValue() == value);
}

void checkRemoval(Path& path, unsigned int first) {
    while (path.componentCount() > 0) {
        const std::size_t before = std::string(path.getValue()).size();
        path.removeComponent(first % path.componentCount());
        require(std::string(path.getValue()).size() < before);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string value = std::string(reinterpret_cast<const char*>(data), size).c_str();
    const ReferencePath expected(value);
    Path path(value.c_str());
    checkParts(path, expected);
    checkComponents(path, expected);
    path.setFullPath(path.getValue());
    checkParts(path, ReferencePath(expected.directory + expected.fullFile()));
    checkNormalForm(path, expected);
    Path whole(value.c_str());
    checkRemoval(whole, static_cast<unsigned int>(size));
    return 0;
}
