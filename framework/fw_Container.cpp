// Container: the process and its end. Running commands is in fw_ContainerSpawn.cpp.

#include "fw_Container.h"

#include <cstdlib>

#include <pthread.h>
#include <signal.h>

namespace framework {

namespace {

void raiseByDefault(int sig) {
    struct sigaction byDefault = {};
    byDefault.sa_handler = SIG_DFL;
    sigemptyset(&byDefault.sa_mask);
    sigaction(sig, &byDefault, nullptr);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, sig);
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    raise(sig);
}

} // namespace

Memory* Container::m_pMemory = nullptr;
Container* Container::m_pMe = nullptr;

Container::Container() {
    m_pMe = this;
}

Container::~Container() {
    if (m_pMe == this)
        m_pMe = nullptr;
}

void Container::dumpApplication(int sig) {
    raiseByDefault(sig);
    // Still running: the default action of the signal is not to end the process, or `sig` is not a signal.
    raiseByDefault(SIGABRT);
    std::abort();
}

void Container::shutdownApplication(bool clean) {
    if (m_pMe != nullptr)
        m_pMe->shutdown(clean);
    else
        std::exit(clean ? EXIT_SUCCESS : EXIT_FAILURE);
}

void Container::shutdown(bool clean) {
    std::exit(clean ? EXIT_SUCCESS : EXIT_FAILURE);
}

} // namespace framework
