// The compact encoding of call parameters: the writers of `PutStream` against the readers of `GetStream`.

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ArrayContent.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "GuardedBytes.h"
#include "HeldBytes.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "TraceLines.h"
#include "ut_BufferStream.h"
#include "ut_IntArray.h"
#include "ut_ShortArray.h"
#include "ut_StringArray.h"
#include "ut_UIntArray.h"
#include "ut_UShortArray.h"

namespace {

using utility::BufferStream;
using utility::IntArray;
using utility::ShortArray;
using utility::StringArray;
using utility::UIntArray;
using utility::UShortArray;
using Lines = std::vector<std::string>;

constexpr const char* writeAdvanceName = "virtual void utility::Buffer::WriteAdvance(int)";
constexpr const char* readAdvanceName = "virtual void utility::Buffer::ReadAdvance(int)";
constexpr const char* putSName = "void utility::PutStream::PutS(const char*)";
constexpr unsigned int slack = 65535;
// More elements than a hostile message of a few bytes can produce; the arrays reserve this capacity, as growing is
// slow.
constexpr unsigned int mostRead = 66000;

std::string writer(const std::string& signature) {
    return "void utility::PutStream::" + signature;
}

std::string bytes(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values)
        text += static_cast<char>(value);
    return text;
}

template<class Value>
std::string memoryOf(Value value) {
    return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

// A stream of `capacity` bytes with its own array between guard bytes.
class Stream {
public:
    explicit Stream(int capacity, bool noThrow = false)
        : m_bytes(static_cast<std::size_t>(capacity) + 1), m_stream(m_bytes.array(), m_bytes.size(), noThrow) {}
    explicit Stream(const std::string& content, bool noThrow = false)
        : Stream(static_cast<int>(content.size()), noThrow) {
        m_stream.PutB(content.data(), static_cast<int>(content.size()));
    }
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;
    ~Stream() {
        EXPECT_TRUE(m_bytes.areGuardsWhole());
    }
    BufferStream* operator->() {
        return &m_stream;
    }
    BufferStream& operator*() {
        return m_stream;
    }
    std::string readable() const {
        return test::heldBytes(m_stream);
    }

private:
    test::GuardedBytes m_bytes;
    BufferStream m_stream;
};

std::vector<std::string> textsOf(const StringArray& array) {
    std::vector<std::string> texts;
    for (unsigned int index = 0; index < array.length(); ++index)
        texts.push_back(array.ElementAt(index) != nullptr ? array.ElementAt(index) : "<null>");
    return texts;
}

// The differences between the four numeric array encodings.
struct Uint16 {
    using Array = UShortArray;
    using Value = unsigned short;
    static constexpr auto put = &utility::PutStream::PutParmUint16Array;
    static constexpr auto get = &utility::GetStream::GetParmUint16Array;
    static std::string signature() {
        return writer("PutParmUint16Array(utility::UShortArray&)");
    }
};
struct Uint32 {
    using Array = UIntArray;
    using Value = unsigned int;
    static constexpr auto put = &utility::PutStream::PutParmUint32Array;
    static constexpr auto get = &utility::GetStream::GetParmUint32Array;
    static std::string signature() {
        return writer("PutParmUint32Array(utility::UIntArray&)");
    }
};
struct Sint16 {
    using Array = ShortArray;
    using Value = short;
    static constexpr auto put = &utility::PutStream::PutParmSint16Array;
    static constexpr auto get = &utility::GetStream::GetParmSint16Array;
    static std::string signature() {
        return writer("PutParmSint16Array(utility::ShortArray&)");
    }
};
struct Sint32 {
    using Array = IntArray;
    using Value = int;
    static constexpr auto put = &utility::PutStream::PutParmSint32Array;
    static constexpr auto get = &utility::GetStream::GetParmSint32Array;
    static std::string signature() {
        return writer("PutParmSint32Array(utility::IntArray&)");
    }
};

template<class Form>
class ParameterArray : public testing::Test {
protected:
    using Array = typename Form::Array;
    using Value = typename Form::Value;
    static constexpr int width = static_cast<int>(sizeof(Value));

    static std::vector<Value> someValues() {
        return {static_cast<Value>(1), static_cast<Value>(-2), std::numeric_limits<Value>::min(),
                std::numeric_limits<Value>::max()};
    }
    static void put(Stream& stream, Array& array) {
        ((*stream).*Form::put)(array);
    }
    static bool get(Stream& stream, Array& array) {
        return ((*stream).*Form::get)(array);
    }
    static std::string encoded(const std::vector<Value>& values) {
        std::string text = memoryOf(static_cast<std::uint32_t>(values.size()));
        for (const Value value : values)
            text += memoryOf(value);
        return text;
    }
};

using Forms = testing::Types<Uint16, Uint32, Sint16, Sint32>;
TYPED_TEST_SUITE(ParameterArray, Forms);

TEST(ParameterEncoding, UsageExample) {
    char message[64];
    BufferStream stream(message, sizeof message, false);
    stream.PutParmUint32(4);
    stream.PutParmString("ports");

    unsigned int count = 0;
    EXPECT_TRUE(stream.GetParmUint32(&count));
    EXPECT_EQ(count, 4u);
    EXPECT_STREQ(stream.GetParmString(), "ports");
}

TEST(ParameterEncoding, NumbersAreWrittenInMemoryOrderWithoutPadding) {
    Stream stream(64);
    stream->PutParmUint16(0x1234);
    stream->PutParmUint32(0x89ABCDEFu);
    stream->PutParmSint16(-2);
    stream->PutParmSint32(-3);
    EXPECT_EQ(stream.readable(), bytes({0x34, 0x12, 0xEF, 0xCD, 0xAB, 0x89, 0xFE, 0xFF, 0xFD, 0xFF, 0xFF, 0xFF}));
}

TEST(ParameterEncoding, NumbersRoundTripAtTheirLimits) {
    Stream stream(256);
    for (const int value : {0, 1, 0x7FFF, 0x8000, 0xFFFF})
        stream->PutParmUint16(static_cast<std::uint16_t>(value));
    for (const int value : {0, 1, -1, SHRT_MIN, SHRT_MAX})
        stream->PutParmSint16(static_cast<std::int16_t>(value));
    for (const unsigned int value : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        stream->PutParmUint32(value);
    for (const int value : {0, 1, -1, INT_MIN, INT_MAX})
        stream->PutParmSint32(value);
    for (const int value : {0, 1, 0x7FFF, 0x8000, 0xFFFF}) {
        unsigned short read = 77;
        EXPECT_TRUE(stream->GetParmUint16(&read));
        EXPECT_EQ(read, value);
    }
    for (const int value : {0, 1, -1, SHRT_MIN, SHRT_MAX}) {
        short read = 77;
        EXPECT_TRUE(stream->GetParmSint16(&read));
        EXPECT_EQ(read, value);
    }
    for (const unsigned int value : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        unsigned int read = 77;
        EXPECT_TRUE(stream->GetParmUint32(&read));
        EXPECT_EQ(read, value);
    }
    for (const int value : {0, 1, -1, INT_MIN, INT_MAX}) {
        int read = 77;
        EXPECT_TRUE(stream->GetParmSint32(&read));
        EXPECT_EQ(read, value);
    }
    EXPECT_EQ(stream->ReadAvailable(), 0);
}

TEST(ParameterEncoding, TwoBytesAreA16BitNumberButNotA32BitOne) {
    Stream stream(bytes({1, 0}));
    unsigned int longer = 77;
    int signedLonger = 77;
    EXPECT_FALSE(stream->GetParmUint32(&longer));
    EXPECT_FALSE(stream->GetParmSint32(&signedLonger));
    EXPECT_EQ(longer, 77u);
    EXPECT_EQ(signedLonger, 77);
    unsigned short number = 77;
    EXPECT_TRUE(stream->GetParmUint16(&number));
    EXPECT_EQ(number, 1);
}

TEST(ParameterEncoding, TooFewBytesAreNotConsumed) {
    for (const std::size_t count : {0u, 1u}) {
        Stream stream(std::string(count, '\1'));
        unsigned short number = 77;
        short signedNumber = 77;
        EXPECT_FALSE(stream->GetParmUint16(&number));
        EXPECT_FALSE(stream->GetParmSint16(&signedNumber));
        EXPECT_EQ(number, 77);
        EXPECT_EQ(signedNumber, 77);
        EXPECT_EQ(stream->ReadPosition(), 0);
    }
    for (const std::size_t count : {0u, 1u, 2u, 3u}) {
        Stream stream(std::string(count, '\1'));
        unsigned int number = 77;
        int signedNumber = 77;
        EXPECT_FALSE(stream->GetParmUint32(&number));
        EXPECT_FALSE(stream->GetParmSint32(&signedNumber));
        EXPECT_EQ(number, 77u);
        EXPECT_EQ(signedNumber, 77);
        EXPECT_EQ(stream->ReadPosition(), 0);
    }
}

TEST(ParameterEncoding, NumbersFillTheSpaceExactly) {
    Stream narrow(2);
    narrow->PutParmUint16(1);
    EXPECT_EQ(narrow.readable(), memoryOf<std::uint16_t>(1));
    Stream signedNarrow(2);
    signedNarrow->PutParmSint16(-1);
    EXPECT_EQ(signedNarrow.readable(), memoryOf<std::int16_t>(-1));
    Stream wide(4);
    wide->PutParmUint32(1);
    EXPECT_EQ(wide.readable(), memoryOf<std::uint32_t>(1));
    Stream signedWide(4);
    signedWide->PutParmSint32(-1);
    EXPECT_EQ(signedWide.readable(), memoryOf<std::int32_t>(-1));
}

TEST(ParameterEncoding, NumbersThatDoNotFitThrowAndWriteNothing) {
    for (int space = 0; space < 4; ++space) {
        Stream stream(space);
        if (space < 2) {
            EXPECT_FAILURE(stream->PutParmUint16(1), 1239, "ut_PutStream", writer("PutParmUint16(uint16_t)"), "");
            EXPECT_FAILURE(stream->PutParmSint16(1), 1239, "ut_PutStream", writer("PutParmSint16(int16_t)"), "");
        }
        EXPECT_FAILURE(stream->PutParmUint32(1), 1239, "ut_PutStream", writer("PutParmUint32(uint32_t)"), "");
        EXPECT_FAILURE(stream->PutParmSint32(1), 1239, "ut_PutStream", writer("PutParmSint32(int32_t)"), "");
        EXPECT_EQ(stream->WritePosition(), 0);
    }
}

TEST(ParameterEncoding, WithNoThrowNumbersThatDoNotFitAreDroppedSilently) {
    test::LogCapture log;
    Stream stream(3, true);
    stream->PutParmUint32(1);
    stream->PutParmSint32(1);
    EXPECT_EQ(stream->WritePosition(), 0);
    stream->PutParmUint16(0x4241);
    stream->PutParmUint16(1);
    stream->PutParmSint16(1);
    EXPECT_EQ(stream.readable(), "AB");
    EXPECT_EQ(log.count(), 0u);
}

TEST(ParameterEncoding, TextsAreTheirBytesAndATerminator) {
    Stream stream(16);
    stream->PutParmString("ab");
    stream->PutParmString("");
    stream->PutParmString("c");
    EXPECT_EQ(stream.readable(), bytes({'a', 'b', 0, 0, 'c', 0}));
    char* const first = stream->pTail();
    EXPECT_EQ(stream->GetParmString(), first);
    EXPECT_STREQ(first, "ab");
    EXPECT_STREQ(stream->GetParmString(), "");
    EXPECT_STREQ(stream->GetParmString(), "c");
    EXPECT_EQ(stream->GetParmString(), nullptr);
    EXPECT_EQ(stream->ReadAvailable(), 0);
}

TEST(ParameterEncoding, NullTextWritesNothingSoTheNextFieldIsReadAsTheText) {
    Stream stream(16);
    stream->PutParmString(nullptr);
    EXPECT_EQ(stream->WritePosition(), 0);
    stream->PutParmString("next");
    EXPECT_STREQ(stream->GetParmString(), "next");
    EXPECT_EQ(stream->GetParmString(), nullptr);
}

TEST(ParameterEncoding, TextAndItsTerminatorFillTheSpaceExactly) {
    Stream stream(6);
    stream->PutParmString("ports");
    EXPECT_EQ(stream.readable(), bytes({'p', 'o', 'r', 't', 's', 0}));
    EXPECT_EQ(stream->WriteRemaining(), 0);
}

TEST(ParameterEncoding, TextWithoutSpaceForItsTerminatorIsRefusedByTheWritePosition) {
    Stream stream(5);
    EXPECT_FAILURE(stream->PutParmString("ports"), 1239, "ut_Buffer", writeAdvanceName, "");
    stream->Rewind();
    EXPECT_FAILURE(stream->PutParmString("volume"), 1239, "ut_PutStream", putSName,
                   "Didn't fit. remaining=5 msg='volume'");
    EXPECT_EQ(stream.readable(), "volum");
    EXPECT_FAILURE(stream->PutParmString(""), 1239, "ut_Buffer", writeAdvanceName, "");
}

TEST(ParameterEncoding, WithNoThrowATextWithoutSpaceForItsTerminatorMovesBackToTheReadPosition) {
    test::LogCapture log;
    Stream stream(5, true);
    stream->PutParmString("ports");
    EXPECT_EQ(stream.readable(), std::string(1, '\0'));
    EXPECT_EQ(log.count(), 0u);
}

TEST(ParameterEncoding, WithNoThrowATooLongTextIsTruncatedAndItsTerminatorDropped) {
    test::LogCapture log;
    Stream stream(5, true);
    stream->PutParmString("volume");
    EXPECT_EQ(stream.readable(), "volum");
    EXPECT_EQ(test::traceLines(log), (Lines{"0 : PutStream::PutS: Didn't fit. remaining=5 msg='volume'"}));
    EXPECT_STREQ(stream->GetParmString(), "volum");
    EXPECT_EQ(stream->ReadAvailable(), 0);
}

TEST(ParameterEncoding, TextEndsAtTheWritePositionAtTheLatest) {
    for (const bool noThrow : {false, true}) {
        Stream stream(std::string("abc"), noThrow);
        EXPECT_STREQ(stream->GetParmString(), "abc");
        EXPECT_EQ(stream->ReadPosition(), 3);
        EXPECT_EQ(stream->GetParmString(), nullptr);
    }
    char text[] = "abcdef";
    utility::GetStream in(text, 6);
    in.WriteAdvance(3);
    EXPECT_STREQ(in.GetParmString(), "abc");
    EXPECT_EQ(in.ReadPosition(), 3);
}

TEST(ParameterEncoding, TextIsReadFromConstantStorageThatEndsInItsTerminator) {
    static const char text[] = "abc";
    utility::GetStream in(text, 3);
    in.WriteAdvance(3);
    EXPECT_EQ(in.GetParmString(), text);
    EXPECT_EQ(in.ReadPosition(), 3);
    EXPECT_EQ(in.GetParmString(), nullptr);
}

TEST(ParameterEncoding, BlocksAreTheirLengthAndTheirBytes) {
    Stream stream(16);
    char block[] = {'a', 0, 'c'};
    stream->PutParmBuf(block, 3);
    stream->PutParmBuf(block, 0);
    EXPECT_EQ(stream.readable(), bytes({3, 0, 0, 0, 'a', 0, 'c', 0, 0, 0, 0}));
    test::GuardedBytes read(3);
    EXPECT_EQ(stream->GetParmBuf(read.array(), 3), 3);
    EXPECT_EQ(read.content(), bytes({'a', 0, 'c'}));
    EXPECT_EQ(stream->GetParmBuf(read.array(), 3), 0);
    EXPECT_EQ(stream->ReadAvailable(), 0);
    EXPECT_TRUE(read.areGuardsWhole());
}

TEST(ParameterEncoding, BlockFillsTheSpaceExactly) {
    char block[] = "0123456789";
    Stream stream(14);
    stream->PutParmBuf(block, 10);
    EXPECT_EQ(stream.readable(), bytes({10, 0, 0, 0}) + "0123456789");
    Stream four(4);
    four->PutParmBuf(block, 0);
    EXPECT_EQ(four.readable(), bytes({0, 0, 0, 0}));
}

TEST(ParameterEncoding, BlockThatDoesNotFitThrowsAndWritesNothing) {
    char block[] = "0123456789";
    const std::string signature = writer("PutParmBuf(char*, int)");
    for (const int space : {0, 1, 3, 4, 5, 13}) {
        Stream stream(space);
        EXPECT_FAILURE(stream->PutParmBuf(block, 10), 1239, "ut_PutStream", signature, "");
        EXPECT_EQ(stream->WritePosition(), 0);
    }
    Stream stream(3);
    EXPECT_FAILURE(stream->PutParmBuf(block, 0), 1239, "ut_PutStream", signature, "");
    EXPECT_FAILURE(stream->PutParmBuf(block, INT_MAX), 1239, "ut_PutStream", signature, "");
}

TEST(ParameterEncoding, WithNoThrowABlockIsTruncatedAndTheTruncatedLengthIsWritten) {
    test::LogCapture log;
    char block[] = "0123456789";
    Stream stream(8, true);
    stream->PutParmBuf(block, 10);
    EXPECT_EQ(stream.readable(), bytes({4, 0, 0, 0}) + "0123");
    Stream four(4, true);
    four->PutParmBuf(block, 10);
    EXPECT_EQ(four.readable(), bytes({0, 0, 0, 0}));
    for (const int space : {0, 1, 2, 3}) {
        Stream none(space, true);
        none->PutParmBuf(block, 10);
        none->PutParmBuf(block, 0);
        EXPECT_EQ(none->WritePosition(), 0);
    }
    EXPECT_EQ(log.count(), 0u);
}

TEST(ParameterEncoding, NullBlockOrNegativeLengthIsAnEmptyBlock) {
    char block[] = "01";
    for (const bool noThrow : {false, true}) {
        Stream stream(16, noThrow);
        stream->PutParmBuf(nullptr, 2);
        stream->PutParmBuf(block, -1);
        stream->PutParmBuf(block, INT_MIN);
        EXPECT_EQ(stream.readable(), std::string(12, '\0'));
    }
}

TEST(ParameterEncoding, BlockLongerThanTheMaximumIsTruncatedButConsumed) {
    Stream stream(bytes({6, 0, 0, 0}) + "012345" + bytes({7, 0}));
    test::GuardedBytes read(4);
    EXPECT_EQ(stream->GetParmBuf(read.array(), 4), 6);
    EXPECT_EQ(read.content(), "0123");
    EXPECT_TRUE(read.areGuardsWhole());
    unsigned short next = 0;
    EXPECT_TRUE(stream->GetParmUint16(&next));
    EXPECT_EQ(next, 7);
}

TEST(ParameterEncoding, BlockIsReadIntoTheStreamsOwnStorage) {
    Stream stream(bytes({6, 0, 0, 0}) + "012345" + bytes({7, 0}));
    EXPECT_EQ(stream->GetParmBuf(stream->pBuffer() + 2, 6), 6);
    EXPECT_EQ(std::string(stream->pBuffer() + 2, 6), "012345");
    unsigned short next = 0;
    EXPECT_TRUE(stream->GetParmUint16(&next));
    EXPECT_EQ(next, 7);
}

TEST(ParameterEncoding, BlockIsReadIntoZeroBytes) {
    for (const int maximum : {0, -1, INT_MIN}) {
        Stream stream(bytes({2, 0, 0, 0, 'a', 'b', 'c'}));
        test::GuardedBytes read(4);
        EXPECT_EQ(stream->GetParmBuf(read.array(), maximum), 2);
        EXPECT_TRUE(read.isUntouched());
        EXPECT_EQ(stream.readable(), "c");
    }
    Stream stream(bytes({2, 0, 0, 0, 'a', 'b', 'c'}));
    EXPECT_EQ(stream->GetParmBuf(nullptr, 0), 2);
    EXPECT_EQ(stream.readable(), "c");
}

TEST(ParameterEncoding, BlockWithoutADestinationIsConsumed) {
    Stream stream(bytes({2, 0, 0, 0, 'a', 'b', 'c'}));
    EXPECT_EQ(stream->GetParmBuf(nullptr, 2), 2);
    EXPECT_EQ(stream.readable(), "c");
}

TEST(ParameterEncoding, BlockWithoutItsLengthReturnsZero) {
    for (const std::size_t count : {0u, 1u, 2u, 3u}) {
        Stream stream(std::string(count, '\1'));
        test::GuardedBytes read(4);
        EXPECT_EQ(stream->GetParmBuf(read.array(), 4), 0);
        EXPECT_TRUE(read.isUntouched());
        EXPECT_EQ(stream->ReadPosition(), 0);
    }
}

TEST(ParameterEncoding, BlockLengthPastTheContentCopiesTheRestAndThrowsFromBuffer) {
    for (const int length : {4, 100, INT_MAX - 8, INT_MAX}) {
        Stream stream(memoryOf<std::int32_t>(length) + "abc");
        test::GuardedBytes read(8);
        EXPECT_FAILURE(stream->GetParmBuf(read.array(), 8), 1239, "ut_Buffer", readAdvanceName, "") << length;
        EXPECT_EQ(read.content().substr(0, 4), "abc\x7E");
        EXPECT_TRUE(read.areGuardsWhole());
        unsigned short number = 0;
        EXPECT_FALSE(stream->GetParmUint16(&number)) << length;
        EXPECT_EQ(stream->GetParmString(), nullptr) << length;
        stream->StartInputStream();
        EXPECT_EQ(stream->ReadAvailable(), 7);
    }
}

TEST(ParameterEncoding, WithNoThrowABlockLengthPastTheContentConsumesTheRest) {
    test::LogCapture log;
    for (const int length : {4, 100, INT_MAX - 8, INT_MAX}) {
        Stream stream(memoryOf<std::int32_t>(length) + "abc", true);
        test::GuardedBytes read(8);
        EXPECT_EQ(stream->GetParmBuf(read.array(), 8), length);
        EXPECT_EQ(read.content().substr(0, 4), "abc\x7E");
        EXPECT_TRUE(read.areGuardsWhole());
        EXPECT_EQ(stream->ReadPosition(), 7) << length;
        EXPECT_EQ(stream->ReadAvailable(), 0);
    }
    EXPECT_EQ(log.count(), 0u);
}

TEST(ParameterEncoding, BlockOfNegativeLengthCopiesNothingAndThrowsFromBuffer) {
    for (const int length : {-1, -4, -100, INT_MIN}) {
        Stream stream(memoryOf<std::int32_t>(length) + "abc");
        test::GuardedBytes read(8);
        EXPECT_FAILURE(stream->GetParmBuf(read.array(), 8), 1239, "ut_Buffer", readAdvanceName, "") << length;
        EXPECT_TRUE(read.isUntouched());
        unsigned int number = 0;
        CATCH_FAILURE(stream->GetParmUint32(&number));
        CATCH_FAILURE(stream->GetParmString());
    }
}

TEST(ParameterEncoding, WithNoThrowABlockOfNegativeLengthMovesBackAtMostToTheStart) {
    for (const int length : {-1, -4, -100, INT_MIN}) {
        Stream stream(memoryOf<std::int32_t>(length) + "abc", true);
        test::GuardedBytes read(8);
        EXPECT_EQ(stream->GetParmBuf(read.array(), 8), length);
        EXPECT_TRUE(read.isUntouched());
        EXPECT_EQ(stream->ReadPosition(), std::max(4L + length, 0L)) << length;
    }
}

TYPED_TEST(ParameterArray, IsItsCountAndItsElements) {
    typename TestFixture::Array array(0);
    test::appendAll(array, this->someValues());
    Stream stream(64);
    this->put(stream, array);
    EXPECT_EQ(stream.readable(), this->encoded(this->someValues()));
    typename TestFixture::Array read(0);
    EXPECT_TRUE(this->get(stream, read));
    EXPECT_EQ(test::contentOf(read), this->someValues());
    EXPECT_EQ(stream->ReadAvailable(), 0);
}

TYPED_TEST(ParameterArray, EmptyArrayIsACountOfZero) {
    typename TestFixture::Array array(0);
    Stream stream(4);
    this->put(stream, array);
    EXPECT_EQ(stream.readable(), bytes({0, 0, 0, 0}));
    EXPECT_TRUE(this->get(stream, array));
    EXPECT_EQ(array.length(), 0u);
}

TYPED_TEST(ParameterArray, IsAppendedToTheReadersArray) {
    Stream stream(this->encoded(this->someValues()));
    typename TestFixture::Array read(1);
    read.Append(9);
    EXPECT_TRUE(this->get(stream, read));
    ASSERT_EQ(read.length(), 5u);
    EXPECT_EQ(read[0], 9);
    EXPECT_EQ(read[1], 1);
}

TYPED_TEST(ParameterArray, FillsTheSpaceExactly) {
    typename TestFixture::Array array(0);
    test::appendAll(array, this->someValues());
    Stream stream(4 + 4 * this->width);
    this->put(stream, array);
    EXPECT_EQ(stream.readable(), this->encoded(this->someValues()));
}

TYPED_TEST(ParameterArray, ThatDoesNotFitThrowsAndWritesNothing) {
    typename TestFixture::Array array(0);
    test::appendAll(array, this->someValues());
    for (const int space : {0, 3, 4, 5, 3 + 4 * this->width}) {
        Stream stream(space);
        EXPECT_FAILURE(this->put(stream, array), 1239, "ut_PutStream", TypeParam::signature(), "") << space;
        EXPECT_EQ(stream->WritePosition(), 0);
    }
    typename TestFixture::Array empty(0);
    Stream stream(3);
    EXPECT_FAILURE(this->put(stream, empty), 1239, "ut_PutStream", TypeParam::signature(), "");
}

TYPED_TEST(ParameterArray, WithNoThrowTheCountIsFullAndLaterElementsAreDropped) {
    test::LogCapture log;
    typename TestFixture::Array array(0);
    test::appendAll(array, this->someValues());
    const std::string whole = this->encoded(this->someValues());
    for (int elements = 0; elements < 4; ++elements) {
        for (int odd = 0; odd < this->width; ++odd) {
            Stream stream(4 + elements * this->width + odd, true);
            this->put(stream, array);
            EXPECT_EQ(stream.readable(), whole.substr(0, static_cast<std::size_t>(4 + elements * this->width)));
        }
    }
    for (int space = 0; space < 4; ++space) {
        Stream stream(space, true);
        this->put(stream, array);
        EXPECT_EQ(stream->WritePosition(), 0);
    }
    EXPECT_EQ(log.count(), 0u);
}

TYPED_TEST(ParameterArray, DroppedElementsAreReadAsTheLastElement) {
    typename TestFixture::Array array(0);
    test::appendAll(array, std::vector<typename TestFixture::Value>{5, 6, 7, 8});
    Stream stream(4 + 2 * this->width, true);
    this->put(stream, array);
    typename TestFixture::Array read(0);
    EXPECT_TRUE(this->get(stream, read));
    EXPECT_EQ(test::contentOf(read), (std::vector<typename TestFixture::Value>{5, 6, 6, 6}));
}

TYPED_TEST(ParameterArray, ElementsAreReadWithOneAllocation) {
    Stream stream(this->encoded(std::vector<typename TestFixture::Value>(100, 5)));
    typename TestFixture::Array read(0);
    const unsigned long before = test::allocationCount();
    EXPECT_TRUE(this->get(stream, read));
    EXPECT_EQ(test::allocationCount() - before, 1u);
}

TYPED_TEST(ParameterArray, ElementsAreReadInStepsWithoutMemoryForAll) {
    const std::vector<typename TestFixture::Value> values = {5, 6, 7};
    Stream stream(this->encoded(values));
    typename TestFixture::Array read(0);
    {
        const test::FailingAllocation failing(1);
        EXPECT_TRUE(this->get(stream, read));
    }
    EXPECT_EQ(test::contentOf(read), values);
    EXPECT_EQ(stream->ReadAvailable(), 0);
}

TYPED_TEST(ParameterArray, MissingElementsAreZeroIfNoneWasRead) {
    Stream stream(memoryOf<std::uint32_t>(3));
    typename TestFixture::Array read(0);
    EXPECT_TRUE(this->get(stream, read));
    EXPECT_EQ(test::contentOf(read), (std::vector<typename TestFixture::Value>{0, 0, 0}));
}

TYPED_TEST(ParameterArray, IncompleteElementIsNotConsumed) {
    Stream stream(memoryOf<std::uint32_t>(2) + memoryOf(static_cast<typename TestFixture::Value>(5)) + "x");
    typename TestFixture::Array read(0);
    EXPECT_TRUE(this->get(stream, read));
    EXPECT_EQ(test::contentOf(read), (std::vector<typename TestFixture::Value>{5, 5}));
    EXPECT_EQ(stream.readable(), "x");
}

TYPED_TEST(ParameterArray, ReturnsFalseWithoutItsCount) {
    for (const std::size_t count : {0u, 1u, 3u}) {
        Stream stream(std::string(count, '\1'));
        typename TestFixture::Array read(0);
        read.Append(9);
        EXPECT_FALSE(this->get(stream, read));
        EXPECT_EQ(read.length(), 1u);
        EXPECT_EQ(stream->ReadPosition(), 0);
    }
}

TYPED_TEST(ParameterArray, CountOf65535ElementsTooManyIsReadAndOneMoreIsRefused) {
    for (unsigned int held = 0; held < 3; ++held) {
        const std::string elements =
            this->encoded(this->someValues()).substr(4, held * sizeof(typename TypeParam::Value));
        Stream just(memoryOf<std::uint32_t>(held + slack) + elements);
        typename TestFixture::Array read(0);
        EXPECT_TRUE(this->get(just, read));
        EXPECT_EQ(read.length(), held + slack);
        EXPECT_EQ(read[held + slack - 1], held == 0 ? 0 : this->someValues()[held - 1]);

        Stream beyond(memoryOf<std::uint32_t>(held + slack + 1) + elements);
        typename TestFixture::Array refused(0);
        refused.Append(9);
        EXPECT_FALSE(this->get(beyond, refused));
        EXPECT_EQ(refused.length(), 1u);
    }
}

TYPED_TEST(ParameterArray, HugeCountIsRefused) {
    for (const std::uint32_t count : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu, 0x40000001u}) {
        Stream stream(memoryOf(count) + "abcdefgh");
        typename TestFixture::Array read(0);
        EXPECT_FALSE(this->get(stream, read)) << count;
        EXPECT_EQ(read.length(), 0u);
    }
}

TEST(ParameterEncoding, EmptyArrayOfTextsIsFourZeroBytes) {
    StringArray array(0);
    Stream stream(4);
    stream->PutParmStringArray(array);
    EXPECT_EQ(stream.readable(), bytes({0, 0, 0, 0}));
    EXPECT_TRUE(stream->GetParmStringArray(array));
    EXPECT_EQ(array.length(), 0u);
}

TEST(ParameterEncoding, ArrayOfTextsIsItsCountAndItsTexts) {
    StringArray array(0);
    array.Append("ab");
    array.Append("");
    array.Append("c");
    Stream stream(10);
    stream->PutParmStringArray(array);
    EXPECT_EQ(stream.readable(), bytes({3, 0, 0, 0, 'a', 'b', 0, 0, 'c', 0}));
    StringArray read(0);
    EXPECT_TRUE(stream->GetParmStringArray(read));
    EXPECT_EQ(textsOf(read), (Lines{"ab", "", "c"}));
    EXPECT_EQ(stream->ReadAvailable(), 0);
}

TEST(ParameterEncoding, NullElementWritesNothing) {
    StringArray array(0);
    array.Append("a");
    array.Append(nullptr);
    array.Append("b");
    Stream stream(16);
    stream->PutParmStringArray(array);
    EXPECT_EQ(stream.readable(), bytes({3, 0, 0, 0, 'a', 0, 'b', 0}));
    StringArray read(0);
    EXPECT_TRUE(stream->GetParmStringArray(read));
    EXPECT_EQ(textsOf(read), (Lines{"a", "b", "<null>"}));
}

TEST(ParameterEncoding, ArrayOfTextsWithoutSpaceForItsCountThrows) {
    StringArray array(0);
    for (int space = 0; space < 4; ++space) {
        Stream stream(space);
        EXPECT_FAILURE(stream->PutParmStringArray(array), 1239, "ut_PutStream",
                       writer("PutParmStringArray(utility::StringArray&)"), "");
        EXPECT_EQ(stream->WritePosition(), 0);
        test::LogCapture log;
        Stream quiet(space, true);
        quiet->PutParmStringArray(array);
        EXPECT_EQ(quiet->WritePosition(), 0);
        EXPECT_EQ(log.count(), 0u);
    }
}

TEST(ParameterEncoding, ArrayOfTextsKeepsTheTextsThatFit) {
    StringArray array(0);
    array.Append("ab");
    array.Append("volume");
    Stream stream(10);
    EXPECT_FAILURE(stream->PutParmStringArray(array), 1239, "ut_PutStream", putSName,
                   "Didn't fit. remaining=3 msg='volume'");
    EXPECT_EQ(stream.readable(), bytes({2, 0, 0, 0, 'a', 'b', 0, 'v', 'o', 'l'}));
    Stream exact(13);
    EXPECT_FAILURE(exact->PutParmStringArray(array), 1239, "ut_Buffer", writeAdvanceName, "");
    Stream countOnly(4);
    EXPECT_FAILURE(countOnly->PutParmStringArray(array), 1239, "ut_PutStream", putSName,
                   "Didn't fit. remaining=0 msg='ab'");
    EXPECT_EQ(countOnly.readable(), bytes({2, 0, 0, 0}));
}

TEST(ParameterEncoding, WithNoThrowTheLastTextOfAnArrayIsTruncated) {
    test::LogCapture log;
    StringArray array(0);
    array.Append("ab");
    array.Append("volume");
    Stream stream(10, true);
    stream->PutParmStringArray(array);
    EXPECT_EQ(stream.readable(), bytes({2, 0, 0, 0, 'a', 'b', 0, 'v', 'o', 'l'}));
    Lines expected{"0 : PutStream::PutS: Didn't fit. remaining=3 msg='volume'"};
    expected.insert(expected.end(), 4, "0 : isStringPrintableUtf8: found non-printable ASCII character 0x02\n");
    expected.push_back("0 : truncatePartialUtf8: String is not a printable UTF-8 string: '\x02'");
    EXPECT_EQ(test::traceLines(log), expected);
    StringArray read(0);
    EXPECT_TRUE(stream->GetParmStringArray(read));
    EXPECT_EQ(textsOf(read), (Lines{"ab", "vol"}));
}

TEST(ParameterEncoding, MissingTextsAreNull) {
    Stream stream(memoryOf<std::uint32_t>(4) + bytes({'a', 0, 'b'}));
    StringArray read(0);
    EXPECT_TRUE(stream->GetParmStringArray(read));
    EXPECT_EQ(textsOf(read), (Lines{"a", "b", "<null>", "<null>"}));
}

TEST(ParameterEncoding, ArrayOfTextsWithoutItsCountReturnsFalse) {
    for (const std::size_t count : {0u, 1u, 3u}) {
        Stream stream(std::string(count, '\1'));
        StringArray read(0);
        read.Append("kept");
        EXPECT_FALSE(stream->GetParmStringArray(read));
        EXPECT_EQ(textsOf(read), (Lines{"kept"}));
        EXPECT_EQ(stream->ReadPosition(), 0);
    }
}

TEST(ParameterEncoding, CountOf65535TextsTooManyIsReadAndOneMoreIsRefused) {
    Stream just(memoryOf<std::uint32_t>(2 + slack) + bytes({0, 0}));
    StringArray read(0);
    EXPECT_TRUE(just->GetParmStringArray(read));
    EXPECT_EQ(read.length(), 2 + slack);
    EXPECT_STREQ(read.ElementAt(1), "");
    EXPECT_EQ(read.ElementAt(2), nullptr);
    Stream beyond(memoryOf<std::uint32_t>(3 + slack) + bytes({0, 0}));
    StringArray refused(0);
    refused.Append("kept");
    EXPECT_FALSE(beyond->GetParmStringArray(refused));
    EXPECT_EQ(textsOf(refused), (Lines{"kept"}));
    Stream huge(memoryOf<std::uint32_t>(0xFFFFFFFFu) + "abc");
    EXPECT_FALSE(huge->GetParmStringArray(refused));
}

TEST(ParameterEncoding, NothingIsReadAfterAFailureUntilARewind) {
    Stream stream(memoryOf<std::int32_t>(1000) + "abc");
    char block[4];
    EXPECT_NE(CATCH_FAILURE(stream->GetParmBuf(block, 4)), nullptr);
    unsigned short uint16;
    short sint16;
    unsigned int uint32;
    int sint32;
    StringArray texts(0);
    IntArray numbers(0);
    EXPECT_FALSE(stream->GetParmUint16(&uint16));
    EXPECT_FALSE(stream->GetParmSint16(&sint16));
    EXPECT_FALSE(stream->GetParmUint32(&uint32));
    EXPECT_FALSE(stream->GetParmSint32(&sint32));
    EXPECT_FALSE(stream->GetParmStringArray(texts));
    EXPECT_FALSE(stream->GetParmSint32Array(numbers));
    EXPECT_EQ(stream->GetParmBuf(block, 4), 0);
    EXPECT_EQ(stream->GetParmString(), nullptr);
    stream->Rewind();
    stream->PutParmUint32(7);
    EXPECT_TRUE(stream->GetParmUint32(&uint32));
    EXPECT_EQ(uint32, 7u);
}

TEST(ParameterEncoding, EveryWriterRefusesAfterAnOverrun) {
    Stream stream(8);
    EXPECT_NE(CATCH_FAILURE(stream->WriteAdvance(100)), nullptr);
    char block[] = "abc";
    StringArray texts(0);
    IntArray numbers(0);
    EXPECT_NE(CATCH_FAILURE(stream->PutParmUint16(1)), nullptr);
    EXPECT_NE(CATCH_FAILURE(stream->PutParmSint32(1)), nullptr);
    EXPECT_NE(CATCH_FAILURE(stream->PutParmBuf(block, 0)), nullptr);
    EXPECT_NE(CATCH_FAILURE(stream->PutParmStringArray(texts)), nullptr);
    EXPECT_NE(CATCH_FAILURE(stream->PutParmSint32Array(numbers)), nullptr);
    EXPECT_NE(CATCH_FAILURE(stream->PutParmString("")), nullptr);
    stream->Rewind();
    stream->PutParmString("ports");
    EXPECT_STREQ(stream->GetParmString(), "ports");
}

// One value of the encoding: how it is written, how it is read back, and its expected bytes.
class Field {
public:
    virtual ~Field() = default;
    virtual void write(BufferStream& stream) = 0;
    virtual bool readsBack(BufferStream& stream) = 0;
    virtual std::string encoded() const = 0;
};

template<class Value, class Writer, class Reader, Writer put, Reader get>
class NumberField : public Field {
public:
    explicit NumberField(Value value) : m_value(value) {}
    void write(BufferStream& stream) override {
        (stream.*put)(m_value);
    }
    bool readsBack(BufferStream& stream) override {
        Value read = static_cast<Value>(~m_value);
        return (stream.*get)(&read) && read == m_value;
    }
    std::string encoded() const override {
        return memoryOf(m_value);
    }

private:
    Value m_value;
};

#define NUMBER_FIELD(Value, put, get)                                                                                  \
    NumberField<Value, decltype(&BufferStream::put), decltype(&BufferStream::get), &BufferStream::put,                 \
                &BufferStream::get>

using Uint16Field = NUMBER_FIELD(unsigned short, PutParmUint16, GetParmUint16);
using Sint16Field = NUMBER_FIELD(short, PutParmSint16, GetParmSint16);
using Uint32Field = NUMBER_FIELD(unsigned int, PutParmUint32, GetParmUint32);
using Sint32Field = NUMBER_FIELD(int, PutParmSint32, GetParmSint32);

#undef NUMBER_FIELD

class TextField : public Field {
public:
    explicit TextField(std::string text) : m_text(std::move(text)) {}
    void write(BufferStream& stream) override {
        stream.PutParmString(m_text.c_str());
    }
    bool readsBack(BufferStream& stream) override {
        const char* const read = stream.GetParmString();
        return read != nullptr && m_text == read;
    }
    std::string encoded() const override {
        return m_text + '\0';
    }

private:
    std::string m_text;
};

class BlockField : public Field {
public:
    BlockField(std::string block, std::size_t maximum) : m_block(std::move(block)), m_maximum(maximum) {}
    void write(BufferStream& stream) override {
        stream.PutParmBuf(m_block.data(), static_cast<int>(m_block.size()));
    }
    bool readsBack(BufferStream& stream) override {
        test::GuardedBytes read(m_maximum);
        const std::size_t taken = std::min(m_block.size(), m_maximum);
        return stream.GetParmBuf(read.array(), read.size()) == static_cast<int>(m_block.size()) &&
               read.content() == m_block.substr(0, taken) + std::string(m_maximum - taken, test::GuardedBytes::fill) &&
               read.areGuardsWhole();
    }
    std::string encoded() const override {
        return memoryOf(static_cast<std::uint32_t>(m_block.size())) + m_block;
    }

private:
    std::string m_block;
    std::size_t m_maximum;
};

template<class Form>
class ArrayField : public Field {
public:
    using Value = typename Form::Value;
    explicit ArrayField(std::vector<Value> values) : m_values(std::move(values)) {}
    void write(BufferStream& stream) override {
        typename Form::Array array(0);
        test::appendAll(array, m_values);
        (stream.*Form::put)(array);
    }
    bool readsBack(BufferStream& stream) override {
        typename Form::Array array(0);
        return (stream.*Form::get)(array) && test::contentOf(array) == m_values;
    }
    std::string encoded() const override {
        std::string text = memoryOf(static_cast<std::uint32_t>(m_values.size()));
        for (const Value value : m_values)
            text += memoryOf(value);
        return text;
    }

private:
    std::vector<Value> m_values;
};

class TextArrayField : public Field {
public:
    explicit TextArrayField(Lines texts) : m_texts(std::move(texts)) {}
    void write(BufferStream& stream) override {
        StringArray array(0);
        for (const std::string& text : m_texts)
            array.Append(text.c_str());
        stream.PutParmStringArray(array);
    }
    bool readsBack(BufferStream& stream) override {
        StringArray array(0);
        return stream.GetParmStringArray(array) && textsOf(array) == m_texts;
    }
    std::string encoded() const override {
        std::string text = memoryOf(static_cast<std::uint32_t>(m_texts.size()));
        for (const std::string& element : m_texts)
            text += element + '\0';
        return text;
    }

private:
    Lines m_texts;
};

unsigned int anyNumber(test::RandomRun& random) {
    const unsigned int limits[] = {0, 1, 0x7FFF, 0x8000, 0xFFFF, 0x7FFFFFFF, 0x80000000u, 0xFFFFFFFFu};
    return random.below(2) == 0 ? limits[random.below(8)] : random.below(0x10000) << 16 | random.below(0x10000);
}

std::string anyBytes(test::RandomRun& random, unsigned int longest) {
    std::string text(random.below(longest + 1), '\0');
    for (char& c : text)
        c = static_cast<char>(random.below(256));
    return text;
}

std::string anyText(test::RandomRun& random) {
    std::string text = anyBytes(random, 20);
    std::replace(text.begin(), text.end(), '\0', 'x');
    return text;
}

template<class Value>
std::vector<Value> anyValues(test::RandomRun& random) {
    std::vector<Value> values(random.below(30));
    for (Value& value : values)
        value = static_cast<Value>(anyNumber(random));
    return values;
}

std::unique_ptr<Field> anyField(test::RandomRun& random) {
    switch (random.below(11)) {
    case 0:
        return std::make_unique<Uint16Field>(static_cast<unsigned short>(anyNumber(random)));
    case 1:
        return std::make_unique<Sint16Field>(static_cast<short>(anyNumber(random)));
    case 2:
        return std::make_unique<Uint32Field>(anyNumber(random));
    case 3:
        return std::make_unique<Sint32Field>(static_cast<int>(anyNumber(random)));
    case 4: {
        const std::string block = anyBytes(random, 50);
        return std::make_unique<BlockField>(block, random.below(60));
    }
    case 5:
        return std::make_unique<ArrayField<Uint16>>(anyValues<unsigned short>(random));
    case 6:
        return std::make_unique<ArrayField<Uint32>>(anyValues<unsigned int>(random));
    case 7:
        return std::make_unique<ArrayField<Sint16>>(anyValues<short>(random));
    case 8:
        return std::make_unique<ArrayField<Sint32>>(anyValues<int>(random));
    case 9: {
        Lines texts(random.below(8));
        for (std::string& text : texts)
            text = anyText(random);
        return std::make_unique<TextArrayField>(texts);
    }
    default:
        return std::make_unique<TextField>(anyText(random));
    }
}

std::vector<std::unique_ptr<Field>> anyFields(test::RandomRun& random, unsigned int most) {
    std::vector<std::unique_ptr<Field>> fields(random.below(most + 1));
    for (std::unique_ptr<Field>& field : fields)
        field = anyField(random);
    return fields;
}

std::string encoded(const std::vector<std::unique_ptr<Field>>& fields) {
    std::string text;
    for (const std::unique_ptr<Field>& field : fields)
        text += field->encoded();
    return text;
}

// Reads a value of a random kind. The value is not checked: only that reads stay in bounds.
void readAnything(test::RandomRun& random, BufferStream& stream) {
    unsigned short uint16 = 0;
    short sint16 = 0;
    unsigned int uint32 = 0;
    int sint32 = 0;
    switch (random.below(11)) {
    case 0:
        stream.GetParmUint16(&uint16);
        return;
    case 1:
        stream.GetParmSint16(&sint16);
        return;
    case 2:
        stream.GetParmUint32(&uint32);
        return;
    case 3:
        stream.GetParmSint32(&sint32);
        return;
    case 4: {
        test::GuardedBytes read(random.below(20));
        const auto failure = CATCH_FAILURE(stream.GetParmBuf(read.array(), read.size()));
        EXPECT_TRUE(read.areGuardsWhole());
        if (failure) {
            EXPECT_EQ(failure->code(), 1239u);
            EXPECT_STREQ(failure->file(), "ut_Buffer");
        }
        return;
    }
    case 5: {
        UShortArray array(mostRead);
        stream.GetParmUint16Array(array);
        EXPECT_LE(array.length(), mostRead);
        return;
    }
    case 6: {
        UIntArray array(mostRead);
        stream.GetParmUint32Array(array);
        EXPECT_LE(array.length(), mostRead);
        return;
    }
    case 7: {
        ShortArray array(mostRead);
        stream.GetParmSint16Array(array);
        EXPECT_LE(array.length(), mostRead);
        return;
    }
    case 8: {
        IntArray array(mostRead);
        stream.GetParmSint32Array(array);
        EXPECT_LE(array.length(), mostRead);
        return;
    }
    case 9: {
        StringArray array(mostRead);
        stream.GetParmStringArray(array);
        EXPECT_LE(array.length(), mostRead);
        return;
    }
    default:
        const char* const text = stream.GetParmString();
        EXPECT_LE(text ? std::strlen(text) : 0, static_cast<std::size_t>(stream.Size()));
    }
}

// Bytes that contain both small and extreme lengths and counts.
std::string hostileBytes(test::RandomRun& random) {
    std::string text;
    for (unsigned int pieces = random.below(12); pieces > 0; --pieces)
        text += random.below(2) == 0 ? memoryOf(static_cast<std::int32_t>(random.below(16)) - 4)
                                     : (random.below(2) == 0 ? memoryOf(anyNumber(random)) : anyBytes(random, 9));
    return text;
}

TEST(ParameterEncoding, RandomFieldsRoundTripInExactlyTheirBytes) {
    test::RandomRun random;
    while (random.steps(2000)) {
        const auto fields = anyFields(random, 12);
        const std::string expected = encoded(fields);
        Stream stream(static_cast<int>(expected.size()));
        for (const std::unique_ptr<Field>& field : fields)
            field->write(*stream);
        ASSERT_EQ(stream.readable(), expected);
        for (const std::unique_ptr<Field>& field : fields)
            ASSERT_TRUE(field->readsBack(*stream));
        ASSERT_EQ(stream->ReadAvailable(), 0);
        ASSERT_EQ(stream->GetParmString(), nullptr);
    }
}

TEST(ParameterEncoding, RandomFieldsThatDoNotFitThrow) {
    test::RandomRun random;
    while (random.steps(2000)) {
        const auto fields = anyFields(random, 6);
        const std::string expected = encoded(fields);
        if (expected.empty())
            continue;
        const unsigned int space = random.below(static_cast<unsigned int>(expected.size()));
        Stream stream(static_cast<int>(space));
        const auto failure = CATCH_FAILURE({
            for (const std::unique_ptr<Field>& field : fields)
                field->write(*stream);
        });
        ASSERT_NE(failure, nullptr);
        ASSERT_EQ(failure->code(), 1239u);
        stream->Rewind();
        ASSERT_EQ(stream->WriteRemaining(), static_cast<int>(space));
    }
}

TEST(ParameterEncoding, WithNoThrowRandomFieldsThatDoNotFitStayInBounds) {
    const test::LogCapture log;
    test::RandomRun random;
    while (random.steps(1000)) {
        const auto fields = anyFields(random, 6);
        const std::string expected = encoded(fields);
        Stream stream(static_cast<int>(random.below(static_cast<unsigned int>(expected.size()) + 1)), true);
        for (const std::unique_ptr<Field>& field : fields) {
            field->write(*stream);
            ASSERT_LE(0, stream->ReadPosition());
            ASSERT_LE(stream->ReadPosition(), stream->WritePosition());
            ASSERT_LE(stream->WritePosition(), stream->Size());
        }
    }
}

TEST(ParameterEncoding, HostileBytesAreReadWithinTheirBounds) {
    const test::LogCapture log;
    test::RandomRun random;
    while (random.steps(3000)) {
        const bool noThrow = random.below(2) == 0;
        Stream stream(hostileBytes(random), noThrow);
        for (int reads = 0; reads < 10; ++reads) {
            readAnything(random, *stream);
            if (noThrow) {
                ASSERT_LE(0, stream->ReadPosition());
                ASSERT_LE(stream->ReadPosition(), stream->WritePosition());
            }
        }
        stream->Rewind();
        ASSERT_EQ(stream->ReadAvailable(), 0);
    }
}

} // namespace
