#include "console_Initiator.h"

#include "console_SmallFile.h"

namespace console {

namespace {

// Sets `value` to what follows "KEY=" in `line`, unless it is set already.
void take(const std::string& line, const std::string& key, std::string* value) {
    const std::size_t equals = line.find('=');
    if (value->empty() && equals != std::string::npos && trimmed(line.substr(0, equals)) == key)
        *value = trimmed(line.substr(equals + 1));
}

} // namespace

Initiator readInitiator(const std::string& path, std::string* failure) {
    SmallFile file(path);
    if (!file.isRead()) {
        *failure = file.failure();
        return {};
    }
    Initiator initiator;
    while (const char* line = file.readLine()) {
        take(line, "InitiatorName", &initiator.name);
        take(line, "InitiatorAlias", &initiator.alias);
    }
    if (initiator.name.empty())
        *failure = path + ": does not contain a line InitiatorName=NAME";
    return initiator;
}

} // namespace console
