#include "ut_VolumeGroupFormatter.h"

#include "ut_DotStarFormatter.h"

namespace utility {

bool VolumeGroupFormatter::getVolumeLevelAndName(const char* text, char* name, unsigned int size, VolumeLevel& level) {
    level = VOLUME_LEVEL_0;
    unsigned int marks{};
    if (text == nullptr || !DotStarFormatter::getLevelAndName(text, name, size, marks) || marks > VOLUME_LEVEL_1)
        return false;
    level = static_cast<VolumeLevel>(marks);
    return true;
}

} // namespace utility
