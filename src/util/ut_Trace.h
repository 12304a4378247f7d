#pragma once

#include "fw_Logger.h"
#include "ut_Debug.h"

// How the library's sources log. Not for callers of the library.

/// Logs a formatted text tagged with the signature text and the line of this place.
#define VXUT_LOG(type, ...) VXUT_LOG_AS(__PRETTY_FUNCTION__, type, __VA_ARGS__)

/// The same, tagged with the signature text `function` of the operation that a caller has called.
#define VXUT_LOG_AS(function, type, ...) ::framework::Logger::StaticLogMethod(type, function, __LINE__, __VA_ARGS__)

/// The same at level 3, only while `condition` holds.
#define VXUT_TRACE_IF(condition, ...)                                                                                  \
    do {                                                                                                               \
        if (condition)                                                                                                 \
            VXUT_LOG(::framework::Logger::LOG_DEBUG, __VA_ARGS__);                                                     \
    } while (false)

/// The same while debug switch number `debugSwitch` is on.
#define VXUT_TRACE(debugSwitch, ...) VXUT_TRACE_IF(::utility::Debug::isDebugOn(debugSwitch), __VA_ARGS__)

/// The same, tagged with the signature text `function` of the operation that a caller has called.
#define VXUT_TRACE_AS(function, debugSwitch, ...)                                                                      \
    do {                                                                                                               \
        if (::utility::Debug::isDebugOn(debugSwitch))                                                                  \
            VXUT_LOG_AS(function, ::framework::Logger::LOG_DEBUG, __VA_ARGS__);                                        \
    } while (false)

/// The same through the debug method of the entity whose operation this is.
#define VXUT_TRACE_ENTITY_AS(function, debugSwitch, ...)                                                               \
    do {                                                                                                               \
        if (::utility::Debug::isDebugOn(debugSwitch))                                                                  \
            LogMethodDebug(function, __LINE__, __VA_ARGS__);                                                           \
    } while (false)

#define VXUT_TRACE_ENTITY(debugSwitch, ...) VXUT_TRACE_ENTITY_AS(__PRETTY_FUNCTION__, debugSwitch, __VA_ARGS__)

/// The method entry marker at level 4, while debug switch number `debugSwitch` is on.
#define VXUT_TRACE_ENTER(debugSwitch)                                                                                  \
    do {                                                                                                               \
        if (::utility::Debug::isDebugOn(debugSwitch))                                                                  \
            VXUT_LOG(::framework::Logger::LOG_ENTER, "%s", pGSEnter);                                                  \
    } while (false)
