#pragma once

#include <string>

#include "fw_StableStringRepository.h"

namespace test {

/// The token of a name, which is created if there is none.
inline stringtoken token(const std::string& name) {
    return strings::GS.toToken(name.c_str());
}

} // namespace test
