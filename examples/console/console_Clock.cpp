#include "console_Clock.h"

#include <cstdint>
#include <cstdlib>

#include "console_Files.h"
#include "ut_DateTime.h"
#include "ut_TimeMeasure.h"

namespace console {

std::string durationText(double seconds) {
    constexpr int64_t microsecondsPerDay = 86400LL * 1000000;
    const int64_t microseconds = static_cast<int64_t>(seconds * 1e6);
    const int64_t days = microseconds / microsecondsPerDay;
    char time[20];
    utility::TimeMeasure::printDurationMillisec(microseconds % microsecondsPerDay, time, sizeof time);
    if (days == 0)
        return time;
    return std::to_string(days) + (days == 1 ? " day " : " days ") + time;
}

bool date(Invocation& call) {
    const utility::DateTime now = utility::DateTime::Now();
    tm fields = {};
    if (!now.getEpochValid() || now.toTM(&fields) == nullptr)
        return call.fail("the clock cannot be read");
    char text[100];
    char offset[20] = "";
    const std::string zone = fields.tm_zone != nullptr ? fields.tm_zone : "";
    std::strftime(offset, sizeof offset, "%z", &fields);
    call.answer().line(
        "date", Value(now.ToBuf(text, sizeof text)).shownAs(std::string(text) + ' ' + zone + " (" + offset + ')'));
    call.answer().detail("epoch", static_cast<long long>(now.getTime()));
    call.answer().detail("zone", zone);
    call.answer().detail("offset", offset);
    return true;
}

bool uptime(Invocation& call) {
    constexpr double longest = 1e12;
    const std::string path = call.systemPath("/proc/uptime");
    std::string failure;
    const std::string text = firstLineOf(path, &failure);
    if (text.empty())
        return call.fail("%s", failure.empty() ? (path + " cannot be read").c_str() : failure.c_str());
    const double seconds = std::strtod(text.c_str(), nullptr);
    if (!(seconds >= 0 && seconds <= longest))
        return call.fail("%s: is not a time in seconds", path.c_str());
    call.answer().line("seconds", Value(seconds).shownAs(durationText(seconds)));
    return true;
}

} // namespace console
