#pragma once

#include <string>

#include "console_Invocation.h"

namespace console {

/// Shows `prompt` on the terminal and reads a line without echo. Returns false, with the failure set, if standard input
/// is not a terminal or ends.
bool readSecret(Invocation& call, const char* prompt, std::string* secret);

} // namespace console
