#include "ut_Text.h"

#include <algorithm>
#include <cctype>
#include <cstring>

#include <arpa/inet.h>

#include "fw_Exception.h"
#include "fw_StringRepository.h"
#include "ut_Arguments.h"
#include "ut_FCPortAddress.h"
#include "ut_ISCSIPortAddress.h"
#include "ut_Options.h"
#include "ut_OutputStream.h"
#include "ut_Path.h"
#include "ut_URL.h"
#include "ut_VirtualPutStream.h"

namespace utility {

namespace {

// A target that appends to a string.
class StringOutput : public framework::OutputStream {
public:
    explicit StringOutput(std::string& text) : m_text(text) {}
    bool StartOutputStream() override {
        return true;
    }
    void EndOutputStream() override {}
    bool SendOutputStream(const char* data, unsigned int size) override {
        m_text.append(data, size);
        return true;
    }
    bool isOutputStreamOpen() override {
        return true;
    }
    bool isOutputStreamInError() override {
        return false;
    }
    bool isOutputStreamAtEnd() override {
        return false;
    }

private:
    std::string& m_text;
};

// A stream that a text is written to: the size of its buffer at first and at most.
constexpr std::size_t smallestStream = 2048;
constexpr std::size_t largestStream = 8 * 1024 * 1024;

// The same for a buffer that an operation writes to.
constexpr std::size_t smallestBuffer = 256;
constexpr std::size_t largestBuffer = 1024 * 1024;
// A UTF-8 character that does not fit is omitted, so a truncated text can be a few bytes shorter than the buffer.
constexpr std::size_t largestCharacter = 4;

constexpr std::size_t wwnDigits = 16;
constexpr std::size_t serialNumberDigits = 32;
// More than the longest text of `DateTime::ToISOBuf`.
constexpr std::size_t isoSize = 64;

// Calls `write`. Returns false if it throws code 1239 and `isLast` is not set.
template<typename Write>
bool succeeds(Write write, bool isLast) {
    try {
        write();
    } catch (framework::Exception* failure) {
        if (failure->code() != framework::Exception::FAILURE_BUFFER || isLast)
            throw;
        delete failure;
        return false;
    }
    return true;
}

// A NUL-terminated copy of a text that is shorter than every other text of a value; empty if it is longer or contains a
// NUL, which would end it early.
class ShortText {
public:
    explicit ShortText(std::string_view text) : m_text() {
        if (text.size() < sizeof m_text && text.find('\0') == std::string_view::npos)
            text.copy(m_text, text.size());
    }
    const char* get() const {
        return m_text;
    }

private:
    char m_text[64];
};

template<typename Address>
std::optional<Address> fromAddress(std::string_view text) {
    Address address;
    return address.fromString(ShortText(text).get()) ? std::optional<Address>(address) : std::nullopt;
}

// The texts of WWNs and serial numbers: `fromString` ignores what follows the digits.
template<typename Digits>
std::optional<Digits> fromDigits(std::string_view text, std::size_t count) {
    if (text.size() != count)
        return std::nullopt;
    Digits value(static_cast<const char*>(nullptr));
    return value.fromString(ShortText(text).get()) ? std::optional<Digits>(value) : std::nullopt;
}

std::optional<DateTime> parseTime(const char* text, DateTime (*parse)(const char*)) {
    try {
        const DateTime time = parse(text);
        return time.getEpochValid() ? std::optional<DateTime>(time) : std::nullopt;
    } catch (framework::Exception* failure) {
        delete failure;
        return std::nullopt;
    }
}

// Appends a part of a URL with its delimiters unless it is null. Returns whether it has characters.
bool appendPart(std::string& text, const char* before, const char* part, const char* after) {
    if (part == nullptr)
        return false;
    text.append(before).append(part).append(after);
    return part[0] != 0;
}

bool isLess(const FCPortAddress& a, const FCPortAddress& b) {
    return a.getWWN() != b.getWWN() ? a.getWWN() < b.getWWN() : a.getWWNType() < b.getWWNType();
}

bool isLess(const ISCSIPortAddress& a, const ISCSIPortAddress& b) {
    if (a.getIPType() != b.getIPType())
        return a.getIPType() == ISCSIPortAddress::IP_V4;
    if (a.getIPV4() != b.getIPV4())
        return a.getIPV4() < b.getIPV4();
    if (a.getIPV6() != b.getIPV6())
        return a.getIPV6() < b.getIPV6();
    if (a.getPort() != b.getPort())
        return a.getPort() < b.getPort();
    return std::strcmp(a.getName(), b.getName()) < 0;
}

} // namespace

std::string textFromStream(void (*write)(PutStream&, void*), void* context) {
    std::string text;
    for (std::size_t size = smallestStream;; size *= 16) {
        const auto attempt = [&text, size, write, context] {
            text.clear();
            StringOutput target(text);
            std::string buffer(size, '\0');
            // Some operations truncate their text to the space left, so the stream flushes long before it is full.
            VirtualPutStream out(target, buffer.data(), static_cast<int>(size), static_cast<int>(size / 2));
            write(out, context);
            out.FlushOutputStream();
        };
        if (succeeds(attempt, size >= largestStream))
            return text;
    }
}

std::string textFromBuffer(void (*write)(char*, unsigned int, void*), void* context) {
    for (std::size_t size = smallestBuffer;; size *= 4) {
        const bool isLast = size >= largestBuffer;
        std::string buffer(size, '\0');
        const auto attempt = [&buffer, write, context] {
            write(buffer.data(), static_cast<unsigned int>(buffer.size()), context);
        };
        if (!succeeds(attempt, isLast))
            continue;
        const std::size_t length = std::min(buffer.find('\0'), size);
        if (isLast || length + largestCharacter < size) {
            buffer.resize(length);
            return buffer;
        }
    }
}

std::string textOfToken(stringtoken token) {
    const char* const text = strings::StringRepository::toString(token);
    return text != nullptr ? text : "";
}

std::string toText(const DateTime& time) {
    char text[isoSize];
    return time.ToISOBuf(text, sizeof text);
}

std::string toText(const Path& path) {
    return path.getValue();
}

std::string toText(const URL& url) {
    // `GetValue` would allocate from the pool of the object.
    std::string text;
    bool hasText = appendPart(text, "", url.GetScheme(), ":");
    hasText |= appendPart(text, "//", url.GetAuthority(), "");
    hasText |= appendPart(text, "", url.GetPath(), "");
    hasText |= appendPart(text, "?", url.GetQuery(), "");
    return hasText ? text : std::string();
}

std::string toText(const Options& options) {
    return toText([&options](PutStream& out) { options.toStream(out); });
}

std::string toText(const Arguments& arguments) {
    return toText([&arguments](PutStream& out) { arguments.ToString(0, out); });
}

std::string_view readableText(const Buffer& stream) {
    // First, because it may refill and move the content.
    const int available = stream.ReadAvailable();
    const int start = stream.ReadPosition();
    if (stream.pBuffer() == nullptr || available <= 0 || start < 0 || start >= stream.Size())
        return {};
    return {stream.pTail(), static_cast<std::size_t>(std::min(available, stream.Size() - start))};
}

template<>
std::optional<IPV4Address> fromText<IPV4Address>(std::string_view text) {
    return fromAddress<IPV4Address>(text);
}

template<>
std::optional<IPV6Address> fromText<IPV6Address>(std::string_view text) {
    return fromAddress<IPV6Address>(text);
}

template<>
std::optional<WWN> fromText<WWN>(std::string_view text) {
    return fromDigits<WWN>(text, wwnDigits);
}

template<>
std::optional<SerialNumber> fromText<SerialNumber>(std::string_view text) {
    return fromDigits<SerialNumber>(text, serialNumberDigits);
}

template<>
std::optional<DateTime> fromText<DateTime>(std::string_view text) {
    const ShortText time(text);
    if (time.get()[0] == 0)
        return std::nullopt;
    if (std::isalpha(static_cast<unsigned char>(time.get()[0])) != 0)
        return parseTime(time.get(), DateTime::fromRFC822);
    // The parser accepts fields out of range and other separators.
    const std::optional<DateTime> value = parseTime(time.get(), DateTime::Parse);
    char written[isoSize];
    return value.has_value() && text == value->ToISOBuf(written, sizeof written) ? value : std::nullopt;
}

bool operator==(const DateTime& a, const DateTime& b) {
    return a.getTime() == b.getTime();
}

bool operator<(const DateTime& a, const DateTime& b) {
    return a.getTime() < b.getTime();
}

bool operator<(const IPV4Address& a, const IPV4Address& b) {
    return ntohl(a.getValue()) < ntohl(b.getValue());
}

bool operator<(const PortAddress& a, const PortAddress& b) {
    if (a.getType() != b.getType())
        return PortAddress::PortTypeToNumeric(a.getType()) < PortAddress::PortTypeToNumeric(b.getType());
    switch (a.getType()) {
    case PortAddress::PORT_FC:
        return isLess(dynamic_cast<const FCPortAddress&>(a), dynamic_cast<const FCPortAddress&>(b));
    case PortAddress::PORT_ISCSI:
        return isLess(dynamic_cast<const ISCSIPortAddress&>(a), dynamic_cast<const ISCSIPortAddress&>(b));
    default:
        return toText(a) < toText(b);
    }
}

} // namespace utility
