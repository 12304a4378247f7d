#include "ut_HostGroupFormatter.h"

#include "ut_DotStarFormatter.h"

namespace utility {

bool HostGroupFormatter::getHostLevelAndName(const char* text, char* name, unsigned int size, HostGroupLevel& level) {
    level = HOST_GROUP_LEVEL_0;
    unsigned int marks{};
    if (text == nullptr || !DotStarFormatter::getLevelAndName(text, name, size, marks) || marks > HOST_GROUP_LEVEL_2)
        return false;
    level = static_cast<HostGroupLevel>(marks);
    return true;
}

} // namespace utility
