#pragma once

#include "fw_Export.h"

namespace framework {

class OutputStream;

/// A terminal with a person in front of it: text out, single keys in.
///
///     char key = console.readKey();
class VXFW_EXPORT Console {
public:
    virtual ~Console();

    /// Where text goes; lives as long as the console.
    virtual OutputStream& outputStream() = 0;
    /// Waits for one key and returns it.
    virtual char readKey() = 0;
    /// Takes a prompt off the current line, of which at most `width` columns were used.
    virtual void removePrompt(int width) = 0;
};

} // namespace framework
