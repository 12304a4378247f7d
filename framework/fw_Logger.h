#pragma once

#include "fw_Export.h"

namespace framework {

/// Passes every diagnostic of the process to one sink.
///
/// Any thread may log at any time, even in a signal handler that interrupted the sink. A message is written to standard
/// error instead if the calling thread is inside the sink or the sink's lock cannot be acquired. Nothing is thrown, and
/// `errno` does not change. A message of up to 1,023 bytes is logged without an allocation; a longer one is truncated
/// to 1,023 bytes if the allocation fails.
///
///     framework::Logger::setSink(collect, &lines);
///     framework::Logger::StaticLog(framework::Logger::LOG_NOTICE, "%d ports", 4);
///     framework::Logger::setSink(nullptr, nullptr);
class VXFW_EXPORT Logger {
public:
    /// The type of a message. "Level 3" in other comments means the type with the number 3.
    enum LogType {
        LOG_ERROR = 0,   ///< an error or a failed check
        LOG_WARNING = 1, ///< a bad argument that is ignored
        LOG_NOTICE = 2,  ///< information for the operator
        LOG_DEBUG = 3,   ///< a trace; most need a debug switch to be on
        LOG_ENTER = 4    ///< a trace of a method's entry
    };

    /// Receives one message. `context` is the pointer passed to `setSink`. `function` and `line` are the location, or
    /// null and 0 for a message without one. The texts are valid during the call only.
    typedef void (*Sink)(void* context, LogType type, const char* function, int line, const char* text);

    /// Replaces the sink. Null restores the default, which writes one line per message to standard error. When this
    /// returns, no thread is inside the previous sink. A call from inside a sink is ignored. An exception that a sink
    /// throws is caught, and the message is written to standard error.
    static void setSink(Sink sink, void* context);

    /// Logs a formatted text without a location. A null `format` counts as empty. If `vsnprintf` rejects `format`,
    /// `format` itself is logged.
    static void StaticLog(LogType type, const char* format, ...) VXFW_PRINTF(2, 3);
    /// Logs a formatted text with the caller's location: its signature text and line.
    static void StaticLogMethod(LogType type, const char* function, int line, const char* format, ...)
        VXFW_PRINTF(4, 5);
    /// Logs `text` as it is, without a location; null counts as empty.
    static void StaticLogS(LogType type, const char* text);
};

} // namespace framework
