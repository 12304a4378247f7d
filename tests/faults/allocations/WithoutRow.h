#pragma once

#include <vector>

namespace faults {

/// An exported operation that no row can run, with the reason. It gets no breakpoint.
struct WithoutRow {
    const char* operation;
    const char* reason;
};

inline const std::vector<WithoutRow> withoutRow = {
    {"framework::Container::dumpApplication(int)", "ends the process"},
    {"framework::Container::shutdown(bool)", "ends the process"},
    {"framework::Container::shutdownApplication(bool)", "ends the process"},
    {"framework::ThreadInfo::~ThreadInfo()", "runs at the end of a thread, after the row"},
    {"utility::Debug::SignalCrash(int)", "ends the process; ut_DebugCrash_test runs it with a heap that fails"},
    {"utility::Debug::SignalExit(int)", "ends the process"},
};

} // namespace faults
