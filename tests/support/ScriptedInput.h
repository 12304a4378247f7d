#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "ut_InputStream.h"

namespace test {

/// A source that returns prepared data and results in order, and records the calls.
///
///     test::ScriptedInput source;
///     source.give("ports").answer(0).give("4");
class ScriptedInput : public framework::InputStream {
public:
    bool open = true;
    bool error = false;
    bool endsByItself = true;           ///< whether it is at its end after the last step
    bool atEnd = false;                 ///< whether it is at its end in any case
    bool starts = true;                 ///< the result of a start
    std::function<void()> afterReceive; ///< runs after every receive

    std::vector<unsigned int> asked; ///< the sizes requested
    int startCount = 0;
    int endCount = 0;

    /// Adds data: returned in one receive if it fits, otherwise in pieces.
    ScriptedInput& give(const std::string& data) {
        m_steps.push_back({data, static_cast<int>(data.size())});
        return *this;
    }
    /// Adds a result without data: 0 for no bytes, negative for a failure.
    ScriptedInput& answer(int result) {
        m_steps.push_back({"", result});
        return *this;
    }

    bool StartInputStream() override {
        ++startCount;
        return starts;
    }
    void EndInputStream() override {
        ++endCount;
    }
    int ReceiveInputStream(char* buffer, unsigned int size) override {
        asked.push_back(size);
        const int result = take(buffer, size);
        if (afterReceive)
            afterReceive();
        return result;
    }
    bool isInputStreamOpen() override {
        return open;
    }
    bool isInputStreamInError() override {
        return error;
    }
    bool isInputStreamAtEnd() override {
        return atEnd || (endsByItself && m_steps.empty());
    }

private:
    struct Step {
        std::string data;
        int result;
    };

    int take(char* buffer, unsigned int size) {
        if (m_steps.empty())
            return 0;
        Step& step = m_steps.front();
        if (step.result <= 0) {
            const int result = step.result;
            m_steps.pop_front();
            return result;
        }
        const std::size_t count = std::min<std::size_t>(size, step.data.size());
        std::copy_n(step.data.begin(), count, buffer);
        step.data.erase(0, count);
        if (step.data.empty())
            m_steps.pop_front();
        return static_cast<int>(count);
    }

    std::deque<Step> m_steps;
};

} // namespace test
