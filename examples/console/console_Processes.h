#pragma once

#include <string>
#include <vector>

namespace console {

/// A process, as the files of one directory under /proc describe it.
struct Process {
    unsigned int id;
    std::string user;         ///< the name of its user, or the number if it does not have a name
    char state;               ///< as the kernel abbreviates it: 'R' running, 'S' sleeping, and others
    double cpuSeconds;        ///< time on processors so far, in both modes
    unsigned long long bytes; ///< resident memory
    std::string command;      ///< the command line, or the name in brackets if there is none, as for kernel threads
};

/// What `sortProcesses` sorts by.
enum class ProcessOrder { CPU, MEMORY, ID };

/// Returns the processes under `root`/proc that this user may see, with the names of users in `root`/etc/passwd, in no
/// particular order. A process that ends meanwhile is left out, and so is one whose files this user may not read: where
/// /proc is mounted with hidepid, those of other users.
/// - `failure`: set to the path and the reason if the directory does not describe any process
std::vector<Process> processesUnder(const std::string& root, std::string* failure);

/// Sorts by CPU time or memory, the largest first, or by ID; equal processes by ID.
void sortProcesses(std::vector<Process>* processes, ProcessOrder order);

} // namespace console
