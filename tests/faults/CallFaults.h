#pragma once

#include <cerrno>
#include <map>
#include <string>
#include <utility>
#include <vector>

// Functions in the place of the platform's, for the libraries as well, which can fail. What the C library calls on its
// own does not come here: TracedCalls.h reaches that.

namespace test {

/// One failing call.
struct CallFault {
    std::string call;
    unsigned nth; ///< of the calls of this function, from 1; 0 for none
    int error;    ///< the errno or the result that the call fails with; 0 if it transfers half of what was asked for
};

/// The faults that the function `call` can have.
const std::vector<int>& faultsOf(const std::string& call);

/// Chooses the fault of the child processes started from now on, and forgets the calls of the previous ones.
void setFault(const CallFault& fault);

/// Whether the chosen fault took place, in this process or a child.
bool wasFaultMet();

/// How often each function was called while a watch lived, in this process or a child.
std::map<std::string, unsigned> callCounts();

/// Has the file `with` opened in the place of `path` while a watch lives.
void replaceFile(const std::string& path, const std::string& with);

/// The calls of this thread count, and can fail, while one of these lives.
class Watch {
public:
    Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    ~Watch();
};

} // namespace test
