// Loads the library named by the first argument, unloads it while a thread has a record and a signal has a handler, and
// lets both go on: the library must still be there. Not linked against the library, or the library would stay loaded
// for that reason alone.
#include <cstdio>
#include <cstdlib>
#include <future>
#include <thread>

#include <dlfcn.h>
#include <signal.h>

namespace {

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "FAILED: %s\n", what);
    std::exit(1);
}

template<typename Function>
Function* function(void* library, const char* symbol) {
    void* const address = dlsym(library, symbol);
    if (address == nullptr)
        fail(symbol);
    return reinterpret_cast<Function*>(address);
}

bool isLoaded(const char* name) {
    return dlopen(name, RTLD_LAZY | RTLD_NOLOAD) != nullptr;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3)
        fail("usage: stays_loaded LIBRARY FRAMEWORK");
    if (isLoaded(argv[1]) || isLoaded(argv[2]))
        fail("a library is loaded before the test begins");
    void* const library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        fail(dlerror());
    const auto makeRecord = function<void*()>(library, "_ZN9framework10ThreadInfo12MyThreadInfoEv");
    const auto ignoreSignal = function<void(int)>(library, "_ZN7utility5Debug10SignalNullEi");

    if (signal(SIGUSR1, ignoreSignal) == SIG_ERR)
        fail("no signal handler");
    std::promise<void*> recorded;
    std::promise<void> unloaded;
    std::thread thread([&] {
        recorded.set_value(makeRecord());
        unloaded.get_future().wait();
    });
    if (recorded.get_future().get() == nullptr)
        fail("no thread record");
    if (dlclose(library) != 0)
        fail(dlerror());

    raise(SIGUSR1);
    unloaded.set_value();
    thread.join();
    if (!isLoaded(argv[1]) || !isLoaded(argv[2]))
        fail("a library is gone");
    return 0;
}
