#include "fw_RWLockIF.h"

namespace framework {
namespace thread {

RWLockIF::~RWLockIF() = default;

} // namespace thread
} // namespace framework
