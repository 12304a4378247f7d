#include "fw_GenericServiceManager.h"

#include "internal/fw_ThreadRecords.h"

namespace framework {

void GenericServiceManager::SignalAllThreads(int sig) {
    ThreadRecords::signalAll(sig);
}

} // namespace framework
