#pragma once

#include "fw_Logger.h"

namespace console {

/// Silences the log while it lives: the library logs each bad character, but here the offset says more.
class SilentLog {
public:
    SilentLog() {
        framework::Logger::setSink(discard, nullptr);
    }
    SilentLog(const SilentLog&) = delete;
    SilentLog& operator=(const SilentLog&) = delete;
    ~SilentLog() {
        framework::Logger::setSink(nullptr, nullptr);
    }

private:
    static void discard(void*, framework::Logger::LogType, const char*, int, const char*) {}
};

} // namespace console
