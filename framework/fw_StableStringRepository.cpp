#include "fw_StableStringRepository.h"

#include "internal/fw_KnownStringTable.h"
#include "internal/fw_RunTimeStrings.h"

namespace strings {

StableStringRepository GS;

stringtoken StableStringRepository::toToken(const char* text) {
    if (text == nullptr)
        return 0;
    const stringtoken token = knownToken(text);
    return token != 0 ? token : runTimeToken(text);
}

} // namespace strings
