#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "Bytes.h"
#include "fw_Exception.h"
#include "ut_DateTime.h"

namespace {

using fuzz::require;
using utility::DateTime;

typedef DateTime (*Reader)(const char* text);
typedef char* (DateTime::*Writer)(char* buf, int size) const;

// Only code 3591 may be thrown.
bool read(Reader reader, const std::string& text, DateTime* when) {
    try {
        *when = reader(text.c_str());
        return true;
    } catch (framework::Exception* thrown) {
        const std::unique_ptr<framework::Exception> failure(thrown);
        require(failure->code() == 3591 && !failure->flag());
        return false;
    }
}

std::string write(const DateTime& when, Writer writer) {
    char text[128];
    (when.*writer)(text, sizeof text);
    return text;
}

// A time that was read can be written, and reading that text gives the same text again.
void checkRoundTrip(const DateTime& when, Reader reader, Writer writer) {
    const std::string text = write(when, writer);
    // In local texts, a minus sign is a separator.
    if (text.empty() || when.getYear() < 0)
        return;
    DateTime again(0);
    require(read(reader, text, &again));
    require(write(again, writer) == text);
}

void checkArithmetic(const DateTime& when, const DateTime& other) {
    when.AddWeeks(static_cast<long>(other.getTime()));
    when.AddMonths(static_cast<long>(other.getTime()));
    when.AddYears(static_cast<long>(other.getTime()));
    require(when.Equals(other) == (when.CompareTo(other) == 0));
    require((when.SecondsSpan(other) > 0) == (when.CompareTo(other) < 0));
    when.MonthsSpan(other);
    when.YearsSpan(other);
    when.getDate();
    when.getNextDay();
    const DateTime nextMinute = when.getNextMinute();
    require(!nextMinute.getEpochValid() || nextMinute.CompareTo(when) > 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static const bool zoneSet = [] {
        setenv("TZ", "UTC0", 1);
        tzset();
        return true;
    }();
    static_cast<void>(zoneSet);
    const std::string text(reinterpret_cast<const char*>(data), size);
    DateTime::MonthFromName(text.c_str());
    DateTime::WeekdayFromName(text.c_str());
    DateTime local(0);
    DateTime utc(0);
    if (read(&DateTime::Parse, text, &local))
        checkRoundTrip(local, &DateTime::Parse, &DateTime::ToISOBuf);
    if (read(&DateTime::fromRFC822, text, &utc))
        checkRoundTrip(utc, &DateTime::fromRFC822, &DateTime::ToRFC822Buf);
    // Any eight bytes are a valid time value.
    long long seconds = 0;
    if (size > 0)
        std::memcpy(&seconds, data, std::min(size, sizeof seconds));
    const DateTime any(seconds);
    checkRoundTrip(any, &DateTime::fromRFC822, &DateTime::ToRFC822Buf);
    if (any.getEpochValid())
        checkRoundTrip(any, &DateTime::Parse, &DateTime::ToISOBuf);
    checkArithmetic(local, any);
    checkArithmetic(any, utc);
    return 0;
}
