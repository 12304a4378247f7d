#include "ut_Debug.h"

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "fw_Logger.h"
#include "fw_ThreadInfo.h"
#include "ut_BufferStream.h"

namespace utility {

namespace {

const unsigned int deepestBackTrace = 40;

void putSymbol(BufferStream& out, char* symbol, void* address) {
    Dl_info object = {};
    if (dladdr(address, &object) != 0)
        out.PutF("%s: @%p\n", object.dli_fname, object.dli_fbase);

    char* name = std::strchr(symbol, '(');
    char* offset = name != nullptr ? std::strchr(name, '+') : nullptr;
    long distance = 0;
    if (name != nullptr)
        *name++ = 0;
    if (offset != nullptr) {
        *offset++ = 0;
        distance = std::strtol(offset, nullptr, 0);
    }
    if (name == nullptr)
        name = symbol;
    int status = 0;
    char* demangled = abi::__cxa_demangle(name, nullptr, nullptr, &status);
    out.PutF("    %s+0x%lX [%p]\n", demangled != nullptr ? demangled : name, static_cast<unsigned long>(distance),
             address);
    std::free(demangled);
}

} // namespace

void Debug::ErrorContext() {
    char text[65535];
    BufferStream stream(text, sizeof text, true);
    framework::Logger::StaticLog(framework::Logger::LOG_ERROR, "ErrorContext - for diagnostic purposes.");
    framework::ThreadInfo::MyThreadInfo();
    BackTrace(&stream, deepestBackTrace, 2, true);
    framework::Logger::StaticLogS(framework::Logger::LOG_ERROR, text);
}

void Debug::BackTrace(BufferStream* out, unsigned int depth, unsigned int skip, bool) {
    if (out == nullptr)
        return;
    void* addresses[deepestBackTrace];
    const unsigned int count =
        static_cast<unsigned int>(backtrace(addresses, static_cast<int>(std::min(depth, deepestBackTrace))));
    char** symbols = backtrace_symbols(addresses, static_cast<int>(count));
    out->PutF("Backtrace of %u stack frames\n", count > skip ? count - skip : 0);
    out->PutS("Backtrace Start>>>\n");
    for (unsigned int i = skip; i < count; ++i) {
        out->PutF("(%u) ", i);
        if (symbols != nullptr && symbols[i] != nullptr) {
            putSymbol(*out, symbols[i], addresses[i]);
        } else {
            out->PutF("[%-10p]\n", addresses[i]);
        }
    }
    out->PutS("<<<Backtrace End\n");
    std::free(symbols);
}

} // namespace utility
