#pragma once

#include "fw_KnownTokens.h"
#include "fw_Logger.h"
#include "ut_Debug.h"

// Macros for logs and traces. Internal: not for callers of the library.

/// Logs a formatted text with the signature text of the current function and the current line.
#define VXUT_LOG(type, ...) VXUT_LOG_AS(__PRETTY_FUNCTION__, type, __VA_ARGS__)

/// Logs a formatted text with the signature text `function`, for helpers that log on behalf of a public operation.
#define VXUT_LOG_AS(function, type, ...) ::framework::Logger::StaticLogMethod(type, function, __LINE__, __VA_ARGS__)

/// Logs at level 3 if `condition` is true.
#define VXUT_TRACE_IF(condition, ...) VXUT_TRACE_IF_AS(__PRETTY_FUNCTION__, condition, __VA_ARGS__)

/// Does the same as `VXUT_TRACE_IF`, with the signature text `function`, for helpers that trace on behalf of a public
/// operation.
#define VXUT_TRACE_IF_AS(function, condition, ...)                                                                     \
    do {                                                                                                               \
        if (condition)                                                                                                 \
            VXUT_LOG_AS(function, ::framework::Logger::LOG_DEBUG, __VA_ARGS__);                                        \
    } while (false)

/// Logs at level 3 if the debug switch `token`, an enumerator of `strings::KnownToken`, is on.
#define VXUT_TRACE(token, ...) VXUT_TRACE_IF(::utility::Debug::isDebugOn(::strings::token), __VA_ARGS__)

/// Does the same as `VXUT_TRACE`, with the signature text `function`, for helpers that trace on behalf of a public
/// operation.
#define VXUT_TRACE_AS(function, token, ...)                                                                            \
    VXUT_TRACE_IF_AS(function, ::utility::Debug::isDebugOn(::strings::token), __VA_ARGS__)

/// Does the same as `VXUT_TRACE_AS`, through `LogMethodDebug` of the current object, which must be an entity.
#define VXUT_TRACE_ENTITY_AS(function, token, ...)                                                                     \
    do {                                                                                                               \
        if (::utility::Debug::isDebugOn(::strings::token))                                                             \
            LogMethodDebug(function, __LINE__, __VA_ARGS__);                                                           \
    } while (false)

/// Does the same as `VXUT_TRACE`, through `LogMethodDebug` of the current object, which must be an entity.
#define VXUT_TRACE_ENTITY(token, ...) VXUT_TRACE_ENTITY_AS(__PRETTY_FUNCTION__, token, __VA_ARGS__)

/// Logs the method entry marker at level 4 if the debug switch `token` is on.
#define VXUT_TRACE_ENTER(token)                                                                                        \
    do {                                                                                                               \
        if (::utility::Debug::isDebugOn(::strings::token))                                                             \
            VXUT_LOG(::framework::Logger::LOG_ENTER, "%s", pGSEnter);                                                  \
    } while (false)
