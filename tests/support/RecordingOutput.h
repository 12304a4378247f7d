#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ut_OutputStream.h"

namespace test {

/// A target that records the data it is sent and every other call, with configurable results and states.
///
///     test::RecordingOutput target;
///     target.refusals = 1;   // the next send is refused
class RecordingOutput : public framework::OutputStream {
public:
    bool open = true;
    bool error = false;
    bool atEnd = false;
    bool starts = true;              ///< the result of a start
    int refusals = 0;                ///< the number of sends to refuse from now on
    std::function<void()> afterSend; ///< runs after every send

    /// The starts, ends, flushes and sends, oldest first; a send is "send:" and its data, or "refused:" and its data.
    std::vector<std::string> calls;

    /// The data accepted so far.
    std::string text() const {
        std::string all;
        for (const std::string& call : calls) {
            if (call.compare(0, 5, "send:") == 0)
                all += call.substr(5);
        }
        return all;
    }

    bool StartOutputStream() override {
        calls.push_back("start");
        return starts;
    }
    void EndOutputStream() override {
        calls.push_back("end");
    }
    bool SendOutputStream(const char* data, unsigned int size) override {
        const bool refused = refusals > 0;
        refusals -= refused ? 1 : 0;
        calls.push_back((refused ? "refused:" : "send:") + std::string(data, size));
        if (afterSend)
            afterSend();
        return !refused;
    }
    void FlushOutputStream() override {
        calls.push_back("flush");
    }
    bool isOutputStreamOpen() override {
        return open;
    }
    bool isOutputStreamInError() override {
        return error;
    }
    bool isOutputStreamAtEnd() override {
        return atEnd;
    }
};

} // namespace test
