#pragma once

#include "ut_Debug.h"

namespace test {

/// Keeps a debug switch on while it exists.
///
///     test::DebugSwitch growth(292);
class DebugSwitch {
public:
    explicit DebugSwitch(unsigned int number) : m_number(number) {
        utility::Debug::setDebugOn(number);
    }
    DebugSwitch(const DebugSwitch&) = delete;
    DebugSwitch& operator=(const DebugSwitch&) = delete;
    ~DebugSwitch() {
        utility::Debug::setDebugOff(m_number);
    }

private:
    unsigned int m_number;
};

} // namespace test
