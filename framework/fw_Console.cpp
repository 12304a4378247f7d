#include "fw_Console.h"

namespace framework {

Console::~Console() = default;

} // namespace framework
