#pragma once

#include "fw_Export.h"

namespace framework {

/// Passes every diagnostic of the process to one sink.
///
/// Any thread may log at any time, also in a signal handler that interrupted the sink: a message that is logged while
/// the calling thread is inside the sink, or while the platform refuses the sink's lock, is written to standard error.
/// Nothing is thrown. A message of up to 1,023 bytes is logged without an allocation.
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
        LOG_DEBUG = 3,   ///< traces; each needs a debug switch to be on
        LOG_ENTER = 4    ///< method entry traces
    };

    /// Receives one message. `function` is null and `line` is 0 if the call has neither. The texts are valid during the
    /// call.
    typedef void (*Sink)(void* context, LogType type, const char* function, int line, const char* text);

    /// Replaces the sink. Null restores the default, which writes one line per message to standard error. When this
    /// returns, no thread is inside the previous sink any more. A call from inside a sink is ignored. An exception that
    /// a sink throws is caught, and the message is written to standard error.
    static void setSink(Sink sink, void* context);

    /// Logs a formatted text without location. A null format counts as empty; a format that `vsnprintf` rejects is
    /// logged itself.
    static void StaticLog(LogType type, const char* format, ...) VXFW_PRINTF(2, 3);
    /// Logs a formatted text that is tagged with the signature text and the line of the caller.
    static void StaticLogMethod(LogType type, const char* function, int line, const char* format, ...)
        VXFW_PRINTF(4, 5);
    /// Logs `text` without formatting it; null counts as empty.
    static void StaticLogS(LogType type, const char* text);
};

} // namespace framework
