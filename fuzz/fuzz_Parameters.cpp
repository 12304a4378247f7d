// Compares the parameter readers and writers with a simple reference. The readers use a plain stream, or one with a
// source that returns short pieces and errors. The first byte chooses which.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "../tests/support/ScriptedInput.h"
#include "Bytes.h"
#include "PutModel.h"
#include "ut_BufferStream.h"
#include "ut_IntArray.h"
#include "ut_ShortArray.h"
#include "ut_StringArray.h"
#include "ut_UIntArray.h"
#include "ut_UShortArray.h"
#include "ut_VirtualGetStream.h"

namespace {

using fuzz::Bytes;
using fuzz::codeOf;
using fuzz::require;

// Longer arrays take so much time that too few inputs would be tried.
constexpr unsigned int mostElements = 2000;
constexpr int longestBlock = 40;

template<typename Value>
std::string bytesOf(Value value) {
    return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

// Reads parameters and compares each with the bytes that were put in.
class Reading {
public:
    // `received` returns how many bytes of `data` have reached the stream.
    template<typename Received>
    Reading(utility::GetStream& stream, const std::string& data, Received received)
        : m_stream(stream), m_data(data), m_received(received) {}

    // Returns false after a failure, which leaves the position undefined.
    bool read(Bytes& in) {
        switch (in.below(9)) {
        case 0:
            return scalar<unsigned short>(&utility::GetStream::GetParmUint16);
        case 1:
            return scalar<short>(&utility::GetStream::GetParmSint16);
        case 2:
            return scalar<unsigned int>(&utility::GetStream::GetParmUint32);
        case 3:
            return scalar<int>(&utility::GetStream::GetParmSint32);
        case 4:
            return text();
        case 5:
            return block(static_cast<int>(in.below(longestBlock + 1)));
        case 6:
            return array<unsigned short, utility::UShortArray>(&utility::GetStream::GetParmUint16Array);
        case 7:
            return array<int, utility::IntArray>(&utility::GetStream::GetParmSint32Array);
        default:
            return texts();
        }
    }

private:
    // Returns the number of bytes readable without a refill.
    int held() const {
        return m_stream.utility::Buffer::ReadAvailable();
    }
    std::size_t position() const {
        return m_received() - static_cast<std::size_t>(held());
    }

    template<typename Value>
    bool scalar(bool (utility::GetStream::*get)(Value*)) {
        const std::size_t before = position();
        Value value = 77;
        const bool isRead = (m_stream.*get)(&value);
        require(position() == before + (isRead ? sizeof value : 0));
        require(isRead ? m_data.compare(before, sizeof value, bytesOf(value)) == 0 : value == 77);
        require(isRead || held() < static_cast<int>(sizeof value));
        return true;
    }

    bool text() {
        const std::size_t before = position();
        const char* const text = m_stream.GetParmString();
        if (text == nullptr) {
            require(position() == before && held() == 0);
            return true;
        }
        const std::string seen = text;
        const std::size_t consumed = position() - before;
        require(m_data.compare(before, seen.size(), seen) == 0);
        // A text without a NUL ends at the last byte held.
        const bool isWhole = consumed == seen.size() + 1 && m_data[before + seen.size()] == 0;
        require(isWhole || (consumed == seen.size() && held() == 0));
        return true;
    }

    bool block(int most) {
        const std::size_t before = position();
        char bytes[longestBlock + 1];
        bytes[most] = '#';
        int length = 0;
        if (codeOf([&] { length = m_stream.GetParmBuf(bytes, most); }) != 0)
            return false;
        require(bytes[most] == '#');
        if (position() < before + sizeof length) {
            // A missing length, or a negative one, which moves the position back as far as the storage allows.
            require(length <= 0);
            return true;
        }
        require(m_data.compare(before, sizeof length, bytesOf(length)) == 0);
        const std::size_t start = before + sizeof length;
        const std::size_t copied = std::min(m_received() - start, static_cast<std::size_t>(std::min(length, most)));
        require(length < 0 || m_data.compare(start, copied, bytes, copied) == 0);
        require(length < 0 || position() == std::min(start + static_cast<std::size_t>(length), m_received()));
        return true;
    }

    // Reads the count of the next array. Returns false if it is missing or too large for a quick run.
    bool peekCount(unsigned int* count) {
        if (m_stream.ReadAvailable() < static_cast<int>(sizeof *count))
            return false;
        std::memcpy(count, m_stream.pTail(), sizeof *count);
        return *count <= mostElements;
    }

    template<typename Value>
    static std::vector<Value> withoutRepeats(std::vector<Value> values) {
        values.erase(std::unique(values.begin(), values.end()), values.end());
        return values;
    }

    template<typename Value, typename ArrayType>
    bool array(bool (utility::GetStream::*get)(ArrayType&)) {
        unsigned int count = 0;
        if (!peekCount(&count))
            return false;
        const std::size_t start = position() + sizeof count;
        ArrayType values(0);
        values.Append(static_cast<Value>(5));
        require((m_stream.*get)(values) && values.length() == count + 1 && values[0] == 5);
        const std::size_t found = (position() - start) / sizeof(Value);
        require(position() == start + found * sizeof(Value) && found <= count);
        // An element that is missing or not yet received repeats the previous one; the first is 0.
        std::vector<Value> expected = {0};
        for (std::size_t at = start; at < position(); at += sizeof(Value)) {
            Value value = 0;
            std::memcpy(&value, &m_data[at], sizeof value);
            expected.push_back(value);
        }
        std::vector<Value> seen = {0};
        for (unsigned int i = 1; i < values.length(); ++i)
            seen.push_back(values[i]);
        require(withoutRepeats(seen) == withoutRepeats(expected));
        return true;
    }

    bool texts() {
        unsigned int count = 0;
        if (!peekCount(&count))
            return false;
        const std::size_t start = position() + sizeof count;
        utility::StringArray values(0);
        require(m_stream.GetParmStringArray(values) && values.length() == count);
        std::size_t at = start;
        for (unsigned int i = 0; i < count; ++i) {
            const std::string text = values[i] != nullptr ? values[i] : "";
            require(m_data.compare(at, text.size(), text) == 0);
            at += text.size();
            at += values[i] != nullptr && at < position() && m_data[at] == 0 ? 1 : 0;
        }
        require(at == position());
        return true;
    }

    utility::GetStream& m_stream;
    const std::string m_data;
    const std::function<std::size_t()> m_received;
};

void readPlain(Bytes& in) {
    const std::string steps = in.bytes(64);
    const bool isQuiet = in.flag();
    const std::string data = in.rest();
    std::vector<char> storage(data.size() + 1);
    utility::BufferStream stream(storage.data(), static_cast<int>(storage.size()), isQuiet);
    stream.PutB(data.data(), static_cast<int>(data.size()));
    Reading reading(stream, data, [&] { return data.size(); });
    Bytes choices(reinterpret_cast<const std::uint8_t*>(steps.data()), steps.size());
    while (!choices.isAtEnd() && reading.read(choices)) {
    }
}

// Fills `source` with pieces, empty results and errors. Returns the bytes of all pieces.
std::string script(Bytes& in, test::ScriptedInput* source) {
    std::string all;
    while (!in.isAtEnd()) {
        const std::string piece = in.bytes(17);
        if (piece.empty()) {
            source->answer(in.flag() ? 0 : -1);
        } else {
            source->give(piece);
            all += piece;
        }
    }
    return all;
}

void readVirtual(Bytes& in) {
    const std::string steps = in.bytes(64);
    const int size = static_cast<int>(in.below(64)) + 1;
    const int keepBehind = static_cast<int>(in.below(20));
    const int lowWater = static_cast<int>(in.below(70));
    const bool waits = in.flag();
    const bool isQuiet = in.flag();
    unsigned int receivesLeft = in.byte();
    test::ScriptedInput source;
    source.afterReceive = [&] {
        source.error = receivesLeft-- == 0;
    };
    const std::string data = script(in, &source);
    utility::VirtualGetStream stream(source, size, keepBehind, lowWater, nullptr);
    stream.setWaitForData(waits);
    stream.setNoThrow(isQuiet);
    stream.StartInputStream();
    Reading reading(stream, data, [&] { return static_cast<std::size_t>(stream.received()); });
    Bytes choices(reinterpret_cast<const std::uint8_t*>(steps.data()), steps.size());
    while (!choices.isAtEnd() && reading.read(choices)) {
    }
}

template<typename Value, typename ArrayType>
bool writeArray(Bytes& in, utility::PutStream& stream, fuzz::PutModel& model,
                void (utility::PutStream::*put)(ArrayType&)) {
    ArrayType values(0);
    const unsigned int count = in.below(12);
    for (unsigned int i = 0; i < count; ++i)
        values.Append(in.number<Value>());
    const std::size_t room = model.available();
    unsigned int expected = fuzz::failureNone;
    if (room < 4 + count * sizeof(Value))
        expected = model.overflow();
    if (expected == fuzz::failureNone && room >= 4) {
        // If nothing is thrown, the count written is the full one, even if elements do not fit.
        model.putWhole(bytesOf(count));
        for (unsigned int i = 0; i < count; ++i)
            model.putWhole(bytesOf(static_cast<Value>(values[i])));
    }
    const unsigned int code = codeOf([&] { (stream.*put)(values); });
    require(code == expected);
    return code == fuzz::failureNone;
}

unsigned int putBlock(fuzz::PutModel& model, const std::string& block) {
    const std::size_t room = model.available();
    if (room < 4 || (room < 4 + block.size() && !model.isNoThrow()))
        return model.overflow();
    const std::string fitting = block.substr(0, room - 4);
    model.putWhole(bytesOf(static_cast<unsigned int>(fitting.size())));
    return model.putWhole(fitting);
}

bool writeParameter(Bytes& in, utility::PutStream& stream, fuzz::PutModel& model) {
    unsigned int expected = fuzz::failureNone;
    unsigned int code = fuzz::failureNone;
    switch (in.below(6)) {
    case 0: {
        const std::uint16_t value = in.number<std::uint16_t>();
        expected = model.putWhole(bytesOf(value));
        code = codeOf([&] { stream.PutParmUint16(value); });
        break;
    }
    case 1: {
        const std::int32_t value = in.number<std::int32_t>();
        expected = model.putWhole(bytesOf(value));
        code = codeOf([&] { stream.PutParmSint32(value); });
        break;
    }
    case 2: {
        const std::string text = in.text(40);
        expected = model.putS(text);
        if (expected == fuzz::failureNone)
            expected = model.putC(0);
        code = codeOf([&] { stream.PutParmString(text.c_str()); });
        break;
    }
    case 3: {
        std::string block = in.bytes(40);
        expected = putBlock(model, block);
        code = codeOf([&] { stream.PutParmBuf(&block[0], static_cast<int>(block.size())); });
        break;
    }
    case 4:
        return writeArray<std::int16_t>(in, stream, model, &utility::PutStream::PutParmSint16Array);
    default:
        return writeArray<std::uint32_t>(in, stream, model, &utility::PutStream::PutParmUint32Array);
    }
    require(code == expected);
    return code == fuzz::failureNone;
}

void write(Bytes& in) {
    const int capacity = static_cast<int>(in.below(120));
    const bool isQuiet = in.flag();
    std::vector<char> storage(static_cast<std::size_t>(capacity) + 1);
    utility::BufferStream stream(storage.data(), capacity + 1, isQuiet);
    fuzz::PutModel model(static_cast<std::size_t>(capacity), isQuiet);
    while (!in.isAtEnd() && writeParameter(in, stream, model))
        require(std::string(stream.pTail(), static_cast<std::size_t>(stream.ReadAvailable())) == model.readable());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::SilentLog silence;
    Bytes in(data, size);
    switch (in.below(3)) {
    case 0:
        readPlain(in);
        break;
    case 1:
        readVirtual(in);
        break;
    default:
        write(in);
    }
    return 0;
}
