#pragma once

#include "fw_Export.h"
#include "ut_Arguments.h"

namespace framework {

/// Holds the command line of the process.
///
/// A program constructs one in `main` that lives until the process ends. It owns the words.
///
///     framework::ApplicationArguments arguments(argc, argv);
///     framework::ApplicationArguments::getArgs()->ArgValue(0);   // the command name
class ApplicationArguments {
public:
    /// Copies the words and becomes the one that `getArgs` uses.
    ApplicationArguments(int argc, char** argv) : m_arguments(argc, argv) {
        m_singleton = this;
    }
    ApplicationArguments(const ApplicationArguments&) = delete;
    ApplicationArguments& operator=(const ApplicationArguments&) = delete;
    ~ApplicationArguments() {
        if (m_singleton == this)
            m_singleton = nullptr;
    }

    /// Returns the words, or null if no object was constructed. Owned by that object.
    VXFW_EXPORT static utility::Arguments* getArgs() {
        return m_singleton ? &m_singleton->m_arguments : nullptr;
    }

    VXFW_EXPORT static ApplicationArguments* m_singleton;

private:
    utility::Arguments m_arguments;
};

} // namespace framework
