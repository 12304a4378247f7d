#include "fw_Console.h"

namespace framework {

Console::~Console() {}

} // namespace framework
