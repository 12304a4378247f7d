#pragma once

#include "fw_Export.h"

#include "fw_StringToken.h"

namespace strings {

/// Maps the number of an interned text to the text.
///
/// The repository owns the texts, which live as long as the process. Thread-safe.
///
///     const char* name = strings::StringRepository::toString(630);   // "URL"
class VXFW_EXPORT StringRepository {
public:
    /// Returns the text of `token`, or null if no text has that number. The caller must not free it.
    static const char* toString(stringtoken token);

protected:
    StringRepository() = default;
    ~StringRepository() = default;
};

} // namespace strings
