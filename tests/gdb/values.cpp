// Creates one object of each class that gdb prints with a printer of its own. Writes to the file argv[1] what gdb must
// show, one line per object: the expression, a tab, and the text. Where the library has a text for the object, that
// text is the expected one. A text after "~" is a regular expression.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fw_Item.h"
#include <VXut.h>

// Where gdb stops.
extern "C" __attribute__((noinline)) void objectsExist() {
    asm volatile("");
}

namespace {

std::FILE* expectations;

void expect(const char* expression, const std::string& text) {
    std::fprintf(expectations, "%s\t%s\n", expression, text.c_str());
}

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

template<typename Object>
std::string bufferText(const Object& object) {
    char buffer[512] = {};
    return object.toBuffer(buffer, sizeof buffer);
}

class Number : public utility::ListContainable {
public:
    explicit Number(int value) : m_value(value) {}

    bool equals(const utility::ListContainable* other) const override {
        return other == this;
    }

private:
    int m_value;
};

void* pointerOf(std::uintptr_t number) {
    return reinterpret_cast<void*>(number);
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2 || (expectations = std::fopen(arguments[1], "w")) == nullptr)
        return 2;

    // Addresses and identifiers
    utility::IPV4Address ipv4("192.168.0.254");
    expect("ipv4", bufferText(ipv4));
    utility::IPV6Address ipv6("2001:db8::ff00:42:8329");
    expect("ipv6", bufferText(ipv6));
    utility::IPV6Address noAddress;
    expect("noAddress", bufferText(noAddress));
    utility::IPV6Address mappedAddress("::ffff:10.0.0.1");
    expect("mappedAddress", bufferText(mappedAddress));
    utility::WWN wwn("500c0ff00123abcd");
    expect("wwn", bufferText(wwn));
    const utility::WWN& wwnReference = wwn;
    expect("wwnReference", bufferText(wwnReference));
    utility::SerialNumber serialNumber("00c0ff0a1b2c3d4e5f60718293000000");
    expect("serialNumber", bufferText(serialNumber));
    utility::FCPortAddress fc(utility::FCPortAddress::WWNType(), "207000c0ff0a1b2c");
    expect("fc", bufferText(fc));
    utility::ISCSIPortAddress iscsi4(ipv4, 3260, "iqn.2001-04.example:disk");
    expect("iscsi4", bufferText(iscsi4));
    utility::ISCSIPortAddress iscsi6(ipv6, 0, nullptr);
    expect("iscsi6", bufferText(iscsi6));
    utility::ISCSIPortAddress largePort(ipv4, 4294967295U, "");
    expect("largePort", bufferText(largePort));

    // Times
    char timeText[64] = {};
    utility::DateTime summer(1720000000);
    expect("summer", summer.ToISOBuf(timeText, sizeof timeText));
    const utility::DateTime winter(1704067199);
    expect("winter", winter.ToISOBuf(timeText, sizeof timeText));
    utility::DateTime invalidTime = utility::DateTime::Invalid();
    expect("invalidTime", "invalid");

    // Tokens
    const strings::stringtoken knownToken = strings::TOKEN_DATE_TIME;
    expect("knownToken", std::to_string(knownToken) + " \"DateTime\"");
    stringtoken runTimeToken = strings::GS.toToken("a port of this test");
    expect("runTimeToken", std::to_string(runTimeToken) + " \"a port of this test\"");
    stringtoken unknownToken = 1;
    expect("unknownToken", "1");
    stringtoken largestToken = 4294967295U;
    expect("largestToken", "4294967295");
    stringtoken thousandth = 0;
    for (int i = 0; i < 1000; ++i)
        thousandth = strings::GS.toToken(("name " + std::to_string(i)).c_str());
    expect("thousandth", std::to_string(thousandth) + " \"name 999\"");

    // Paths, URLs and what belongs to them
    utility::Path path("/var/lib/vxut/a.tar.gz");
    expect("path", quoted(path.getValue()));
    utility::Path noPath(nullptr);
    expect("noPath", "\"\"");
    utility::DirIterator directory("/usr/", "*.c");
    expect("directory", "utility::DirIterator = {path = \"/usr/\", pattern = \"*.c\", index = -1}");
    utility::URL url("http://host:80/a%20b?key=value");
    expect("url", quoted(url.GetValue()));
    utility::URL noURL(nullptr);
    expect("noURL", "\"\"");
    utility::Options options;
    char optionText[] = "a=1,2&b";
    options.set(optionText);
    expect("options", "utility::Options = {[" + std::to_string(strings::GS.toToken("a")) + " \"a\"] = \"1\", [" +
                          std::to_string(strings::GS.toToken("a")) + " \"a\"] = \"2\", [" +
                          std::to_string(strings::GS.toToken("b")) + " \"b\"] = 0x0}");
    utility::Arguments words("copy \"a b\" c");
    expect("words", "utility::Arguments = {\"copy\", \"a b\", \"c\"}");
    utility::Environment environment;
    environment.set("NAME", "value");
    environment.set("EMPTY", "");
    expect("environment", "utility::Environment = {[\"NAME\"] = \"value\", [\"EMPTY\"] = \"\"}");
    char parameterText[] = "x;y;z";
    char parameter[8];
    utility::ParameterList parameters(parameterText, ';');
    parameters.nextToken(parameter);
    expect("parameters", "utility::ParameterList = {separator = 59 ';', rest = \"y;z\"}");

    // Buffers and streams
    utility::BufferStream stream(16);
    stream.PutS("one\ttwo");
    stream.ReadAdvance(1);
    expect("stream", "utility::BufferStream = {capacity = 16, written = 7, read = 1, readable = \"ne\\ttwo\"}");
    utility::PutStream& base = stream;
    expect("base", "utility::PutStream = {capacity = 16, written = 7, read = 1, readable = \"ne\\ttwo\"}");
    utility::Buffer noStorage;
    expect("noStorage", "utility::Buffer = {capacity = 0, written = 0, read = 0, readable = 0x0}");
    utility::BufferStream binary(8);
    binary.PutB("\0\x01\xff\"\\", 5);
    expect("binary",
           "utility::BufferStream = {capacity = 8, written = 5, read = 0, readable = \"\\000\\001\\377\\\"\\\\\"}");
    char line[] = "text of the caller";
    utility::GetStream getStream(line, sizeof line - 1);
    getStream.WriteAdvance(4);
    expect("getStream", "utility::GetStream = {capacity = 18, written = 4, read = 0, readable = \"text\"}");
    utility::BufferStream longStream(1000);
    for (int i = 0; i < 300; ++i)
        longStream.PutC('x');
    expect("longStream", "utility::BufferStream = {capacity = 1000, written = 300, read = 0, readable = " +
                             quoted(std::string(200, 'x')) + "...}");
    utility::NullStream sink(8);
    sink.StartInputStream();
    sink.StartOutputStream();
    sink.SendOutputStream("abc", 3);
    expect("sink", "utility::NullStream = {inputSize = 8, inputRemaining = 8, written = 3, read = 0}");
    utility::NullStream target(8);
    utility::VirtualPutStream pages(target, 32, 8);
    pages.PutS("held");
    expect("pages",
           "~utility::VirtualPutStream = \\{capacity = 32, written = 4, read = 0, readable = \"held\", target = "
           "0x[0-9a-f]+( <.*>)?, transferred = 0\\}");
    utility::BufferStream source(16);
    source.PutS("source");
    utility::VirtualGetStream received(source, 16, 2, 4, nullptr);
    received.load();
    expect("received",
           "~utility::VirtualGetStream = \\{capacity = [0-9]+, written = 6, read = 0, readable = \"source\", "
           "source = 0x[0-9a-f]+( <.*>)?, base = 0, received = 6\\}");
    utility::CircularStream ring(8);
    ring.SendOutputStream("abcdef", 6);
    char taken[8];
    ring.ReceiveInputStream(taken, 4);
    ring.SendOutputStream("ghij", 4);
    expect("ring", "utility::CircularStream = {capacity = 8, written = 2, read = 4, readable = \"efghij\"}");
    utility::DynamicStream dynamic(100000);
    const std::string pageOfText(5000, 'p');
    dynamic.SendOutputStream(pageOfText.c_str(), 4094);
    dynamic.SendOutputStream("over", 4);
    char skipped[4094];
    dynamic.ReceiveInputStream(skipped, sizeof skipped);
    expect("dynamic", "utility::DynamicStream = {limit = 100000, written = 4098, read = 4094, readable = \"over\"}");
    utility::FileInputStream file("/dev/null");
    expect("file", "~utility::FileInputStream = \\{path = \"/dev/null\", descriptor = [0-9]+, open = true, error = 0, "
                   "atEnd = false\\}");
    utility::BufferStreamElement element(8, nullptr);
    element.PutS("e");
    expect("element",
           "utility::BufferStreamElement = {capacity = 8, written = 1, read = 0, readable = \"e\", userValue = " +
               std::string("0, userWord1 = 0, userWord2 = 0}"));
    utility::BufferStreamList pool(3, 4);
    const std::string pooled = "{capacity = 4, written = 0, read = 0, readable = \"\", userValue = 0, userWord1 = 0, "
                               "userWord2 = 0}";
    utility::BufferStreamQueue queue;
    queue.enQueue(pool.Allocate());
    expect("queue", "utility::BufferStreamQueue of length 1 = {utility::BufferStreamElement = " + pooled + "}");
    expect("pool", "utility::BufferStreamList = {utility::BufferStreamElement = " + pooled +
                       ", utility::BufferStreamElement = " + pooled + "}");

    // Arrays
    utility::IntArray ints(4);
    ints.Append(1);
    ints.Append(-2);
    expect("ints", "utility::IntArray of length 2, capacity 4 = {1, -2}");
    utility::UIntArray uints(4);
    uints.Append(4000000000U);
    expect("uints", "utility::UIntArray of length 1, capacity 4 = {4000000000}");
    utility::ShortArray shorts(4);
    shorts.Append(-3);
    expect("shorts", "utility::ShortArray of length 1, capacity 4 = {-3}");
    utility::UShortArray ushorts(4);
    ushorts.Append(65535);
    expect("ushorts", "utility::UShortArray of length 1, capacity 4 = {65535}");
    utility::Int64Array int64s(4);
    int64s.Append(-5000000000LL);
    expect("int64s", "utility::Int64Array of length 1, capacity 4 = {-5000000000}");
    utility::UInt64Array uint64s(4);
    uint64s.Append(18446744073709551615ULL);
    expect("uint64s", "utility::UInt64Array of length 1, capacity 4 = {18446744073709551615}");
    utility::StringArray texts(4);
    texts.Append("a\"b");
    texts.Append("");
    expect("texts", "utility::StringArray of length 2, capacity 4 = {\"a\\\"b\", \"\"}");
    utility::TokenArray tokens(4);
    tokens.Append(knownToken);
    expect("tokens", "utility::TokenArray of length 1, capacity 4 = {348 \"DateTime\"}");
    utility::ItemArray items(4);
    items.Append(&path);
    items.Append(nullptr);
    expect("items", "utility::ItemArray of length 2, capacity 4 = {" + quoted(path.getValue()) + ", 0x0}");
    utility::WWNArray wwns(4);
    wwns.Append(&wwn);
    expect("wwns", "utility::WWNArray of length 1, capacity 4 = {" + bufferText(wwn) + "}");
    utility::SerialNumberArray serialNumbers(4);
    serialNumbers.Append(&serialNumber);
    expect("serialNumbers", "utility::SerialNumberArray of length 1, capacity 4 = {" + bufferText(serialNumber) + "}");
    utility::PortAddressArray ports(4);
    ports.Append(fc.clone());
    ports.Append(iscsi4.clone());
    expect("ports",
           "utility::PortAddressArray of length 2, capacity 4 = {" + bufferText(fc) + ", " + bufferText(iscsi4) + "}");
    utility::IntArray many(300);
    for (int i = 0; i < 300; ++i)
        many.Append(1000 + i);
    std::string listed;
    for (int i = 0; i < 200; ++i)
        listed += std::to_string(1000 + i) + (i < 199 ? ", " : "...");
    expect("many", "utility::IntArray of length 300, capacity 300 = {" + listed + "}");

    // Maps, lists, directories and sets
    utility::Map map(4);
    map.Add(pointerOf(0x10), pointerOf(0x20));
    map.Add(pointerOf(0x14), pointerOf(0x30));
    expect("map", "utility::Map with 2 keys = {[0x10] = 0x20, [0x14] = 0x30}");
    utility::StringMap stringMap(2);
    stringMap.Add("key", pointerOf(0x40));
    expect("stringMap", "utility::StringMap with 1 keys = {[\"key\"] = 0x40}");
    utility::MapEntity mapEntity(2, nullptr);
    mapEntity.Add(pointerOf(2), pointerOf(3));
    expect("mapEntity", "utility::MapEntity with 1 keys = {[0x2] = 0x3}");
    utility::List list(true);
    Number three(3);
    Number four(4);
    list.addLast(&three);
    list.addLast(&four);
    expect("list", "~utility::List of length 2 = \\{\\{.*, m_value = 3\\}, \\{.*, m_value = 4\\}\\}");
    utility::ListIterator* iterator = list.iterator(utility::FIRST_TO_LAST);
    expect("*iterator", "~utility::ListIterator = \\{next = \\{.*, m_value = 3\\}\\}");
    utility::StringDirectory stringDirectory(4);
    stringDirectory.Add("b");
    stringDirectory.Add("a");
    expect("stringDirectory", "utility::StringDirectory = {[0] = \"b\", [1] = \"a\"}");
    utility::FastStringDirectory fastDirectory(4);
    for (const char* name : {"x", "y", "z", "v"})
        fastDirectory.Add(name);
    fastDirectory.Delete("y");
    fastDirectory.Delete("v");
    expect("fastDirectory", "utility::FastStringDirectory = {[0] = \"x\", [2] = \"z\"}");
    utility::FastSortedStringDirectory sortedDirectory(4);
    sortedDirectory.Add("b");
    sortedDirectory.Add("a");
    expect("sortedDirectory", "utility::FastSortedStringDirectory = {[0] = \"a\", [1] = \"b\"}");
    utility::ItemDirectory itemDirectory(4);
    itemDirectory.add(&path);
    expect("itemDirectory", "utility::ItemDirectory = {[0] = " + quoted(path.getValue()) + "}");
    utility::TokenSet tokenSet(4);
    tokenSet.set(strings::TOKEN_URL);
    tokenSet.set(strings::TOKEN_ARRAY);
    expect("tokenSet", "utility::TokenSet of length 2, capacity 4 = {292 \"Array\", " +
                           std::to_string(strings::TOKEN_URL) + " \"URL\"}");
    Stack stack;
    const std::string lower = "lower";
    const std::string upper = "upper";
    stack.push(&lower, nullptr);
    stack.push(&upper, nullptr);
    expect("stack", "Stack = {\"upper\", \"lower\"}");

    // Failures
    framework::Exception failure(framework::Exception::FAILURE_BUFFER, "ut_PutStream", 12, "void f()", "too \"long\"",
                                 true);
    expect("failure",
           "framework::Exception = {code = 1239 FAILURE_BUFFER, file = \"ut_PutStream\", line = 12, function = "
           "\"void f()\", message = \"too \\\"long\\\"\", flag = true}");
    framework::Exception otherFailure(77, nullptr, -1, nullptr, nullptr, false);
    expect("otherFailure",
           "framework::Exception = {code = 77, file = \"\", line = -1, function = \"\", message = \"\", "
           "flag = false}");

    std::fclose(expectations);
    objectsExist();
    delete iterator;
    list.removeAll();
    return 0;
}
