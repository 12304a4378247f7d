#pragma once

#include "fw_Export.h"

#include "fw_StringRepository.h"

namespace strings {

/// Interns texts: equal texts get the same number for the lifetime of the process. Thread-safe.
///
/// Known texts have fixed numbers (`strings::KnownToken`). Every other text gets the next free number, from 6945
/// upward. Numbers up to 8191 can be used as debug switches. Texts are copied. Nothing is thrown.
///
///     stringtoken token = strings::GS.toToken("volume");
///     strings::StringRepository::toString(token);   // "volume"
class VXFW_EXPORT StableStringRepository : public StringRepository {
public:
    /// All objects share the texts and numbers of the process.
    constexpr StableStringRepository() = default;

    /// Returns the number of `text`, which is assigned on first use, or 0 if `text` is null or an allocation fails.
    stringtoken toToken(const char* text);
};

/// The repository of the process. It is usable from the first static constructor to the last static destructor.
extern VXFW_EXPORT StableStringRepository GS;

} // namespace strings
