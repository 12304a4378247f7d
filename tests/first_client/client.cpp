// A program of somebody who compiled it with the first headers and cannot compile it again. The assembly files here are
// what GCC 12 made of it then: sizes, offsets, slots of virtual operations and inline code are those of the first
// headers. check.sh assembles and links them with each new build. Never generate them again within version 1.
#include <cstdio>

#include <VXut/fw_Exception.h>
#include <VXut/ut_IPV6Address.h>
#include <VXut/ut_IntArray.h>
#include <VXut/ut_List.h>
#include <VXut/ut_ListContainable.h>
#include <VXut/ut_OutputStream.h>
#include <VXut/ut_PutStream.h>
#include <VXut/ut_URL.h>
#include <VXut/ut_VirtualPutStream.h>
#include <VXut/ut_WWN.h>

namespace {

class Port : public utility::ListContainable {
public:
    explicit Port(int number) : m_number(number) {}
    bool equals(const utility::ListContainable* other) const override {
        return static_cast<const Port*>(other)->m_number == m_number;
    }
    int number() const {
        return m_number;
    }

private:
    int m_number;
};

// What a stream flushes to.
class Screen : public framework::OutputStream {
public:
    bool StartOutputStream() override {
        return true;
    }
    void EndOutputStream() override {}
    void FlushOutputStream() override {}
    bool isOutputStreamOpen() override {
        return true;
    }
    bool isOutputStreamInError() override {
        return false;
    }
    bool isOutputStreamAtEnd() override {
        return false;
    }
    bool SendOutputStream(const char* data, unsigned int size) override {
        std::printf("[%.*s]", static_cast<int>(size), data);
        return true;
    }
};

// Overrides a virtual operation of a stream.
class Bracketed : public utility::VirtualPutStream {
public:
    Bracketed(framework::OutputStream& target, char* storage, int size)
        : utility::VirtualPutStream(target, storage, size, 4) {}
    void FlushOutputStream() override {
        std::printf("<");
        utility::VirtualPutStream::FlushOutputStream();
        std::printf(">");
    }
};

void streams() {
    char text[32];
    utility::PutStream out(text, sizeof text);
    out.PutF("%s=%d", "ports", 4);
    std::printf("%s %d\n", text, out.ReadAvailable());
    Screen screen;
    char storage[8];
    Bracketed bracketed(screen, storage, sizeof storage);
    bracketed.PutS("abcdef");
    bracketed.PutS("ghijkl");
    bracketed.FlushOutputStream();
    std::printf("\n");
}

void containers() {
    utility::IntArray numbers(2);
    for (int i = 0; i < 5; ++i)
        numbers.Append(i * i);
    int sum = 0;
    for (unsigned int i = 0; i < numbers.length(); ++i)
        sum += numbers[i];
    utility::List list;
    list.addLast(new Port(1));
    list.addFirst(new Port(2));
    Port* first = static_cast<Port*>(list.removeFirst(false));
    std::printf("%d %d %d\n", sum, first->number(), list.count());
    delete first;
    delete list.removeFirst(false);
}

void values() {
    char text[64];
    utility::WWN("500A09818D5F1234").toBuffer(text, sizeof text);
    std::printf("%s ", text);
    utility::IPV6Address("FE80::1").toBuffer(text, sizeof text);
    std::printf("%s ", text);
    utility::URL url("abc://node:8080/a%20b?x=1");
    std::printf("%s\n", url.GetPath());
}

void failures() {
    char text[4];
    try {
        utility::PutStream(text, sizeof text).PutS("too long");
    } catch (framework::Exception* failure) {
        std::printf("%u %s\n", failure->code(), failure->file());
        delete failure;
    }
}

} // namespace

int main() {
    streams();
    containers();
    values();
    failures();
    return 0;
}
