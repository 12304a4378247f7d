#pragma once

#include <string>

#include "console_History.h"
#include "ut_OutputStream.h"

namespace console {

/// Hands everything on to a target, and what is part of an answer to a history as well.
///
/// Both are kept, not owned. One thread at a time.
///
///     console::RecordingOutputStream out(terminal, history);
///     out.setRecording(true);
class RecordingOutputStream : public framework::OutputStream {
public:
    RecordingOutputStream(framework::OutputStream& target, History& history);

    bool StartOutputStream() override;
    void EndOutputStream() override;
    bool SendOutputStream(const char* data, unsigned int size) override;
    bool isOutputStreamOpen() override;
    bool isOutputStreamInError() override;
    bool isOutputStreamAtEnd() override;

    /// Whether what is sent from now on belongs to an answer.
    void setRecording(bool recording);
    /// Says that the last send was no part of the answer, but a prompt; returns its size.
    unsigned int forgetLast() {
        m_last.clear();
        return m_lastSize;
    }

private:
    framework::OutputStream& m_target;
    History& m_history;
    bool m_recording;
    unsigned int m_lastSize;
    std::string m_last; // recorded as soon as it turns out to be no prompt
};

} // namespace console
