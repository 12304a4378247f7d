#pragma once

#include "fw_Export.h"

namespace framework {

/// Takes every diagnostic of the process to one sink.
///
/// Any thread may log at any time, also from a signal handler that interrupted the sink itself: what is logged while
/// the calling thread is inside the sink goes to standard error. Nothing is thrown, and a message of up to 1,023 bytes
/// is logged without taking memory.
///
///     framework::Logger::setSink(collect, &lines);
///     framework::Logger::StaticLog(framework::Logger::LOG_NOTICE, "%d ports", 4);
///     framework::Logger::setSink(nullptr, nullptr);
class VXFW_EXPORT Logger {
public:
    enum LogType {
        LOG_ERROR = 0,   ///< errors and failed checks
        LOG_WARNING = 1, ///< bad arguments that are ignored
        LOG_NOTICE = 2,  ///< what an operator should know
        LOG_DEBUG = 3,   ///< traces, always behind a debug switch
        LOG_ENTER = 4    ///< method entry traces
    };

    /// Receives one message. `function` is null and `line` 0 where the call named none. The texts are the logger's.
    typedef void (*Sink)(void* context, LogType type, const char* function, int line, const char* text);

    /// Replaces the sink; null restores the default, which writes one line per message to standard error. When this
    /// returns, no thread is inside the former sink any more. A sink must not call it (it would change nothing). What
    /// a sink throws ends there, and its message goes to standard error.
    static void setSink(Sink sink, void* context);

    /// Logs a formatted text without location. A null format counts as empty; one that the platform cannot carry out is
    /// logged as it stands.
    static void StaticLog(LogType type, const char* format, ...) VXFW_PRINTF(2, 3);
    /// Logs a formatted text that is tagged with the signature text and the line of the caller.
    static void StaticLogMethod(LogType type, const char* function, int line, const char* format, ...)
        VXFW_PRINTF(4, 5);
    /// Logs a finished text as it is; null counts as empty.
    static void StaticLogS(LogType type, const char* text);
};

} // namespace framework
