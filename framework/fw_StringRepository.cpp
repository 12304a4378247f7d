#include "fw_StringRepository.h"

#include "internal/fw_KnownStringTable.h"
#include "internal/fw_RunTimeStrings.h"

namespace strings {

const char* StringRepository::toString(stringtoken token) {
    return token < firstRunTimeToken ? knownText(token) : runTimeText(token);
}

} // namespace strings
