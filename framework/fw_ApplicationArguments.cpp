#include "fw_ApplicationArguments.h"

namespace framework {

// The words themselves belong to the utility library, which the holder's inline members call.
ApplicationArguments* ApplicationArguments::m_singleton = nullptr;

} // namespace framework
