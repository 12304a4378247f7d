#pragma once

#include "fw_Export.h"

#include "ut_Arguments.h"

namespace framework {

/// Holds the command line of the process.
///
/// A program constructs one object in `main`, which lives until the process ends and owns copies of the words.
///
///     framework::ApplicationArguments arguments(argc, argv);
///     framework::ApplicationArguments::getArgs()->ArgValue(0);   // the command name
class ApplicationArguments {
public:
    /// Copies the words of `argv`; `getArgs` returns them from then on.
    ApplicationArguments(int argc, char** argv) : m_arguments(argc, argv) {
        m_singleton = this;
    }
    ApplicationArguments(const ApplicationArguments&) = delete;
    ApplicationArguments& operator=(const ApplicationArguments&) = delete;
    /// Frees the words. `getArgs` then returns null, unless another object was constructed later.
    ~ApplicationArguments() {
        if (m_singleton == this)
            m_singleton = nullptr;
    }

    /// Returns the words of the object constructed last, which owns them. Returns null if no object was constructed or
    /// that object was destroyed.
    VXFW_EXPORT static utility::Arguments* getArgs() {
        return m_singleton != nullptr ? &m_singleton->m_arguments : nullptr;
    }

    /// The object that `getArgs` uses, or null. Only the constructor and the destructor set it.
    VXFW_EXPORT static ApplicationArguments* m_singleton;

private:
    utility::Arguments m_arguments;
};

} // namespace framework
