#pragma once

namespace framework {

class ThreadInfo;

/// The records of all threads that have one.
class ThreadRecords {
public:
    /// Makes the record of the calling thread, which has none; null when the platform cannot tell its end.
    static ThreadInfo* make();
    /// Sends `sig` to every thread that has a record.
    static void signalAll(int sig);

private:
    static bool prepare();
    static void remove(void* record);
    static void keepOnlyMine();
};

} // namespace framework
