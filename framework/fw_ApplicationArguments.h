#pragma once

#include "fw_Export.h"
#include "ut_Arguments.h"

namespace framework {

/// Holds the command line of the process.
///
/// A program makes one in `main` and keeps it to its end. The holder owns the words.
///
///     framework::ApplicationArguments arguments(argc, argv);
///     framework::ApplicationArguments::getArgs()->ArgValue(0);   // the command name
class ApplicationArguments {
public:
    /// Copies the words and becomes the holder of the process.
    ApplicationArguments(int argc, char** argv) : m_arguments(argc, argv) {
        m_singleton = this;
    }
    ApplicationArguments(const ApplicationArguments&) = delete;
    ApplicationArguments& operator=(const ApplicationArguments&) = delete;
    ~ApplicationArguments() {
        if (m_singleton == this)
            m_singleton = nullptr;
    }

    /// The words, or null when the program has no holder.
    VXFW_EXPORT static utility::Arguments* getArgs() {
        return m_singleton ? &m_singleton->m_arguments : nullptr;
    }

    VXFW_EXPORT static ApplicationArguments* m_singleton;

private:
    utility::Arguments m_arguments;
};

} // namespace framework
