#pragma once

#include <string>

#include "ut_OutputStream.h"

namespace console {

/// Hands text on to a target without anything that a terminal would obey.
///
/// Tabs, newlines and well-formed UTF-8 (RFC 3629) stay as they are. Each byte of anything else is written as `\xNN`:
/// other C0 controls, DEL, C1 controls, and what is not UTF-8. The bytes of a character may come in several sends; the
/// first ones are held until the last one comes or the stream is ended. The target is kept, not owned. One thread at a
/// time.
///
///     console::EscapingOutputStream out(terminal);
///     out.SendOutputStream("\033[2J", 4);   // shows \x1b[2J
class EscapingOutputStream : public framework::OutputStream {
public:
    explicit EscapingOutputStream(framework::OutputStream& target);

    bool StartOutputStream() override;
    /// Writes what is held, and ends the target.
    void EndOutputStream() override;
    bool SendOutputStream(const char* data, unsigned int size) override;
    bool isOutputStreamOpen() override;
    bool isOutputStreamInError() override;
    bool isOutputStreamAtEnd() override;

private:
    bool pass(bool isEnd);

    framework::OutputStream& m_target;
    std::string m_held;
};

/// `text` as one line that is safe to show: tabs and newlines are escaped too.
std::string escapedLine(const std::string& text);

} // namespace console
