#pragma once

#include <string>

#include "console_Invocation.h"

namespace console {

/// Returns a duration as days, if it is a day or longer, and hours, minutes and seconds.
/// - `seconds`: 0 to 10^12
///
///     console::durationText(93784.56)   // "1 day 02:03:04.560"
std::string durationText(double seconds);

/// The command "date": shows the local date and time, and their zone.
bool date(Invocation& call);

/// The command "uptime": shows how long the system has been running.
bool uptime(Invocation& call);

} // namespace console
