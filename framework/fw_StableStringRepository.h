#pragma once

#include "fw_Export.h"
#include "fw_StringRepository.h"

namespace strings {

/// Interns texts: equal texts get the same number, from any thread, for the life of the process.
///
/// The texts of the stack have fixed numbers (`fw_KnownStrings.cpp`); every other text gets the next free number,
/// upward from 6945, so that the first names made at run time are still usable as debug switches up to 8191. A text
/// given in is copied, never kept. Nothing is thrown.
///
///     stringtoken token = strings::GS.toToken("volume");
///     strings::StringRepository::toString(token);   // "volume"
class VXFW_EXPORT StableStringRepository : public StringRepository {
public:
    constexpr StableStringRepository() = default;

    /// The number of `text`, made on first use. 0 when `text` is null or no memory was left.
    stringtoken toToken(const char* text);
};

/// The one repository of the process; usable from the first constructor to the last destructor.
extern VXFW_EXPORT StableStringRepository GS;

} // namespace strings
