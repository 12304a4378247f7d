#include "fw_RWLockIF.h"

namespace framework {
namespace thread {

RWLockIF::~RWLockIF() {}

} // namespace thread
} // namespace framework
