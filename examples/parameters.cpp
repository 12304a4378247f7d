// Encodes a message into a buffer and decodes it again. The reader knows the order and the types of the fields.

#include <cstdio>

#include "fw_Exception.h"
#include "ut_BufferStream.h"
#include "ut_Ranges.h"
#include "ut_StringArray.h"

namespace {

void encode(utility::PutStream& message) {
    message.PutParmUint16(7);
    message.PutParmString("volume 1");
    utility::StringArray ports(0);
    ports.Append("CL1-A");
    ports.Append("CL2-A");
    message.PutParmStringArray(ports);
}

bool decode(utility::GetStream& message) {
    unsigned short command = 0;
    utility::StringArray ports(0);
    if (!message.GetParmUint16(&command))
        return false;
    const char* const name = message.GetParmString();
    if (name == nullptr || !message.GetParmStringArray(ports))
        return false;
    std::printf("command %d, name '%s'\n", command, name);
    for (const char* port : utility::range(ports))
        std::printf("port %s\n", port);
    return true;
}

} // namespace

int main() {
    utility::BufferStream message(64);
    encode(message);
    std::printf("%d bytes\n", message.ReadAvailable());
    decode(message);
    // Everything was read: nothing is left to decode.
    std::printf("%s\n", decode(message) ? "another message" : "no message");

    utility::BufferStream tooSmall(16);
    try {
        encode(tooSmall);
    } catch (framework::Exception* failure) {
        std::printf("code %u: the message does not fit\n", failure->code());
        delete failure;
    }
    return 0;
}
