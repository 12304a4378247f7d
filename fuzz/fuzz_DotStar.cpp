#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Bytes.h"
#include "ut_DotStarFormatter.h"
#include "ut_HostGroupFormatter.h"
#include "ut_VolumeGroupFormatter.h"

namespace {

using fuzz::require;

struct Split {
    bool taken;
    std::string name;
    unsigned int level;
};

Split expectedSplit(const std::string& text) {
    if (!text.empty() && text[0] == '.')
        return {false, "", 0};
    const size_t end = std::min(text.find(".*"), text.size());
    unsigned int level = 0;
    for (size_t step = end; step < text.size(); step += 2) {
        const std::string pair = text.substr(step, 2);
        if (pair[0] != '.')
            return {false, "", 0};
        level += static_cast<unsigned int>(pair == ".*");
    }
    return {true, text.substr(0, end), level};
}

void check(const std::string& text, unsigned int size) {
    const Split expected = expectedSplit(text);
    std::vector<char> name(size_t{size} + 1, '#');
    unsigned int level = 77;
    require(utility::DotStarFormatter::getLevelAndName(text.c_str(), name.data(), size, level) == expected.taken);
    require(level == expected.level);
    require(expected.taken ? name.data() == expected.name.substr(0, size) : name[0] == '#');

    utility::HostGroupLevel hosts;
    const bool areHosts = expected.taken && expected.level <= 2;
    require(utility::HostGroupFormatter::getHostLevelAndName(text.c_str(), name.data(), size, hosts) == areHosts);
    require(hosts == (areHosts ? expected.level : 0));

    utility::VolumeLevel volumes;
    const bool areVolumes = expected.taken && expected.level <= 1;
    require(utility::VolumeGroupFormatter::getVolumeLevelAndName(text.c_str(), name.data(), size, volumes) ==
            areVolumes);
    require(volumes == (areVolumes ? expected.level : 0));
}

} // namespace

// Compares the formatter with a simple splitter. The first byte is the size of the caller's array, the rest a group
// selector.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    const std::string text = std::string(reinterpret_cast<const char*>(data + 1), size - 1).c_str();
    check(text, data[0]);
    check(text, static_cast<unsigned int>(text.size()));
    return 0;
}
