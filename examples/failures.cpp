// Handles failures as values, and makes one that nothing catches tell what it is.

#include <cstdio>
#include <string>

#include "ut_DateTime.h"
#include "ut_IntArray.h"
#include "ut_Try.h"

namespace {

void report(const char* what, const utility::Failure& failure) {
    std::printf("%s: %u %s in %s: %s\n", what, failure.code(), failure.name(), failure.file(), failure.message());
}

} // namespace

int main() {
    utility::installTerminateHandler();
    utility::IntArray ports(4);
    ports.Append(3260);

    // The exception that the library throws is freed.
    for (unsigned int index = 0; index < 2; ++index) {
        const auto port = utility::tryCall([&] { return ports[index]; });
        if (port)
            std::printf("port: %d\n", port.value());
        else
            report("port", port.failure());
    }

    const auto date = utility::tryCall([] { return utility::DateTime("soon"); });
    if (!date)
        report("date", date.failure());

    // Standard exceptions have the name of their class instead of a code.
    const auto letter = utility::tryCall([] { return std::string("ports").substr(9); });
    std::printf("text: %s\n", letter.failure().name());
}
