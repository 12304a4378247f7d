#include "ut_Path.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <sys/stat.h>

#include "fw_StableStringRepository.h"
#include "internal/ut_Trace.h"

namespace utility {

namespace {

constexpr mode_t directoryMode = 0770;

std::string textOf(const char* text) {
    return text != nullptr ? text : "";
}

// The index of the dot before the extension: the first of the last adjacent dots of `name`; its length if it has none.
std::size_t findExtension(const std::string& name) {
    std::size_t dot = name.rfind('.');
    if (dot == std::string::npos)
        return name.size();
    while (dot > 0 && name[dot - 1] == '.')
        --dot;
    return dot;
}

// Concatenates two directories with one slash between them. Returns `directory` if `element` is empty.
std::string joined(const std::string& element, const std::string& directory) {
    if (element.empty())
        return directory;
    const bool absolute = !directory.empty() && directory[0] == '/';
    if (absolute && element.back() == '/')
        return element.substr(0, element.size() - 1) + directory;
    if (!absolute && element.back() != '/')
        return element + '/' + directory;
    return element + directory;
}

} // namespace

Path::Path(const char* value) : m_evaluated(false), m_numComponents(0), m_starts(), m_lengths() {
    setValue(value, true, true, true);
}

Path::Path(const char* path, const char* file, const char* extension)
    : m_evaluated(false), m_numComponents(0), m_starts(), m_lengths() {
    setPath(path);
    setFile(file);
    setExtension(extension);
}

Path::~Path() = default;

stringtoken Path::getName() const {
    return strings::GS.toToken(m_path.c_str());
}

const char* Path::getNameString() const {
    return strings::StringRepository::toString(getName());
}

void Path::setValue(const char* value, bool setPath, bool setFile, bool setExtension) {
    const std::string text = textOf(value);
    const std::size_t slash = text.rfind('/');
    const std::string name = slash != std::string::npos ? text.substr(slash + 1) : text;
    const std::size_t dot = findExtension(name);
    // Compute all parts before setting the first: if memory is exhausted, nothing changes.
    std::string directory = slash != std::string::npos ? text.substr(0, slash + 1) : "";
    std::string file = name.substr(0, dot);
    std::string extension = dot < name.size() ? name.substr(dot + 1) : "";
    if (setPath)
        assignPath(std::move(directory));
    if (setFile)
        m_file.swap(file);
    if (setExtension)
        m_extension.swap(extension);
}

void Path::setFullPath(const char* value) {
    setValue(value, true, true, true);
}

void Path::setFullFile(const char* value) {
    setValue(value, false, true, true);
}

void Path::setPath(const char* path) {
    assignPath(textOf(path));
}

void Path::setPath(const char* path, unsigned int n) {
    assignPath(path != nullptr ? std::string(path, strnlen(path, n)) : "");
}

void Path::assignPath(std::string path) {
    if (!path.empty() && path.back() != '/')
        path += '/';
    m_path.swap(path);
    m_evaluated = false;
}

void Path::setFile(const char* file) {
    m_file = textOf(file);
}

void Path::setExtension(const char* extension) {
    const std::string text = textOf(extension);
    m_extension = !text.empty() && text[0] == '.' ? text.substr(1) : text;
}

const char* Path::getFullFile() const {
    m_fullFile = m_extension.empty() ? m_file : m_file + '.' + m_extension;
    return m_fullFile.c_str();
}

const char* Path::getValue() const {
    m_value = m_path + (m_extension.empty() ? m_file : m_file + '.' + m_extension);
    return m_value.c_str();
}

bool Path::isAbsolute() const {
    return !m_path.empty() && m_path[0] == '/';
}

bool Path::exists() const {
    const char* value = getValue();
    VXUT_TRACE_ENTITY(TOKEN_PATH, "checking existence of file %s", value);
    struct stat status = {};
    return stat(value, &status) == 0;
}

bool Path::makeDir() {
    return mkdir(getValue(), directoryMode) == 0;
}

void Path::evaluatePath() const {
    if (m_evaluated)
        return;
    m_numComponents = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i < m_path.size() && m_numComponents < largestCount; ++i) {
        if (m_path[i] != '/')
            continue;
        if (i > 0) {
            m_starts[m_numComponents] = static_cast<unsigned int>(start);
            m_lengths[m_numComponents] = static_cast<unsigned int>(i - start);
            VXUT_TRACE_ENTITY(TOKEN_PATH, "Component %u: \"%.*s\"", m_numComponents, static_cast<int>(i - start),
                              m_path.c_str() + start);
            ++m_numComponents;
        }
        start = i + 1;
    }
    m_evaluated = true;
}

unsigned int Path::componentCount() const {
    evaluatePath();
    return m_numComponents + (m_file.empty() && m_extension.empty() ? 0 : 1);
}

const char* Path::component(unsigned int i) const {
    evaluatePath();
    if (i > m_numComponents)
        return nullptr;
    if (i == m_numComponents) {
        const char* file = getFullFile();
        return *file != 0 ? file : nullptr;
    }
    m_component.assign(m_path, m_starts[i], m_lengths[i]);
    return m_component.c_str();
}

void Path::removeComponent(unsigned int i) {
    evaluatePath();
    if (i > m_numComponents) {
        VXUT_TRACE_ENTITY(TOKEN_PATH, "ignoring remove");
    } else if (i == m_numComponents) {
        VXUT_TRACE_ENTITY(TOKEN_PATH, "removing file/ext");
        m_file.clear();
        m_extension.clear();
    } else {
        VXUT_TRACE_ENTITY(TOKEN_PATH, "removing component %u", i);
        m_path.erase(m_starts[i], m_lengths[i] + 1UL);
        m_evaluated = false;
        evaluatePath();
    }
}

bool Path::isValid() {
    const bool relative = !isAbsolute();
    bool valid = true;
    unsigned int index = 0;
    while (index < componentCount()) {
        const std::string name = textOf(component(index));
        VXUT_TRACE_ENTITY(TOKEN_PATH, "path=\"%s\"index=%u, pComponent=\"%s\"", m_path.c_str(), index, name.c_str());
        VXUT_TRACE_ENTITY(TOKEN_PATH, "ComponentCount %u", componentCount());
        const bool isParent = name == "..";
        if (!isParent && name != "." && !name.empty()) {
            ++index;
            continue;
        }
        if (name.empty())
            VXUT_TRACE_ENTITY(TOKEN_PATH, "empty");
        removeComponent(index);
        if (isParent && index > 0)
            removeComponent(--index);
        else if (isParent)
            valid = false;
        // If the first component of a relative path was removed, slashes after it must not make the path absolute.
        if (relative && isAbsolute()) {
            m_path.erase(0, m_path.find_first_not_of('/'));
            m_evaluated = false;
        }
    }
    return valid;
}

void Path::dumpComponents() {
    evaluatePath();
    VXUT_TRACE_ENTITY(TOKEN_PATH, "PATH=\"%s\"", m_path.c_str());
    VXUT_TRACE_ENTITY(TOKEN_PATH, "m_numComponents=%u", m_numComponents);
    for (unsigned int i = 0; i < m_numComponents; ++i)
        VXUT_TRACE_ENTITY(TOKEN_PATH, "%u: %u,%u \"%.*s\"", i, m_starts[i], m_lengths[i],
                          static_cast<int>(m_lengths[i]), m_path.c_str() + m_starts[i]);
}

bool Path::findIn(const char* searchPath, bool appended, const char* function) {
    VXUT_TRACE_ENTITY_AS(function, TOKEN_PATH, "Using search path: %s", searchPath);
    const std::string list = searchPath;
    Path candidate(*this);
    std::size_t end = 0;
    for (std::size_t start = 0; start <= list.size(); start = end + 1) {
        end = std::min(list.find(':', start), list.size());
        const std::string element = list.substr(start, end - start);
        candidate.assignPath(appended ? joined(element, m_path) : element);
        VXUT_TRACE_ENTITY_AS(function, TOKEN_PATH, "Try search path: %s", candidate.getPath());
        if (candidate.exists()) {
            VXUT_TRACE_ENTITY_AS(function, TOKEN_PATH, "found %s", candidate.getValue());
            assignPath(candidate.m_path);
            return true;
        }
    }
    return false;
}

bool Path::find(const char* searchPath) {
    return searchPath != nullptr && findIn(searchPath, false, __PRETTY_FUNCTION__);
}

bool Path::findFull(const char* searchPath) {
    return searchPath != nullptr && findIn(searchPath, true, __PRETTY_FUNCTION__);
}

} // namespace utility
