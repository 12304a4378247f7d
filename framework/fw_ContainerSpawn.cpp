// Container: running commands, which needs streams.

#include "fw_Container.h"

#include "internal/fw_Command.h"
#include "ut_GetStream.h"
#include "ut_PutStream.h"

namespace framework {

bool Container::spawn(const char* command, utility::GetStream* in, utility::PutStream* out) {
    const CommandWords words(command);
    return words.any() && runCommand(words.get(), in, out);
}

} // namespace framework
