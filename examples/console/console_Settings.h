#pragma once

#include <string>

namespace console {

/// How a session runs commands.
struct Settings {
    bool isPaged = false; ///< whether answers stop after each full page of the terminal
    bool isJson = false;  ///< whether each answer is a JSON object
    std::string root;     ///< put in front of the paths of system files: /sys, /proc and /etc
};

} // namespace console
