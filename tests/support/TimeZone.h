#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

namespace test {

/// Sets the local time zone while it exists, and restores the previous one on destruction. One at a time.
///
/// A zone given as POSIX rules does not require zone files on the machine:
///
///     test::TimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
class TimeZone {
public:
    explicit TimeZone(const char* zone) {
        const char* previous = std::getenv("TZ");
        m_wasSet = previous != nullptr;
        if (m_wasSet)
            m_previous = previous;
        setenv("TZ", zone, 1);
        tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone() {
        if (m_wasSet)
            setenv("TZ", m_previous.c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }

private:
    bool m_wasSet;
    std::string m_previous;
};

} // namespace test
