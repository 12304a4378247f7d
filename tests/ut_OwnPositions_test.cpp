// The streams move their positions without virtual calls where no derived class overrides the position operations.
// Nobody may be able to tell: the same random operations on a stream whose class overrides each position operation, to
// do only what the buffer's own would, must give the same results, failures, bytes and positions.

#include "internal/ut_OwnPositions.h"

#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "CountedPositions.h"
#include "fw_KnownTokens.h"
#include "support/DebugSwitch.h"
#include "support/ExpectFailure.h"
#include "support/FailingAllocation.h"
#include "support/LogCapture.h"
#include "support/RandomRun.h"
#include "ut_BufferStream.h"
#include "ut_IntArray.h"
#include "ut_ShortArray.h"
#include "ut_UIntArray.h"
#include "ut_UShortArray.h"

namespace {

using test::CountedPositions;
using utility::Buffer;
using utility::BufferStream;

constexpr int capacity = 64;

// A stream of a caller's class that overrides something else.
class NamedStream : public BufferStream {
public:
    NamedStream(char* storage, int size, bool quiet) : BufferStream(storage, size, quiet) {}
    void Indent(int n) override {
        BufferStream::Indent(n);
    }
};

// What a caller can see of an operation: its result or failure, and the state that it left.
struct Outcome {
    std::string result;
    std::string failure;
    std::string bytes;
    int head;
    int tail;
};

bool operator==(const Outcome& a, const Outcome& b) {
    return a.result == b.result && a.failure == b.failure && a.bytes == b.bytes && a.head == b.head && a.tail == b.tail;
}

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    return out << "result " << outcome.result << ", failure " << outcome.failure << ", head " << outcome.head
               << ", tail " << outcome.tail << ", bytes " << testing::PrintToString(outcome.bytes);
}

template<typename ArrayType>
ArrayType filled(int count) {
    ArrayType array(3);
    for (int i = 0; i < count; ++i)
        array.Append(static_cast<std::decay_t<decltype(array[0])>>(i * 40503 - 7));
    return array;
}

template<typename ArrayType>
std::string shownArray(const ArrayType& array) {
    std::string text = std::to_string(array.size()) + " slots:";
    for (unsigned int i = 0; i < array.length(); ++i)
        text += " " + std::to_string(array[i]);
    return text;
}

std::string shown(const char* text) {
    return text != nullptr ? "'" + std::string(text) + "'" : "null";
}

template<typename ArrayType>
std::string readArray(BufferStream& stream, bool (utility::GetStream::*read)(ArrayType&), int length) {
    auto array = filled<ArrayType>(length);
    const bool done = (stream.*read)(array);
    return std::to_string(done) + " " + shownArray(array);
}

template<typename ArrayType>
std::string writeArray(BufferStream& stream, void (utility::PutStream::*write)(ArrayType&), int length) {
    auto array = filled<ArrayType>(length);
    (stream.*write)(array);
    return "";
}

template<typename Number>
std::string readNumber(BufferStream& stream, bool (utility::GetStream::*read)(Number*)) {
    Number value = 77;
    const bool done = (stream.*read)(&value);
    return std::to_string(done) + " " + std::to_string(value);
}

// Carries out one operation and returns its result as text. `number` is from 0 to 29.
using Operation = std::string (*)(BufferStream& stream, int number, std::string& text);

const std::vector<Operation>& operations() {
    static const std::vector<Operation> all{
        [](BufferStream& stream, int number, std::string&) {
            stream.PutC(static_cast<char>('a' + number));
            return std::string();
        },
        [](BufferStream& stream, int number, std::string& text) {
            text.resize(30);
            stream.PutB(text.data(), number - 2);
            return std::string();
        },
        [](BufferStream& stream, int, std::string& text) {
            stream.PutS(text.c_str());
            return std::string();
        },
        [](BufferStream& stream, int number, std::string& text) {
            stream.PutF("%s-%d", text.c_str(), number);
            return std::string();
        },
        [](BufferStream& stream, int number, std::string&) {
            stream.PutParmUint16(static_cast<uint16_t>(number));
            return std::string();
        },
        [](BufferStream& stream, int number, std::string&) {
            stream.PutParmSint32(-number);
            return std::string();
        },
        [](BufferStream& stream, int, std::string& text) {
            stream.PutParmString(text.c_str());
            return std::string();
        },
        [](BufferStream& stream, int number, std::string& text) {
            text.resize(30);
            stream.PutParmBuf(text.data(), number - 2);
            return std::string();
        },
        [](BufferStream& stream, int number, std::string&) {
            return writeArray(stream, &utility::PutStream::PutParmUint16Array, number / 2);
        },
        [](BufferStream& stream, int number, std::string&) {
            return writeArray(stream, &utility::PutStream::PutParmUint32Array, number / 2);
        },
        [](BufferStream& stream, int number, std::string&) {
            return writeArray(stream, &utility::PutStream::PutParmSint16Array, number / 2);
        },
        [](BufferStream& stream, int number, std::string&) {
            return writeArray(stream, &utility::PutStream::PutParmSint32Array, number / 2);
        },
        [](BufferStream& stream, int, std::string& text) {
            return std::to_string(
                static_cast<int>(stream.SendOutputStream(text.data(), static_cast<unsigned int>(text.size()))));
        },
        [](BufferStream& stream, int, std::string&) {
            char c = '?';
            const bool done = stream.GetC(&c);
            return std::to_string(static_cast<int>(done)) + c;
        },
        [](BufferStream& stream, int, std::string&) { return shown(stream.ReadLine()); },
        [](BufferStream& stream, int, std::string&) { return shown(stream.GetLine()); },
        [](BufferStream& stream, int, std::string&) { return readNumber(stream, &utility::GetStream::GetParmUint16); },
        [](BufferStream& stream, int, std::string&) { return readNumber(stream, &utility::GetStream::GetParmSint32); },
        [](BufferStream& stream, int, std::string&) { return shown(stream.GetParmString()); },
        [](BufferStream& stream, int, std::string&) {
            char block[8] = {};
            const int length = stream.GetParmBuf(block, 7);
            return std::to_string(length) + shown(block);
        },
        [](BufferStream& stream, int, std::string&) {
            char block[8] = {};
            const int count = stream.ReceiveInputStream(block, 7);
            return std::to_string(count) + shown(block);
        },
        [](BufferStream& stream, int, std::string&) {
            stream.Rewind();
            return std::string();
        },
        [](BufferStream& stream, int, std::string&) {
            stream.Consolidate();
            return std::string();
        },
    };
    return all;
}

Outcome outcomeOf(BufferStream& stream, const char* storage, Operation operation, int number, std::string text) {
    Outcome outcome;
    const auto failure = test::failureOf([&] { outcome.result = operation(stream, number, text); });
    if (failure != nullptr)
        outcome.failure = failure->file() + std::string(" ") + failure->function() + " " + failure->message();
    outcome.bytes.assign(storage, capacity);
    outcome.head = stream.WritePosition();
    outcome.tail = stream.ReadPosition();
    return outcome;
}

template<typename Stream>
void expectSameAsOverriding(bool quiet) {
    test::LogCapture log;
    test::RandomRun random;
    char direct[capacity + 1] = {};
    char plain[capacity + 1] = {};
    Stream directStream(direct, capacity, quiet);
    CountedPositions<BufferStream> plainStream(plain, capacity, quiet);
    while (random.steps(20000)) {
        const unsigned int kind = random.below(static_cast<unsigned int>(operations().size()));
        const int number = static_cast<int>(random.below(30));
        const std::string text = random.text(20, "ab\n\xc3\xa4");
        const Outcome expected = outcomeOf(plainStream, plain, operations()[kind], number, text);
        const std::vector<std::string> expectedLog = log.texts();
        log.clear();
        EXPECT_EQ(outcomeOf(directStream, direct, operations()[kind], number, text), expected) << "operation " << kind;
        EXPECT_EQ(log.texts(), expectedLog) << "operation " << kind;
        log.clear();
        // A failure may leave the positions out of range: start again, as callers do.
        if (!expected.failure.empty() || random.below(20) == 0) {
            directStream.Rewind();
            plainStream.Rewind();
        }
    }
    EXPECT_GT(plainStream.calls(), 0);
}

TEST(OwnPositions, OperationsMatchThoseOfAnOverridingClass) {
    expectSameAsOverriding<BufferStream>(false);
}

TEST(OwnPositions, OperationsOfAQuietStreamMatchThoseOfAnOverridingClass) {
    expectSameAsOverriding<BufferStream>(true);
}

TEST(OwnPositions, OperationsOfACallersClassMatchThoseOfAnOverridingClass) {
    expectSameAsOverriding<NamedStream>(false);
}

// Reads an array of `count` elements, of which the stream has `bytes` bytes only, into an array of `length` elements.
template<typename ArrayType>
std::string arrayFrom(BufferStream& stream, bool (utility::GetStream::*read)(ArrayType&), unsigned int count, int bytes,
                      int length) {
    stream.Rewind();
    stream.PutParmUint32(count);
    for (int i = 0; i < bytes; ++i)
        stream.PutC(static_cast<char>(i * 37 + 1));
    auto array = filled<ArrayType>(length);
    const bool done = (stream.*read)(array);
    return std::to_string(done) + " " + shownArray(array) + ", read position " + std::to_string(stream.ReadPosition());
}

template<typename ArrayType>
void expectSameArrays(bool (utility::GetStream::*read)(ArrayType&)) {
    char direct[capacity + 1] = {};
    char plain[capacity + 1] = {};
    BufferStream directStream(direct, capacity, false);
    CountedPositions<BufferStream> plainStream(plain, capacity, false);
    for (const unsigned int count : {0U, 1U, 2U, 15U, 16U, 17U, 60U}) {
        for (const int bytes : {0, 1, 2, 3, 4, 30, 31, 32, 57}) {
            for (const int length : {0, 2, 3, 22, 23}) {
                EXPECT_EQ(arrayFrom(directStream, read, count, bytes, length),
                          arrayFrom(plainStream, read, count, bytes, length))
                    << count << " elements, " << bytes << " bytes, after " << length;
            }
        }
    }
}

TEST(OwnPositions, ArraysAreReadAsAnOverridingClassReadsThem) {
    expectSameArrays(&utility::GetStream::GetParmUint16Array);
    expectSameArrays(&utility::GetStream::GetParmSint16Array);
    expectSameArrays(&utility::GetStream::GetParmUint32Array);
    expectSameArrays(&utility::GetStream::GetParmSint32Array);
}

TEST(OwnPositions, AHostileCountIsRefusedAsAnOverridingClassRefusesIt) {
    char direct[capacity + 1] = {};
    char plain[capacity + 1] = {};
    BufferStream directStream(direct, capacity, false);
    CountedPositions<BufferStream> plainStream(plain, capacity, false);
    const auto read = &utility::GetStream::GetParmUint16Array;
    const std::string expected = arrayFrom(plainStream, read, UINT_MAX, 10, 5);
    EXPECT_EQ(arrayFrom(directStream, read, UINT_MAX, 10, 5), expected);
    EXPECT_EQ(expected.substr(0, 2), "0 ");
}

class OwnPositionsSwitch : public testing::TestWithParam<unsigned int> {};

// Each element that is appended and each step of growth is traced, one by one.
TEST_P(OwnPositionsSwitch, ReadingAnArrayShowsTheSameTrace) {
    char direct[capacity + 1] = {};
    char plain[capacity + 1] = {};
    BufferStream directStream(direct, capacity, false);
    CountedPositions<BufferStream> plainStream(plain, capacity, false);
    const test::DebugSwitch on(GetParam());
    test::LogCapture log;
    arrayFrom(plainStream, &utility::GetStream::GetParmSint32Array, 10, 40, 20);
    const unsigned int expected = log.count();
    log.clear();
    arrayFrom(directStream, &utility::GetStream::GetParmSint32Array, 10, 40, 20);
    EXPECT_EQ(log.count(), expected);
    EXPECT_GT(expected, 0U);
}

INSTANTIATE_TEST_SUITE_P(All, OwnPositionsSwitch, testing::Values(strings::TOKEN_INT_ARRAY, strings::TOKEN_ARRAY));

TEST(OwnPositions, WithoutMemoryForTheWholeArrayItGrowsByStepsUntilThatFails) {
    BufferStream stream(2000);
    auto sent = filled<utility::IntArray>(300);
    stream.PutParmSint32Array(sent);

    utility::IntArray received(1);
    test::FailingAllocation first(1);
    const bool done = stream.GetParmSint32Array(received);
    first.stop();
    EXPECT_TRUE(done);
    EXPECT_EQ(first.failures(), 1U);
    EXPECT_EQ(received.size(), 301U);
    ASSERT_EQ(received.length(), 300U);
    EXPECT_EQ(received[299], sent[299]);
}

} // namespace
