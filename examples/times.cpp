// Parses, compares and formats times. Local times use the time zone of the process.

#include <cstdio>

#include <time.h>

#include "ut_DateTime.h"
#include "ut_Environment.h"
#include "ut_Text.h"

int main() {
    // Central European Time. A program normally uses the zone of its environment.
    utility::Environment::SetEnv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    tzset();

    const utility::DateTime start(2024, 3, 30, 12, 0, 0);
    char text[40];
    std::printf("%s\n", start.ToBuf(text, sizeof text));
    std::printf("%s\n", start.ToRFC822Buf(text, sizeof text));

    // A day has 86,400 seconds. Daylight saving time begins on 31 March, so the local hour changes.
    const utility::DateTime next = start.AddDays(1);
    std::printf("%s, %d hours later\n", utility::toText(next).c_str(), start.HoursSpan(next));
    std::printf("next midnight %s\n", utility::toText(start.getNextDay()).c_str());

    // 30 February does not exist: `AddMonths` carries into March, `fromText` rejects it.
    std::printf("%s\n", utility::toText(utility::DateTime(2024, 1, 30).AddMonths(1)).c_str());
    std::printf("%s\n", utility::fromText<utility::DateTime>("2024-02-30 00:00:00") ? "valid" : "not a time");

    const auto parsed = utility::fromText<utility::DateTime>("Sat, 30 Mar 2024 11:00:00 GMT");
    std::printf("%s\n", parsed == start ? "same time" : "another time");
    return 0;
}
