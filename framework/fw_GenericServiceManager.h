#pragma once

#include "fw_Export.h"

namespace framework {

/// Signals the threads of the process.
///
///     framework::GenericServiceManager::SignalAllThreads(SIGUSR2);
class VXFW_EXPORT GenericServiceManager {
public:
    /// Sends `sig` to every thread that has a `ThreadInfo`, the caller included. Does not wait for the handlers.
    static void SignalAllThreads(int sig);
};

} // namespace framework
