#pragma once

namespace framework {

class ThreadInfo;

/// The records of all threads that have one.
class ThreadRecords {
public:
    /// Creates and returns the record of the calling thread, which must not have one yet. Returns null if the platform
    /// cannot report the thread's end.
    static ThreadInfo* make();
    /// Sends `sig` to every thread that has a record.
    static void signalAll(int sig);

    /// Makes the platform report the end of threads; false if it cannot. Called at load time, and again by `make` under
    /// the lock if that failed.
    static bool prepare();

private:
    static void remove(void* record);
    static void keepOnlyMine();
};

} // namespace framework
