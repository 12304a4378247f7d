#pragma once

#include <string>

#include "console_History.h"
#include "ut_OutputStream.h"

namespace console {

/// Forwards everything to a target stream, and adds the text of answers to a history.
///
/// Neither is owned; both must outlive this stream. One thread at a time.
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

    /// Turns on or off whether text sent from now on is part of an answer.
    void setRecording(bool recording);
    /// Keeps the text of the last send, which was a prompt, out of the history.
    void forgetLast() {
        m_last.clear();
    }

private:
    framework::OutputStream& m_target;
    History& m_history;
    bool m_recording;
    std::string m_last; // may be a prompt: recorded with the next send
};

} // namespace console
