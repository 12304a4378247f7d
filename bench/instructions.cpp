// The twenty hottest operations, each repeated in `measured_loop`, where scripts/lib/instructions.py counts
// instructions.
//
//   instructions [COUNT]    repeats each operation COUNT times and prints its name and COUNT

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <utility>
#include <vector>

#include "VXut.h"

namespace {

constexpr long repetitions = 1000;
constexpr long warmUp = 64;

typedef std::function<void()> Operation;

} // namespace

extern "C" [[gnu::noipa]] void measured_loop(const Operation& operation, long count);

void measured_loop(const Operation& operation, long count) {
    for (long number = 0; number < count; ++number)
        operation();
}

namespace {

// The operations with the objects that they use.
class Operations {
public:
    Operations() : m_stream(4096), m_parameters(4096), m_values(1000), m_encoded(8192), m_read(1000), m_numbers(1024) {
        writeParameters();
        for (unsigned int index = 0; index < 1000; ++index) {
            m_values.Append(index * 77777);
            m_numbers.Append(static_cast<int>(index));
        }
        m_encoded.PutParmUint32Array(m_values);
        for (int number = 0; number < 1000; ++number) {
            char name[32];
            std::snprintf(name, sizeof name, "port%05d", number * 7919 % 1000);
            m_names.Add(name);
            m_ports.Add(name, this);
            m_volumes.Add(&m_places[number], this);
        }
        for (int number = 0; number < 16; ++number)
            m_queue.enQueue(new utility::BufferStreamElement(16, nullptr));
    }

    std::vector<std::pair<const char*, Operation>> all() {
        return {
            {"PutC",
             [this] {
                 rewound().PutC('a');
             }},
            {"PutB-16",
             [this] {
                 rewound().PutB("0123456789abcdef", 16);
             }},
            {"PutS-16",
             [this] {
                 rewound().PutS("0123456789abcdef");
             }},
            {"PutF",
             [this] {
                 rewound().PutF("%s=%d:%02x", "name", 1234, 56U);
             }},
            {"parameters-write",
             [this] {
                 writeParameters();
             }},
            {"parameters-read",
             [this] {
                 readParameters();
             }},
            {"array-write-1000",
             [this] {
                 m_encoded.Rewind();
                 m_encoded.PutParmUint32Array(m_values);
             }},
            {"array-read-1000",
             [this] {
                 m_encoded.StartInputStream();
                 m_read.truncate(0);
                 m_encoded.GetParmUint32Array(m_read);
             }},
            {"IntArray-Append",
             [this] {
                 m_numbers.truncate(999);
                 m_numbers.Append(7);
             }},
            {"IntArray-index",
             [this] {
                 m_sum += m_numbers[500];
             }},
            {"FastSortedStringDirectory-Find",
             [this] {
                 m_sum += m_names.Find("port00123");
             }},
            {"StringMap-Lookup",
             [this] {
                 m_sum += m_ports.Lookup("port00500") == this ? 1 : 0;
             }},
            {"Map-Lookup",
             [this] {
                 m_sum += m_volumes.Lookup(&m_places[500]) == this ? 1 : 0;
             }},
            {"BufferStreamQueue-rotate",
             [this] {
                 m_queue.enQueue(m_queue.deQueue());
             }},
            {"VirtualPutStream-PutS",
             [this] {
                 m_out.PutS("controller A, port 3: link up\n");
             }},
            {"ReadLine",
             [this] {
                 char line[] = "controller A, port 3: link up\n";
                 m_stream.Rewind();
                 m_stream.PutB(line, sizeof line - 1);
                 m_sum += m_stream.ReadLine() != nullptr ? 1 : 0;
             }},
            {"DateTime-ToISOBuf",
             [this] {
                 utility::DateTime(1709629623L).ToISOBuf(m_text, sizeof m_text);
             }},
            {"IPV4Address-toBuffer",
             [this] {
                 m_address.toBuffer(m_text, sizeof m_text);
             }},
            {"WWN-toPutStream",
             [this] {
                 m_wwn.toPutStream(rewound());
             }},
            {"isStringPrintableUtf8-60",
             [this] {
                 const char* const text = "Contr\xC3\xB4leur A, port 3 \xE2\x80\x93 vitesse 16 Gbit/s, "
                                          "\xC3\xA9tat v\xC3\xA9rifi\xC3\xA9";
                 m_sum += utility::Misc::isStringPrintableUtf8(text, 64, "", "\t\n\r") ? 1 : 0;
             }},
        };
    }

private:
    utility::BufferStream& rewound() {
        m_stream.Rewind();
        return m_stream;
    }
    void writeParameters() {
        m_parameters.Rewind();
        m_parameters.PutParmUint16(1);
        m_parameters.PutParmSint16(-2);
        m_parameters.PutParmUint32(3);
        m_parameters.PutParmSint32(-4);
        m_parameters.PutParmString("hello");
        m_parameters.PutParmString("world of parameters");
        m_parameters.PutParmBuf(m_text, sizeof m_text);
    }
    void readParameters() {
        unsigned short word = 0;
        short signedWord = 0;
        unsigned int number = 0;
        int signedNumber = 0;
        m_parameters.StartInputStream();
        m_parameters.GetParmUint16(&word);
        m_parameters.GetParmSint16(&signedWord);
        m_parameters.GetParmUint32(&number);
        m_parameters.GetParmSint32(&signedNumber);
        m_sum += m_parameters.GetParmString() != nullptr ? 1 : 0;
        m_sum += m_parameters.GetParmString() != nullptr ? 1 : 0;
        m_sum += m_parameters.GetParmBuf(m_text, sizeof m_text) + word + signedWord + signedNumber;
    }

    char m_text[64] = {};
    volatile long m_sum = 0;
    char m_places[1000] = {};
    utility::BufferStream m_stream;
    utility::BufferStream m_parameters;
    utility::UIntArray m_values;
    utility::BufferStream m_encoded;
    utility::UIntArray m_read;
    utility::IntArray m_numbers;
    utility::FastSortedStringDirectory m_names{0};
    utility::StringMap m_ports{1024};
    utility::Map m_volumes{1024};
    utility::BufferStreamQueue m_queue;
    utility::FileOutputStream m_target{"/dev/null", false, 0600};
    utility::VirtualPutStream m_out{m_target, 4096, 4000};
    utility::IPV4Address m_address{"192.168.100.200"};
    utility::WWN m_wwn{"500a09818d5f1234"};
};

} // namespace

int main(int argc, char** argv) {
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    const long count = argc > 1 ? std::strtol(argv[1], nullptr, 10) : repetitions;
    Operations operations;
    for (const auto& [name, operation] : operations.all()) {
        for (long number = 0; number < warmUp; ++number)
            operation();
        measured_loop(operation, count);
        std::printf("%s %ld\n", name, count);
    }
    return 0;
}
