// Compares sequences of operations on the virtual streams with simple models. Output goes to a target that refuses,
// closes or fails, with and without pages; input comes from a source with short pieces and errors. The first byte
// chooses which.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "../tests/support/RecordingConsole.h"
#include "../tests/support/RecordingOutput.h"
#include "../tests/support/ScriptedInput.h"
#include "Bytes.h"
#include "PutModel.h"
#include "ut_PagingVirtualPutStream.h"
#include "ut_VirtualGetStream.h"
#include "ut_VirtualPutStream.h"

namespace {

using fuzz::Bytes;
using fuzz::codeOf;
using fuzz::require;

// A model of a virtual stream. Its own target is set to behave like the stream's target.
class VirtualModel : public fuzz::PutModel {
public:
    VirtualModel(std::size_t capacity, int threshold, bool noThrow)
        : PutModel(capacity, noThrow), m_threshold(threshold) {}

    test::RecordingOutput target;
    bool holds = false;
    int transferred = 0;

    std::size_t available() override {
        if (static_cast<int>(m_written.size()) >= m_threshold)
            flush();
        return m_capacity - m_written.size();
    }
    virtual void flush() {
        if (m_written.empty() || !isTargetUsable()) {
            m_written.clear();
        } else if (sendToTarget(m_written)) {
            transferred += static_cast<int>(m_written.size());
            m_written.clear();
        }
    }
    virtual bool send(const std::string& data) {
        if (!holds && m_written.empty())
            return isTargetUsable() && sendToTarget(data);
        const bool isTaken = fill(data) == data.size();
        // A stop for lack of space does not flush again.
        if (isTaken || !isTargetUsable())
            available();
        return isTaken;
    }
    unsigned int putB(const std::string& bytes) override {
        std::size_t taken = 0;
        std::size_t space = available();
        while (taken < bytes.size()) {
            const std::string piece = bytes.substr(taken, space);
            m_written += piece;
            taken += piece.size();
            space = available();
            if (space == 0 && taken < bytes.size() && isTargetUsable())
                space = available();
            if (space == 0)
                break;
        }
        return taken < bytes.size() ? overflow() : fuzz::failureNone;
    }

protected:
    bool isTargetUsable() {
        return target.open && !target.error;
    }
    bool sendToTarget(const std::string& data) {
        return target.SendOutputStream(data.data(), static_cast<unsigned int>(data.size()));
    }
    // Appends as much of `data` as fits; returns the number of bytes.
    std::size_t fill(const std::string& data) {
        std::size_t taken = 0;
        while (taken < data.size() && isTargetUsable()) {
            const std::string piece = data.substr(taken, available());
            if (piece.empty())
                break;
            m_written += piece;
            taken += piece.size();
        }
        return taken;
    }

private:
    int m_threshold;
};

void changeTarget(Bytes& in, test::RecordingOutput& one, test::RecordingOutput& other) {
    const unsigned int kind = in.below(8);
    for (test::RecordingOutput* target : {&one, &other}) {
        target->refusals = kind < 4 ? static_cast<int>(kind) : 0;
        target->open = kind != 4;
        target->error = kind == 5;
    }
}

void runPut(Bytes& in) {
    const std::size_t capacity = in.below(100);
    const int threshold = static_cast<int>(in.below(120)) - 5;
    const bool isQuiet = in.flag();
    test::RecordingOutput target;
    utility::VirtualPutStream stream(target, static_cast<int>(capacity), threshold);
    stream.setNoThrow(isQuiet);
    VirtualModel model(capacity, threshold, isQuiet);
    while (!in.isAtEnd()) {
        switch (in.below(8)) {
        case 0:
            changeTarget(in, target, model.target);
            break;
        case 1:
            model.holds = in.flag();
            stream.setHoldOutput(model.holds);
            break;
        case 2:
            model.flush();
            stream.FlushOutputStream();
            break;
        case 3:
        case 4: {
            const std::string data = in.bytes(200);
            const bool expected = model.send(data);
            require(stream.SendOutputStream(fuzz::exactCopy(data).get(), static_cast<unsigned int>(data.size())) ==
                    expected);
            break;
        }
        default:
            if (!fuzz::writeBoth(in, stream, model))
                return;
        }
        require(std::string(stream.pTail(), static_cast<std::size_t>(stream.ReadAvailable())) == model.readable());
        require(target.calls == model.target.calls && stream.transferred() == model.transferred);
    }
}

// A model of the pages, counted byte by byte.
class PagingModel : public VirtualModel {
public:
    PagingModel(std::size_t capacity, int threshold, int pageWidth, int pageHeight, const std::string& keys)
        : VirtualModel(capacity, threshold, false), width(pageWidth), height(pageHeight), m_keys(keys) {}

    int width;
    int height;

    void flush() override {
        if (isTargetUsable()) {
            while (!m_written.empty() && showPage()) {
            }
        }
        m_written.clear();
    }
    bool send(const std::string& data) override {
        m_hasQuit = false;
        std::size_t taken = 0;
        while (taken < data.size() && isTargetUsable()) {
            const std::size_t space = available();
            if (m_hasQuit || space == 0)
                return false;
            const std::string piece = data.substr(taken, space);
            m_written += piece;
            taken += piece.size();
        }
        flush();
        return !m_hasQuit && taken == data.size();
    }
    void setPageSize(int pageWidth, int pageHeight) {
        width = pageWidth;
        height = pageHeight;
        m_column %= width;
        m_line %= height - 1;
    }

private:
    std::size_t nextPage() {
        std::size_t taken = 0;
        while (taken < m_written.size()) {
            const char c = m_written[taken++];
            ++m_column;
            if (c != '\n' && c != 0 && m_column < width)
                continue;
            m_column = 0;
            if (++m_line == height - 1) {
                m_line = 0;
                return taken;
            }
        }
        return taken;
    }
    // Sends the next page and the prompt; returns whether the user wants another page.
    bool showPage() {
        const std::string page = m_written.substr(0, nextPage());
        if (!sendToTarget(page))
            return false;
        transferred += static_cast<int>(page.size());
        m_written.erase(0, page.size());
        if (m_written.empty())
            return false;
        sendToTarget("Press any key to continue (Q to quit)");
        target.calls.push_back("key");
        target.calls.push_back("remove:" + std::to_string(width));
        const char key = m_used < m_keys.size() ? m_keys[m_used++] : ' ';
        m_hasQuit = key == 'q' || key == 'Q';
        return !m_hasQuit;
    }

    const std::string m_keys;
    std::size_t m_used = 0;
    bool m_hasQuit = false;
    int m_column = 0;
    int m_line = 0;
};

void runPaging(Bytes& in) {
    const std::size_t capacity = in.below(250);
    const int threshold = static_cast<int>(in.below(250));
    const int width = static_cast<int>(in.below(20)) + 2;
    const int height = static_cast<int>(in.below(8)) + 2;
    std::string keys = in.bytes(20);
    // Few bytes are the key that quits: map them to keys so that it occurs more often.
    for (char& key : keys)
        key = "q  Q xyz"[key & 7];
    test::RecordingConsole console(keys);
    utility::PagingVirtualPutStream stream(console, width, height, static_cast<int>(capacity), threshold);
    PagingModel model(capacity, threshold, width, height, keys);
    while (!in.isAtEnd()) {
        switch (in.below(6)) {
        case 0:
            changeTarget(in, console.screen(), model.target);
            break;
        case 1:
            model.setPageSize(static_cast<int>(in.below(20)) + 2, static_cast<int>(in.below(8)) + 2);
            stream.setPageSize(model.width, model.height);
            break;
        case 2:
            if (!fuzz::writeBoth(in, stream, model))
                return;
            break;
        default: {
            const std::string data = in.bytes(200);
            const bool expected = model.send(data);
            require(stream.SendOutputStream(fuzz::exactCopy(data).get(), static_cast<unsigned int>(data.size())) ==
                    expected);
        }
        }
        require(console.calls() == model.target.calls && stream.transferred() == model.transferred);
    }
}

// A model of buffered input. Every byte received is either read or held, so each result is known.
class VirtualInput {
public:
    explicit VirtualInput(Bytes& in)
        : m_stream(m_source, static_cast<int>(in.below(64)) + 1, static_cast<int>(in.below(20)),
                   static_cast<int>(in.below(70)), nullptr) {
        m_stream.setWaitForData(in.flag());
        m_receivesLeft = in.byte();
        m_source.afterReceive = [this] {
            m_source.error = m_receivesLeft-- == 0;
        };
        m_steps = in.bytes(120);
        while (!in.isAtEnd()) {
            const std::string piece = in.bytes(17);
            if (piece.empty()) {
                m_source.answer(in.flag() ? 0 : -1);
            } else {
                m_source.give(piece);
                m_data += piece;
            }
        }
    }

    void run() {
        Bytes steps(reinterpret_cast<const std::uint8_t*>(m_steps.data()), m_steps.size());
        require(m_stream.StartInputStream());
        while (!steps.isAtEnd()) {
            switch (steps.below(6)) {
            case 0:
                receive(steps.below(80));
                break;
            case 1:
                readLine();
                break;
            case 2:
                moveTo(steps.byte());
                break;
            case 3:
                m_stream.MoveTo();
                m_origin = position();
                break;
            case 4:
                m_stream.load();
                break;
            default:
                index(steps.byte());
            }
            require(received() <= m_data.size() && held() <= m_stream.Size());
            require(m_data.compare(position(), static_cast<std::size_t>(held()), m_stream.pTail(),
                                   static_cast<std::size_t>(held())) == 0);
        }
    }

private:
    int held() const {
        return m_stream.utility::Buffer::ReadAvailable();
    }
    std::size_t received() const {
        return static_cast<std::size_t>(m_stream.received());
    }
    std::size_t position() const {
        return received() - static_cast<std::size_t>(held());
    }
    bool isHeld(std::size_t offset) const {
        return offset >= position() && offset <= received();
    }

    void receive(std::size_t size) {
        const std::unique_ptr<char[]> bytes(new char[size]);
        const std::size_t before = position();
        const int count = m_stream.ReceiveInputStream(bytes.get(), static_cast<unsigned int>(size));
        require(count >= 0 && static_cast<std::size_t>(count) <= size);
        const std::size_t start = position() - static_cast<std::size_t>(count);
        require(start >= before && m_data.compare(start, static_cast<std::size_t>(count), bytes.get(),
                                                  static_cast<std::size_t>(count)) == 0);
        require(count > 0 || size == 0 || held() == 0);
    }
    void readLine() {
        const char* const line = m_stream.ReadLine();
        if (line == nullptr) {
            require(held() == 0);
            return;
        }
        // The bytes consumed include the newline, which was replaced with a NUL.
        const std::size_t size = static_cast<std::size_t>(m_stream.pTail() - line);
        const std::string expected = m_data.substr(position() - size, size);
        const std::size_t length = std::min(expected.find('\n'), size);
        require(length == size ? held() == 0 : length + 1 == size);
        require(expected.compare(0, length, line, length) == 0 && line[length] == 0);
    }
    void moveTo(unsigned int offset) {
        const std::size_t wanted = m_origin + offset;
        const bool isPossible = isHeld(wanted);
        const unsigned int code = codeOf([&] { m_stream.MoveTo(offset); });
        require(code == (isPossible ? 0 : 1240));
        if (!isPossible)
            return;
        require(position() == wanted);
        m_origin = wanted;
    }
    void index(unsigned int offset) {
        const std::size_t wanted = m_origin + offset;
        char c = '#';
        const unsigned int code = codeOf([&] { c = m_stream[offset]; });
        require(code == (isHeld(wanted) ? 0 : 1240));
        if (code == 0)
            require(c == (wanted == received() ? '\0' : m_data[wanted]));
    }

    test::ScriptedInput m_source;
    utility::VirtualGetStream m_stream;
    std::string m_steps;
    std::string m_data;
    std::size_t m_origin = 0;
    unsigned int m_receivesLeft = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::SilentLog silence;
    Bytes in(data, size);
    switch (in.below(3)) {
    case 0:
        runPut(in);
        break;
    case 1:
        runPaging(in);
        break;
    default:
        VirtualInput(in).run();
    }
    return 0;
}
