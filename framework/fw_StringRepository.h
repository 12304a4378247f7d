#pragma once

#include "fw_Export.h"
#include "fw_StringToken.h"

namespace strings {

/// Turns the number of an interned text back into the text.
///
/// The texts belong to the repository and live as long as the process. Any thread may ask at any time.
///
///     const char* name = strings::StringRepository::toString(630);   // "URL"
class VXFW_EXPORT StringRepository {
public:
    /// The text of `token`, or null when no text has that number. Never freed by the caller.
    static const char* toString(stringtoken token);

protected:
    StringRepository() = default;
    ~StringRepository() = default;
};

} // namespace strings
