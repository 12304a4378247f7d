#include "console_RecordingOutputStream.h"

namespace console {

RecordingOutputStream::RecordingOutputStream(framework::OutputStream& target, History& history)
    : m_target(target), m_history(history), m_recording(false) {}

bool RecordingOutputStream::StartOutputStream() {
    return m_target.StartOutputStream();
}

void RecordingOutputStream::EndOutputStream() {
    m_target.EndOutputStream();
}

bool RecordingOutputStream::SendOutputStream(const char* data, unsigned int size) {
    if (m_recording) {
        m_history.add(m_last);
        m_last.assign(data, size);
    }
    return m_target.SendOutputStream(data, size);
}

bool RecordingOutputStream::isOutputStreamOpen() {
    return m_target.isOutputStreamOpen();
}

bool RecordingOutputStream::isOutputStreamInError() {
    return m_target.isOutputStreamInError();
}

bool RecordingOutputStream::isOutputStreamAtEnd() {
    return m_target.isOutputStreamAtEnd();
}

void RecordingOutputStream::setRecording(bool recording) {
    m_history.add(m_last);
    m_last.clear();
    m_recording = recording;
}

} // namespace console
