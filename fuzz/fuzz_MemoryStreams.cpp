// Compares sequences of operations on `BufferStream`, `DynamicStream` and `CircularStream` with simple models. The
// first byte chooses the class.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Bytes.h"
#include "PutModel.h"
#include "ut_BufferStream.h"
#include "ut_CircularStream.h"
#include "ut_DynamicStream.h"

namespace {

using fuzz::Bytes;
using fuzz::codeOf;
using fuzz::require;

// Receives `size` bytes; returns them, or "-" and the count if that is negative.
std::string received(framework::InputStream& stream, std::size_t size) {
    const std::unique_ptr<char[]> bytes(new char[size]);
    const int count = stream.ReceiveInputStream(bytes.get(), static_cast<unsigned int>(size));
    return count < 0 ? std::to_string(count) : std::string(bytes.get(), static_cast<std::size_t>(count));
}

// Reads from the stream and its model as `in` chooses.
void readBoth(Bytes& in, utility::BufferStream& stream, fuzz::PutModel& model) {
    const std::string all = model.readable();
    const std::size_t newline = all.find('\n');
    switch (in.below(4)) {
    case 0: {
        char c = '#';
        require(stream.GetC(&c) == !all.empty() && c == (all.empty() ? '#' : all[0]));
        model.consume(all.empty() ? 0 : 1);
        break;
    }
    case 1: {
        const char* const line = stream.GetLine();
        require((line != nullptr) == (newline != std::string::npos));
        if (line == nullptr)
            break;
        require(all.compare(0, newline, line, newline) == 0 && line[newline] == 0);
        model.consume(newline + 1);
        break;
    }
    case 2: {
        const char* const line = stream.ReadLine();
        const std::size_t length = std::min(newline, all.size());
        require((line != nullptr) == !all.empty());
        require(line == nullptr || (all.compare(0, length, line, length) == 0 && line[length] == 0));
        model.consume(std::min(length + 1, all.size()));
        break;
    }
    default: {
        const std::size_t size = in.byte();
        require(received(stream, size) == all.substr(0, size));
        model.consume(std::min(size, all.size()));
    }
    }
}

void checkIndex(utility::BufferStream& stream, const fuzz::PutModel& model, unsigned int index) {
    const std::string all = model.readable();
    const unsigned int first = static_cast<unsigned int>(stream.ReadPosition());
    char c = '#';
    const unsigned int code = codeOf([&] { c = stream[index]; });
    const bool isHeld = index >= first && index - first <= all.size();
    require(code == (isHeld ? 0 : 1240));
    require(!isHeld || index - first == all.size() || c == all[index - first]);
}

void runBuffer(Bytes& in) {
    const std::size_t capacity = in.byte();
    const bool isQuiet = in.flag();
    std::vector<char> storage(capacity + 1);
    utility::BufferStream stream(storage.data(), static_cast<int>(storage.size()), isQuiet);
    fuzz::PutModel model(capacity, isQuiet);
    while (!in.isAtEnd()) {
        switch (in.below(8)) {
        case 0:
            model.rewind();
            stream.Rewind();
            break;
        case 1:
            model.consolidate();
            stream.Consolidate();
            break;
        case 2:
            checkIndex(stream, model, in.byte());
            break;
        case 3:
        case 4:
            readBoth(in, stream, model);
            break;
        default:
            if (!fuzz::writeBoth(in, stream, model))
                return;
        }
        require(std::string(stream.pTail(), static_cast<std::size_t>(stream.ReadAvailable())) == model.readable());
        require(stream.WriteRemaining() == static_cast<int>(model.available()));
    }
}

// Makes up to 4,369 bytes, distinct by position, from two bytes of input.
std::string longPiece(Bytes& in) {
    const std::string unit = {static_cast<char>(in.byte()), 'x', '\0'};
    std::string piece;
    for (unsigned int left = in.below(18) * 257U; left > 0; --left)
        piece += unit[left % 3];
    return piece;
}

struct DynamicModel {
    std::size_t most;
    std::string stored; // includes bytes past `out`, which are overwritten
    std::size_t out = 0;
    std::size_t in = 0;

    bool send(const std::string& piece) {
        const std::size_t count = std::min(piece.size(), most - out);
        const bool wasFull = out >= most;
        stored.resize(std::max(stored.size(), out + count));
        stored.replace(out, count, piece, 0, count);
        out += count;
        return !wasFull && count == piece.size();
    }
    std::string receive(std::size_t size) {
        if (in >= out)
            return "-1";
        const std::string piece = stored.substr(in, std::min(size, out - in));
        in += piece.size();
        return piece;
    }
    std::size_t memory() const {
        const std::size_t pageSize = 4096;
        return (most / pageSize + 1) * 4 + (stored.size() + pageSize - 1) / pageSize * pageSize + 32;
    }
};

void runDynamic(Bytes& in) {
    DynamicModel model = {in.below(200) * 67U, ""};
    utility::DynamicStream stream(static_cast<int>(model.most));
    while (!in.isAtEnd()) {
        switch (in.below(8)) {
        case 0:
            stream.reset();
            model = {model.most, ""};
            break;
        case 1:
            require(stream.StartOutputStream());
            model.out = 0;
            break;
        case 2:
            require(stream.StartInputStream());
            model.in = 0;
            break;
        case 3:
            stream.EndInputStream();
            model.in = model.out;
            break;
        case 4:
        case 5: {
            const std::size_t size = in.below(40) * 131U;
            require(received(stream, size) == model.receive(size));
            break;
        }
        default: {
            const std::string piece = longPiece(in);
            require(stream.SendOutputStream(fuzz::exactCopy(piece).get(), static_cast<unsigned int>(piece.size())) ==
                    model.send(piece));
        }
        }
        require(stream.isInputStreamAtEnd() == (model.in >= model.out));
        require(stream.GetInputStreamSize() == static_cast<int>(model.out));
        require(stream.getSize() == model.memory());
    }
}

// A model of a ring: its storage, the position of the next byte, and the number of unread bytes before it.
struct CircularModel {
    std::string storage;
    std::size_t next = 0;
    std::size_t unread = 0;
    bool wrapped = false;

    void send(const std::string& piece) {
        for (const char c : piece) {
            if (storage.empty())
                return;
            storage[next] = c;
            next = (next + 1) % storage.size();
            wrapped = wrapped || next == 0;
            unread = std::min(unread + 1, storage.size() - 1);
        }
    }
    void startInput() {
        // Once wrapped, the byte after the next one is the oldest.
        if (!storage.empty())
            unread = wrapped ? storage.size() - 1 : next;
    }
    std::string receive(std::size_t size) {
        std::string piece;
        for (size = std::min(size, unread); size > 0; --size, --unread)
            piece += storage[(next + storage.size() - unread) % storage.size()];
        return piece;
    }
};

void runCircular(Bytes& in) {
    CircularModel model;
    model.storage.resize(in.below(70));
    utility::CircularStream stream(static_cast<int>(model.storage.size()));
    while (!in.isAtEnd()) {
        switch (in.below(8)) {
        case 0:
            require(stream.StartOutputStream());
            model.next = 0;
            model.unread = 0;
            if (!model.storage.empty())
                model.storage[0] = 0;
            break;
        case 1:
            require(stream.StartInputStream());
            model.startInput();
            break;
        case 2: {
            const int skipped = in.number<std::int8_t>();
            stream.ReadAdvance(skipped);
            model.receive(static_cast<std::size_t>(std::max(skipped, 0)));
            break;
        }
        case 3:
        case 4: {
            const std::size_t size = in.below(100);
            require(received(stream, size) == model.receive(size));
            break;
        }
        default: {
            const std::string piece = in.bytes(150);
            require(stream.SendOutputStream(fuzz::exactCopy(piece).get(), static_cast<unsigned int>(piece.size())));
            model.send(piece);
        }
        }
        require(stream.ReadAvailable() == static_cast<int>(model.unread));
        require(stream.isInputStreamAtEnd() == (model.unread == 0));
        require(stream.WriteRemaining() == static_cast<int>(model.storage.size()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::SilentLog silence;
    Bytes in(data, size);
    switch (in.below(3)) {
    case 0:
        runBuffer(in);
        break;
    case 1:
        runDynamic(in);
        break;
    default:
        runCircular(in);
    }
    return 0;
}
