#pragma once

#include <cstdlib>
#include <ctime>
#include <string>

namespace test {

/// Sets the local time zone for its life; the former one comes back at the end. One at a time.
///
/// A zone given by its rules needs no zone files on the machine:
///
///     test::TimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
class TimeZone {
public:
    explicit TimeZone(const char* zone) {
        const char* former = std::getenv("TZ");
        m_wasSet = former != nullptr;
        if (m_wasSet)
            m_former = former;
        setenv("TZ", zone, 1);
        tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
    ~TimeZone() {
        if (m_wasSet)
            setenv("TZ", m_former.c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }

private:
    bool m_wasSet;
    std::string m_former;
};

} // namespace test
