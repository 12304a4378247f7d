#pragma once

#include "fw_Export.h"

namespace framework {

class OutputStream;

/// An interactive terminal: writes text and reads single keys.
///
///     char key = console.readKey();
class VXFW_EXPORT Console {
public:
    virtual ~Console();

    /// Returns the stream that writes to the terminal. The console owns it.
    virtual OutputStream& outputStream() = 0;
    /// Waits for one key and returns it.
    virtual char readKey() = 0;
    /// Erases a prompt of at most `width` columns from the current line.
    virtual void removePrompt(int width) = 0;
};

} // namespace framework
