#pragma once

#include <string>

#include "ut_OutputStream.h"

namespace console {

/// Forwards text to a target stream and escapes control characters that a terminal would interpret.
///
/// Tabs, newlines and well-formed UTF-8 (RFC 3629) stay as they are. All other bytes are written as `\xNN`: other C0
/// controls, DEL, C1 controls, and invalid UTF-8. A character may be split between sends: its first bytes are held
/// until the rest arrives or the stream is ended. The target is not owned and must outlive this stream. One thread at
/// a time.
///
///     console::EscapingOutputStream out(terminal);
///     out.SendOutputStream("\033[2J", 4);   // shows \x1b[2J
class EscapingOutputStream : public framework::OutputStream {
public:
    explicit EscapingOutputStream(framework::OutputStream& target);

    bool StartOutputStream() override;
    /// Writes the bytes held, escaped, and ends the target.
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

/// Returns `text` as one line that is safe to show: tabs and newlines are escaped too.
std::string escapedLine(const std::string& text);

} // namespace console
