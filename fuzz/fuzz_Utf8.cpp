// Compares the check for printable UTF-8 and the removal of a partial character with a byte-by-byte reference. The
// first byte chooses the disallowed and allowed characters; the rest is the text.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "../tests/support/ReferenceUtf8.h"
#include "Bytes.h"
#include "fw_Logger.h"
#include "ut_Misc.h"

namespace {

using framework::Logger;
using fuzz::require;
using utility::Misc;

constexpr const char* disallowedSets[] = {"", ",", "<>\"", "\xC3\t~"};
constexpr const char* controlSets[] = {"", "\t\n\r", "\x01\x02\x03\x7f\t", "\x89\xC3"};

struct Log {
    std::string text;
    unsigned int lines = 0;
};

void collect(void* context, Logger::LogType type, const char* function, int line, const char* text) {
    require(type == Logger::LOG_ERROR && function == nullptr && line == 0);
    Log* log = static_cast<Log*>(context);
    log->text = text;
    ++log->lines;
}

// Returns a copy of exactly these bytes, so that a sanitizer reports each access past them.
template<typename Byte>
std::unique_ptr<char[]> exactly(const Byte* bytes, std::size_t size) {
    std::unique_ptr<char[]> copy(new char[size]);
    if (size > 0)
        std::memcpy(copy.get(), bytes, size);
    return copy;
}

void checkPrintable(const uint8_t* data, std::size_t size, const char* disallowed, const char* controls) {
    const unsigned int len = static_cast<unsigned int>(size);
    const test::Utf8Verdict expected = test::referenceUtf8(data, len, disallowed, controls);
    Log log;
    Logger::setSink(collect, &log);
    const bool printable = Misc::isStringPrintableUtf8(exactly(data, size).get(), len, disallowed, controls);
    Logger::setSink(nullptr, nullptr);
    require(printable == expected.printable);
    require(log.lines == (expected.printable ? 0U : 1U) && log.text == expected.log);
}

void checkTruncated(const std::string& text) {
    const std::unique_ptr<char[]> copy = exactly(text.c_str(), text.size() + 1);
    Log log;
    Logger::setSink(collect, &log);
    const bool whole = Misc::truncateUtf8(copy.get());
    Logger::setSink(nullptr, nullptr);
    const std::string left = copy.get();
    const auto isPrintable = [&text](std::size_t length) {
        return test::referenceUtf8(reinterpret_cast<const unsigned char*>(text.c_str()),
                                   static_cast<unsigned int>(length), "", "\t\n\r")
            .printable;
    };
    require(text.compare(0, left.size(), left) == 0);
    // No longer beginning of the text is printable.
    for (std::size_t cut = 0; cut < 4 && cut <= text.size() && (!whole || text.size() - cut > left.size()); ++cut)
        require(!isPrintable(text.size() - cut));
    require(whole ? isPrintable(left.size()) && text.size() - left.size() <= 3 : left == text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size < 1 || size > 1000000)
        return 0;
    checkPrintable(data + 1, size - 1, disallowedSets[data[0] & 3], controlSets[data[0] >> 2 & 3]);
    checkTruncated(std::string(reinterpret_cast<const char*>(data + 1), size - 1).c_str());
    return 0;
}
