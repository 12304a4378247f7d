// The parameter encoding beside protobuf's coded streams and msgpack: a small message, and arrays of 32-bit values.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/io/zero_copy_stream_impl_lite.h>
#include <msgpack.hpp>

#include "bench.h"
#include "ut_BufferStream.h"
#include "ut_UIntArray.h"

namespace bench {
namespace {

using google::protobuf::io::ArrayOutputStream;
using google::protobuf::io::CodedInputStream;
using google::protobuf::io::CodedOutputStream;

constexpr std::size_t capacity = 4096;
constexpr char shortText[] = "hello";
constexpr char longText[] = "world of parameters";
constexpr int blockSize = 64;

// What a reader gets. Each library returns texts in the form that costs it least.
struct Message {
    std::uint16_t port;
    std::int16_t delta;
    std::uint32_t size;
    std::int32_t offset;
    std::string shortText;
    std::string longText;
    char block[blockSize];

    bool operator==(const Message& other) const {
        return port == other.port && delta == other.delta && size == other.size && offset == other.offset &&
               shortText == other.shortText && longText == other.longText &&
               std::memcmp(block, other.block, sizeof block) == 0;
    }
};

class Ours {
public:
    explicit Ours(const Message& message) : m_message(message), m_stream(capacity) {}

    void write() {
        m_stream.Rewind();
        m_stream.PutParmUint16(m_message.port);
        m_stream.PutParmSint16(m_message.delta);
        m_stream.PutParmUint32(m_message.size);
        m_stream.PutParmSint32(m_message.offset);
        m_stream.PutParmString(m_message.shortText.c_str());
        m_stream.PutParmString(m_message.longText.c_str());
        m_stream.PutParmBuf(m_message.block, blockSize);
    }

    void read() {
        m_stream.StartInputStream();
        m_stream.GetParmUint16(&m_read.port);
        m_stream.GetParmSint16(&m_read.delta);
        m_stream.GetParmUint32(&m_read.size);
        m_stream.GetParmSint32(&m_read.offset);
        m_shortText = m_stream.GetParmString();
        m_longText = m_stream.GetParmString();
        m_stream.GetParmBuf(m_read.block, blockSize);
        keep(*this);
    }

    Message result() {
        m_read.shortText = m_shortText;
        m_read.longText = m_longText;
        return m_read;
    }

private:
    Message m_message;
    Message m_read{};
    utility::BufferStream m_stream;
    const char* m_shortText = nullptr;
    const char* m_longText = nullptr;
};

class Protobuf {
public:
    explicit Protobuf(const Message& message) : m_message(message) {}

    void write() {
        ArrayOutputStream array(m_bytes, sizeof m_bytes);
        CodedOutputStream out(&array);
        out.WriteVarint32(m_message.port);
        out.WriteVarint32(zigzag(m_message.delta));
        out.WriteLittleEndian32(m_message.size);
        out.WriteLittleEndian32(static_cast<std::uint32_t>(m_message.offset));
        writeText(out, m_message.shortText);
        writeText(out, m_message.longText);
        out.WriteVarint32(blockSize);
        out.WriteRaw(m_message.block, blockSize);
        out.Trim();
        m_size = out.ByteCount();
        keep(*this);
    }

    void read() {
        CodedInputStream in(m_bytes, m_size);
        std::uint32_t number = 0;
        in.ReadVarint32(&number);
        m_read.port = static_cast<std::uint16_t>(number);
        in.ReadVarint32(&number);
        m_read.delta = static_cast<std::int16_t>((number >> 1) ^ (0 - (number & 1)));
        in.ReadLittleEndian32(&m_read.size);
        in.ReadLittleEndian32(&number);
        m_read.offset = static_cast<std::int32_t>(number);
        // The strings keep their memory from one message to the next.
        in.ReadVarint32(&number);
        in.ReadString(&m_read.shortText, static_cast<int>(number));
        in.ReadVarint32(&number);
        in.ReadString(&m_read.longText, static_cast<int>(number));
        in.ReadVarint32(&number);
        in.ReadRaw(m_read.block, static_cast<int>(number));
        keep(*this);
    }

    Message result() {
        return m_read;
    }

private:
    static std::uint32_t zigzag(std::int32_t value) {
        return (static_cast<std::uint32_t>(value) << 1) ^ static_cast<std::uint32_t>(value >> 31);
    }
    static void writeText(CodedOutputStream& out, const std::string& text) {
        // The length is counted, as the other libraries count it.
        const std::size_t length = std::strlen(hide(text.c_str()));
        out.WriteVarint32(static_cast<std::uint32_t>(length));
        out.WriteRaw(text.c_str(), static_cast<int>(length));
    }

    Message m_message;
    Message m_read{};
    std::uint8_t m_bytes[capacity];
    int m_size = 0;
};

bool refer(msgpack::type::object_type, std::size_t, void*) {
    return true;
}

class Msgpack {
public:
    explicit Msgpack(const Message& message) : m_message(message), m_buffer(capacity) {}

    void write() {
        m_buffer.clear();
        msgpack::packer<msgpack::sbuffer> out(m_buffer);
        out.pack(m_message.port);
        out.pack(m_message.delta);
        out.pack(m_message.size);
        out.pack(m_message.offset);
        out.pack(hide(m_message.shortText.c_str()));
        out.pack(hide(m_message.longText.c_str()));
        out.pack_bin(blockSize);
        out.pack_bin_body(m_message.block, blockSize);
        keep(*this);
    }

    void read() {
        msgpack::zone zone;
        std::size_t offset = 0;
        m_read.port = next(zone, offset).as<std::uint16_t>();
        m_read.delta = next(zone, offset).as<std::int16_t>();
        m_read.size = next(zone, offset).as<std::uint32_t>();
        m_read.offset = next(zone, offset).as<std::int32_t>();
        m_shortText = next(zone, offset).via.str;
        m_longText = next(zone, offset).via.str;
        const msgpack::object_bin block = next(zone, offset).via.bin;
        std::memcpy(m_read.block, block.ptr, block.size);
        keep(*this);
    }

    Message result() {
        m_read.shortText.assign(m_shortText.ptr, m_shortText.size);
        m_read.longText.assign(m_longText.ptr, m_longText.size);
        return m_read;
    }

private:
    // Texts and blocks stay in the buffer.
    msgpack::object next(msgpack::zone& zone, std::size_t& offset) {
        return msgpack::unpack(zone, m_buffer.data(), m_buffer.size(), offset, refer);
    }

    Message m_message;
    Message m_read{};
    msgpack::sbuffer m_buffer;
    msgpack::object_str m_shortText{};
    msgpack::object_str m_longText{};
};

template<typename Peer>
void message(Bench& bench, const char* peerName, double writeLimit, double readLimit) {
    Message message{4, -2, 70000, -70000, shortText, longText, {}};
    std::memset(message.block, 7, sizeof message.block);
    Ours ours(message);
    Peer peer(message);
    ours.write();
    peer.write();
    ours.read();
    peer.read();
    const bool same = ours.result() == message && peer.result() == message;
    bench.row(
        {"parameter list, write", peerName, writeLimit}, same, [&](long) { ours.write(); },
        [&](long) { peer.write(); });
    bench.row(
        {"parameter list, read", peerName, readLimit}, same, [&](long) { ours.read(); }, [&](long) { peer.read(); });
}

// `count` 32-bit values in an array, and written.
class Values {
    // Some processors copy slowly to an address that is, within a page, a few bytes after the source.
    static constexpr std::size_t countAt = 508;

public:
    explicit Values(unsigned int count)
        : array(count + 24),
          vector(count),
          stream(static_cast<int>(count * 4 + 64)),
          bytes(count * 4 + 1024),
          packed(count * 5 + 64),
          read(count + 24),
          copied(count) {
        for (unsigned int index = 0; index < count; ++index) {
            array.Append(index * 77777);
            vector[index] = index * 77777;
        }
        write();
        copyOut();
        pack();
    }

    void write() {
        stream.Rewind();
        stream.PutParmUint32Array(array);
    }
    void copyOut() {
        const auto count = static_cast<std::uint32_t>(vector.size());
        std::memcpy(bytes.data() + countAt, &count, sizeof count);
        std::memcpy(bytes.data() + countAt + sizeof count, vector.data(), vector.size() * sizeof vector[0]);
        keep(bytes);
    }
    void pack() {
        packed.clear();
        msgpack::packer<msgpack::sbuffer> out(packed);
        out.pack(vector);
        keep(packed);
    }

    void readGiven() {
        stream.StartInputStream();
        read.truncate(0);
        stream.GetParmUint32Array(read);
    }
    void readEmpty() {
        stream.StartInputStream();
        utility::UIntArray empty(0);
        stream.GetParmUint32Array(empty);
        keep(empty);
    }
    void copyIn() {
        std::uint32_t count = 0;
        std::memcpy(&count, bytes.data() + countAt, sizeof count);
        std::memcpy(copied.data(), bytes.data() + countAt + sizeof count, count * sizeof copied[0]);
        keep(copied);
    }
    void unpackGiven() {
        const msgpack::object_handle handle = msgpack::unpack(packed.data(), packed.size());
        handle.get().convert(copied);
        keep(copied);
    }
    void unpackEmpty() {
        const msgpack::object_handle handle = msgpack::unpack(packed.data(), packed.size());
        std::vector<std::uint32_t> empty;
        handle.get().convert(empty);
        keep(empty);
    }

    bool isRead() {
        bool equal = read.length() == vector.size() && copied == vector;
        for (unsigned int index = 0; equal && index < read.length(); ++index)
            equal = read[index] == vector[index];
        return equal;
    }
    bool isWrittenAsCopied() {
        return std::memcmp(stream.pBuffer(), bytes.data() + countAt, vector.size() * 4 + 4) == 0;
    }

    utility::UIntArray array;
    std::vector<std::uint32_t> vector;
    utility::BufferStream stream;
    std::vector<char> bytes;
    msgpack::sbuffer packed;
    utility::UIntArray read;
    std::vector<std::uint32_t> copied;
};

void arrays(Bench& bench) {
    Values values(10000);
    const auto write = [&](long) {
        values.write();
    };
    const auto given = [&](long) {
        values.readGiven();
    };
    const auto empty = [&](long) {
        values.readEmpty();
    };
    const auto copyIn = [&](long) {
        values.copyIn();
    };
    bench.row({"10,000 values, write", "memcpy", 1.2}, values.isWrittenAsCopied(), write,
              [&](long) { values.copyOut(); });
    values.readGiven();
    values.copyIn();
    bool same = values.isRead();
    bench.row({"10,000 values, read, capacity given", "memcpy", 1.5}, same, given, copyIn);
    bench.row({"10,000 values, read into an empty array", "memcpy", 3}, same, empty, copyIn);
    values.readGiven();
    values.copied.assign(values.copied.size(), 0);
    values.unpackGiven();
    same = values.isRead();
    bench.row({"10,000 values, write", "msgpack", 0.1}, same, write, [&](long) { values.pack(); });
    bench.row({"10,000 values, read, capacity given", "msgpack", 0.15}, same, given,
              [&](long) { values.unpackGiven(); });
    bench.row({"10,000 values, read into an empty array", "msgpack", 0.3}, same, empty,
              [&](long) { values.unpackEmpty(); });
    for (const unsigned int size : {100U, 1000U, 10000U, 100000U}) {
        Values some(size);
        bench.point(
            "32-bit values, write, each", "memcpy", size, [&](long) { some.write(); }, [&](long) { some.copyOut(); },
            size);
        bench.point(
            "32-bit values, read into an empty array, each", "memcpy", size, [&](long) { some.readEmpty(); },
            [&](long) { some.copyIn(); }, size);
    }
}

} // namespace

void benchParameters(Bench& bench) {
    message<Protobuf>(bench, "protobuf coded streams", 1.0, 1.0);
    message<Msgpack>(bench, "msgpack", 1.0, 0.3);
    arrays(bench);
}

} // namespace bench
