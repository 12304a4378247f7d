#include "ut_PutStream.h"

#include <climits>
#include <cstdarg>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "CountingMemory.h"
#include "ExpectFailure.h"
#include "GuardedBytes.h"
#include "HeldBytes.h"
#include "LogCapture.h"
#include "OpenDescriptors.h"
#include "OverstatedSpace.h"
#include "PutV.h"
#include "TemporaryDirectory.h"
#include "TraceLines.h"
#include "Umask.h"
#include "VirtualSlot.h"

namespace {

using test::heldBytes;
using test::lowestFreeDescriptor;
using test::putV;
using test::traceLine;
using utility::PutStream;
using Lines = std::vector<std::string>;

constexpr const char* putCName = "void utility::PutStream::PutC(char)";
constexpr const char* putBName = "virtual void utility::PutStream::PutB(const char*, int)";
constexpr const char* putSName = "void utility::PutStream::PutS(const char*)";
constexpr const char* putFName = "void utility::PutStream::PutF(const char*, ...)";
constexpr const char* writeAdvanceName = "virtual void utility::Buffer::WriteAdvance(int)";

static_assert(std::is_base_of<framework::OutputStream, PutStream>::value, "a writer is a sink");
static_assert(std::is_base_of<utility::Decorator, PutStream>::value, "a writer can be decorated");
static_assert(!std::is_constructible<PutStream, const char*>::value, "a path is not written to by its name");

// How this platform spells a `va_list` parameter in a signature text.
struct Spelling {
    static std::string PutV(const char*, va_list) {
        const std::string signature = __PRETTY_FUNCTION__;
        return "void utility::PutStream::" + signature.substr(signature.find("PutV("));
    }
};

std::string putVSignature(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const std::string signature = Spelling::PutV(format, arguments);
    va_end(arguments);
    return signature;
}

// A stream of `capacity` characters with its own array between guard bytes.
class Text : public PutStream {
public:
    explicit Text(int capacity, bool noThrow = false) : Text(new test::GuardedBytes(arraySize(capacity)), noThrow) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() override {
        EXPECT_TRUE(m_bytes->areGuardsWhole());
    }
    bool isTerminated() const {
        return *pHead() == 0;
    }
    std::string bytes() const {
        return m_bytes->content();
    }
    bool isDecorating() const {
        return m_decorating;
    }

private:
    static std::size_t arraySize(int capacity) {
        return static_cast<std::size_t>(capacity) + 1;
    }
    Text(test::GuardedBytes* bytes, bool noThrow) : PutStream(bytes->array(), bytes->size()), m_bytes(bytes) {
        setNoThrow(noThrow);
    }

    std::unique_ptr<test::GuardedBytes> m_bytes;
};

// Counts the calls of `WriteRemaining`, and drains the buffer when it is full.
class Draining : public PutStream {
public:
    Draining() : PutStream(m_array, sizeof m_array) {}
    int WriteRemaining() const override {
        ++asked;
        if (Buffer::WriteRemaining() == 0) {
            drained += std::string(pTail(), static_cast<std::size_t>(ReadAvailable()));
            const_cast<Draining*>(this)->Rewind();
        }
        return Buffer::WriteRemaining();
    }
    void WriteAdvance(int n) override {
        ++advanced;
        PutStream::WriteAdvance(n);
    }
    mutable int asked = 0;
    int advanced = 0;
    mutable std::string drained;

private:
    char m_array[5];
};

// Overwrites the byte at the write position, as a stream may that moves its content in `WriteAdvance`.
class Marking : public Text {
public:
    using Text::Text;
    void WriteAdvance(int n) override {
        Text::WriteAdvance(n);
        *pHead() = '!';
    }
};

// Reports no space in the first call only, as a stream does after its target refused a flush.
class FullAtFirst : public Text {
public:
    using Text::Text;
    int WriteRemaining() const override {
        return ++asked == 1 ? 0 : Text::WriteRemaining();
    }
    mutable int asked = 0;
};

TEST(PutStream, UsageExample) {
    char text[64];
    utility::PutStream out(text, sizeof text);
    out.PutF("%s=%d", "ports", 4);
    EXPECT_STREQ(text, "ports=4");
}

TEST(PutStream, StartsEmptyAndUndecorated) {
    struct Plain : PutStream {
        using PutStream::m_decorating;
    };
    const Plain plain;
    EXPECT_FALSE(plain.m_decorating);
    EXPECT_FALSE(Text(4).isDecorating());
    EXPECT_FALSE(plain.isNoThrow());
    EXPECT_EQ(plain.Size(), 0);
    EXPECT_EQ(plain.pBuffer(), nullptr);
    EXPECT_EQ(plain.WriteRemaining(), 0);
}

TEST(PutStream, ReservesTheLastByteOfTheArrayForTheTerminator) {
    test::GuardedBytes bytes(8);
    const PutStream out(bytes.array(), bytes.size());
    EXPECT_EQ(out.Size(), 7);
    EXPECT_EQ(out.WriteRemaining(), 7);
    EXPECT_EQ(bytes.content(), std::string("\0\x7E\x7E\x7E\x7E\x7E\x7E\0", 8));
    EXPECT_TRUE(bytes.areGuardsWhole());
    EXPECT_FALSE(out.isNoThrow());
}

TEST(PutStream, AnArrayOfOneByteHoldsOnlyTheTerminator) {
    test::GuardedBytes bytes(1);
    PutStream out(bytes.array(), 1);
    EXPECT_EQ(out.Size(), 0);
    EXPECT_EQ(bytes.content(), std::string(1, '\0'));
    EXPECT_FAILURE(out.PutC('a'), 1239, "ut_PutStream", putCName, "");
    EXPECT_FAILURE(out.PutF("a"), 1239, "ut_PutStream", putFName, "Didn't fit. wrote=1 remaining=0 msg='a'");
    out.PutF("%s", "");
    out.PutB("a", 0);
    EXPECT_EQ(bytes.content(), std::string(1, '\0'));
    EXPECT_TRUE(bytes.areGuardsWhole());
}

TEST(PutStream, AnArrayOfNoBytesIsNotTouched) {
    for (const int size : {0, -1, INT_MIN}) {
        test::GuardedBytes bytes(4);
        PutStream out(bytes.array(), size);
        EXPECT_EQ(out.Size(), 0) << size;
        EXPECT_FAILURE(out.PutC('a'), 1239, "ut_PutStream", putCName, "");
        EXPECT_NE(CATCH_FAILURE(out.PutS("a")), nullptr);
        out.Rewind();
        EXPECT_NE(CATCH_FAILURE(out.PutF("a")), nullptr);
        EXPECT_NE(CATCH_FAILURE(out.SendOutputStream("a", 1)), nullptr);
        out.StartOutputStream();
        EXPECT_TRUE(bytes.isUntouched());
    }
}

TEST(PutStream, WithoutStorageNothingFits) {
    PutStream out;
    EXPECT_FAILURE(out.PutC('a'), 1239, "ut_PutStream", putCName, "");
    EXPECT_FAILURE(out.PutB("ab", 2), 1239, "ut_PutStream", putBName, "Didn't fit. size=2 remaining=0 msg='ab'");
    EXPECT_FAILURE(out.PutS("ab"), 1239, "ut_PutStream", putSName, "Didn't fit. remaining=0 msg='ab'");
    EXPECT_FAILURE(out.PutF("ab"), 1239, "ut_PutStream", putFName, "Didn't fit. wrote=2 remaining=0 msg='ab'");
    EXPECT_TRUE(out.StartOutputStream());
    EXPECT_FALSE(out.isOutputStreamGood());
}

TEST(PutStream, NothingFitsANullArray) {
    PutStream out(nullptr, 8);
    EXPECT_EQ(out.Size(), 7);
    EXPECT_NE(CATCH_FAILURE(out.PutC('a')), nullptr);
    out.Rewind();
    EXPECT_NE(CATCH_FAILURE(out.PutS("a")), nullptr);
    out.Rewind();
    EXPECT_NE(CATCH_FAILURE(out.PutB("a", 1)), nullptr);
    out.Rewind();
    EXPECT_NE(CATCH_FAILURE(out.PutF("a")), nullptr);
    out.Rewind();
    EXPECT_EQ(out.ReadAvailable(), 0);
}

TEST(PutStream, WithNoThrowNothingFitsANullArraySilently) {
    const test::LogCapture log;
    PutStream out(nullptr, 8);
    out.setNoThrow(true);
    EXPECT_EQ(CATCH_FAILURE({
                  out.PutC('a');
                  out.PutS("a");
                  out.PutB("a", 1);
                  out.PutF("a");
                  putV(out, "a");
                  out.SendOutputStream("a", 1);
                  out.Indent(2);
                  out.Indent(-1);
              }),
              nullptr);
    EXPECT_EQ(out.pBuffer(), nullptr);
}

TEST(PutStream, VirtualOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&PutStream::StartOutputStream), 2);
    EXPECT_EQ(test::virtualSlot(&PutStream::EndOutputStream), 3);
    EXPECT_EQ(test::virtualSlot(&PutStream::SendOutputStream), 4);
    EXPECT_EQ(test::virtualSlot(&PutStream::isOutputStreamOpen), 7);
    EXPECT_EQ(test::virtualSlot(&PutStream::isOutputStreamInError), 8);
    EXPECT_EQ(test::virtualSlot(&PutStream::isOutputStreamAtEnd), 9);
    EXPECT_EQ(test::virtualSlot(&PutStream::PutB), 11);
    EXPECT_EQ(test::virtualSlot(&PutStream::Indent), 12);
}

TEST(PutStream, IsAllocatedFromTheMemoryObject) {
    char text[8];
    test::CountingMemory memory;
    PutStream* const out = new PutStream(text, sizeof text);
    EXPECT_EQ(memory.outstanding(), 1u);
    delete static_cast<framework::OutputStream*>(out);
    EXPECT_EQ(memory.outstanding(), 0u);
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(PutStream, PutCStoresAndTerminates) {
    Text out(3);
    out.PutC('a');
    EXPECT_EQ(out.bytes(), std::string("a\0\x7E\0", 4));
    out.PutC('\0');
    out.PutC('\xFF');
    EXPECT_EQ(heldBytes(out), std::string("a\0\xFF", 3));
    EXPECT_TRUE(out.isTerminated());
}

TEST(PutStream, TheEighthCharacterOfEightBytesThrows) {
    char text[8];
    PutStream out(text, 8);
    for (char c = '1'; c <= '7'; ++c)
        out.PutC(c);
    EXPECT_FAILURE(out.PutC('8'), 1239, "ut_PutStream", putCName, "");
    EXPECT_STREQ(text, "1234567");
    EXPECT_EQ(out.WritePosition(), 7);
}

TEST(PutStream, WithNoThrowTheEighthCharacterOfEightBytesIsDroppedSilently) {
    test::LogCapture log;
    char text[8];
    PutStream out(text, 8);
    out.setNoThrow(true);
    for (char c = '1'; c <= '9'; ++c)
        out.PutC(c);
    EXPECT_STREQ(text, "1234567");
    EXPECT_EQ(log.count(), 0u);
}

TEST(PutStream, PutBCopiesWithoutATerminator) {
    Text out(6);
    out.PutB("ab\0d", 4);
    EXPECT_EQ(out.bytes(), std::string("ab\0d\x7E\x7E\0", 7));
    EXPECT_EQ(out.WritePosition(), 4);
}

TEST(PutStream, PutBFillsTheSpaceExactly) {
    Text out(4);
    out.PutB("abcd", 4);
    EXPECT_EQ(heldBytes(out), "abcd");
    out.PutB("", 0);
    out.PutB("x", 0);
    EXPECT_EQ(heldBytes(out), "abcd");
}

TEST(PutStream, PutBOfOneByteTooManyThrowsAndWritesNothing) {
    Text out(4);
    out.PutC('x');
    EXPECT_FAILURE(out.PutB("abcd", 4), 1239, "ut_PutStream", putBName, "Didn't fit. size=4 remaining=3 msg='abcd'");
    EXPECT_EQ(heldBytes(out), "x");
    EXPECT_EQ(out.bytes(), std::string("x\0\x7E\x7E\0", 5));
}

TEST(PutStream, PutBShowsAtMost90BytesOfTheDataInItsMessage) {
    Text out(4);
    const std::string block = std::string(90, 'a') + "b";
    EXPECT_FAILURE(out.PutB(block.data(), 90), 1239, "ut_PutStream", putBName,
                   "Didn't fit. size=90 remaining=4 msg='" + std::string(90, 'a') + "'");
    EXPECT_FAILURE(out.PutB(block.data(), 91), 1239, "ut_PutStream", putBName,
                   "Didn't fit. size=91 remaining=4 msg='" + std::string(90, 'a') + "'");
}

TEST(PutStream, PutBShowsNoByteAfterTheData) {
    const std::vector<char> block(5, 'a');
    test::LogCapture log;
    Text out(4);
    EXPECT_FAILURE(out.PutB(block.data(), 5), 1239, "ut_PutStream", putBName,
                   "Didn't fit. size=5 remaining=4 msg='aaaaa'");
    EXPECT_FAILURE(out.PutB("ab\0cdef", 7), 1239, "ut_PutStream", putBName, "Didn't fit. size=7 remaining=4 msg='ab'");
    out.setNoThrow(true);
    out.PutB(block.data(), 5);
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(0, "", "PutStream::PutB: Didn't fit. size=5 remaining=4 msg='aaaaa'")}));
}

TEST(PutStream, WithNoThrowPutBTruncatesAndLogs) {
    test::LogCapture log;
    Text out(6, true);
    out.PutS("ab");
    out.PutB("cdefgh", 6);
    EXPECT_EQ(heldBytes(out), "abcdef");
    EXPECT_TRUE(out.isTerminated());
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(0, "", "PutStream::PutB: Didn't fit. size=6 remaining=4 msg='cdefgh'")}));
}

TEST(PutStream, WithNoThrowPutBTruncatesAfterACompleteCharacter) {
    test::LogCapture log;
    Text out(4, true);
    out.PutB("ab\xE2\x82\xAC", 5);
    EXPECT_EQ(heldBytes(out), "ab");
    EXPECT_TRUE(out.isTerminated());
    ASSERT_GE(log.count(), 1u);
    EXPECT_EQ(test::traceLines(log)[0],
              traceLine(0, "", "PutStream::PutB: Didn't fit. size=5 remaining=4 msg='ab\xE2\x82\xAC'"));
}

TEST(PutStream, WithNoThrowPutBLogsAtMost200BytesOfTheData) {
    test::LogCapture log;
    Text out(2, true);
    out.PutB(std::string(250, 'x').data(), 250);
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(
                  0, "", "PutStream::PutB: Didn't fit. size=250 remaining=2 msg='" + std::string(200, 'x') + "'")}));
    EXPECT_EQ(heldBytes(out), "xx");
}

TEST(PutStream, WithNoThrowPutBToAFullStreamWritesNothing) {
    test::LogCapture log;
    Text out(2, true);
    out.PutB("ab", 2);
    out.PutB("c", 1);
    EXPECT_EQ(heldBytes(out), "ab");
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(0, "", "PutStream::PutB: Didn't fit. size=1 remaining=0 msg='c'")}));
}

TEST(PutStream, PutBOfANegativeCountIsRefusedByTheWritePosition) {
    Text out(8);
    out.PutS("abcd");
    EXPECT_FAILURE(out.PutB("xy", -1), 1239, "ut_Buffer", writeAdvanceName, "");
    out.Rewind();
    EXPECT_NE(CATCH_FAILURE(out.PutB("xy", INT_MIN)), nullptr);
    out.Rewind();
    out.setNoThrow(true);
    out.PutS("abcd");
    out.PutB("xy", -100);
    EXPECT_EQ(out.WritePosition(), 0);
}

TEST(PutStream, NullTextsAndBlocksWriteNothing) {
    test::LogCapture log;
    const char* const noFormat = nullptr;
    for (const bool noThrow : {false, true}) {
        Text out(2, noThrow);
        out.PutB(nullptr, 5);
        out.PutB(nullptr, -5);
        out.PutS(nullptr);
        putV(out, noFormat);
        EXPECT_EQ(out.WritePosition(), 0);
        EXPECT_EQ(out.bytes(), std::string("\0\x7E\0", 3));
    }
    EXPECT_EQ(log.count(), 0u);
}

TEST(PutStream, PutSWritesATextAndTerminates) {
    Text out(8);
    out.PutS("vol");
    out.PutS("");
    out.PutS("ume");
    EXPECT_EQ(out.bytes(), std::string("volume\0\x7E\0", 9));
    EXPECT_EQ(out.WritePosition(), 6);
}

TEST(PutStream, PutSOfATextOneByteShorterThanTheSpaceFits) {
    Text out(6);
    out.PutS("ports");
    EXPECT_EQ(heldBytes(out), "ports");
    EXPECT_TRUE(out.isTerminated());
    EXPECT_EQ(out.WriteRemaining(), 1);
}

TEST(PutStream, PutSOfATextExactlyAsLongAsTheSpaceThrowsFromBuffer) {
    Text out(6);
    out.PutC('x');
    EXPECT_FAILURE(out.PutS("ports"), 1239, "ut_Buffer", writeAdvanceName, "");
    EXPECT_EQ(out.WritePosition(), -1);
    EXPECT_EQ(out.ReadPosition(), 0);
    EXPECT_EQ(out.bytes(), std::string("xports\0", 7));
}

TEST(PutStream, PutSOfTheEmptyTextToAFullStreamThrowsFromBuffer) {
    Text out(2);
    out.PutF("ab");
    EXPECT_FAILURE(out.PutS(""), 1239, "ut_Buffer", writeAdvanceName, "");
    EXPECT_EQ(out.WritePosition(), -1);
}

TEST(PutStream, WithNoThrowPutSOfATextExactlyAsLongAsTheSpaceMovesBackToTheReadPosition) {
    test::LogCapture log;
    Text out(6, true);
    out.PutS("ab");
    out.ReadAdvance(1);
    out.PutS("cdef");
    EXPECT_EQ(out.WritePosition(), 1);
    EXPECT_EQ(out.ReadPosition(), 1);
    EXPECT_EQ(log.count(), 0u);
    out.PutS("xyz");
    EXPECT_EQ(heldBytes(out), "xyz");
}

TEST(PutStream, CanBeQueriedRewoundAndUsedAfterAnExactText) {
    const test::LogCapture log;
    Text out(4);
    EXPECT_NE(CATCH_FAILURE(out.PutS("abcd")), nullptr);
    EXPECT_EQ(out.WriteRemaining(), 5);
    EXPECT_EQ(out.ReadAvailable(), -1);
    EXPECT_NE(CATCH_FAILURE(out.PutC('x')), nullptr);
    CATCH_FAILURE(out.PutB("xyz", 3));
    CATCH_FAILURE(out.PutS("xyz"));
    CATCH_FAILURE(out.PutF("%s", "xyz"));
    CATCH_FAILURE(putV(out, "%s", "xyz"));
    CATCH_FAILURE(out.SendOutputStream("xyz", 3));
    CATCH_FAILURE(out.PutParmUint32(1));
    CATCH_FAILURE(out.Indent(3));
    CATCH_FAILURE(out.Indent(-1));
    CATCH_FAILURE(out.truncatePartialUtf8());
    CATCH_FAILURE(out.Consolidate());
    out.Rewind();
    out.PutS("abc");
    EXPECT_EQ(heldBytes(out), "abc");
}

TEST(PutStream, CanBeQueriedRewoundAndUsedAfterAnOverrun) {
    const test::LogCapture log;
    Text out(4);
    EXPECT_NE(CATCH_FAILURE(out.WriteAdvance(50)), nullptr);
    EXPECT_EQ(out.WriteRemaining(), -46);
    EXPECT_FALSE(out.isOutputStreamOpen());
    EXPECT_TRUE(out.isOutputStreamInError());
    EXPECT_TRUE(out.isOutputStreamAtEnd());
    EXPECT_NE(CATCH_FAILURE(out.PutC('x')), nullptr);
    EXPECT_NE(CATCH_FAILURE(out.PutB("xyz", 3)), nullptr);
    EXPECT_NE(CATCH_FAILURE(out.PutS("xyz")), nullptr);
    out.Rewind();
    EXPECT_NE(CATCH_FAILURE(out.WriteAdvance(50)), nullptr);
    EXPECT_NE(CATCH_FAILURE(out.PutF("%s", "xyz")), nullptr);
    out.Rewind();
    EXPECT_NE(CATCH_FAILURE(out.WriteAdvance(50)), nullptr);
    EXPECT_NE(CATCH_FAILURE(putV(out, "%s", "xyz")), nullptr);
    out.Rewind();
    EXPECT_NE(CATCH_FAILURE(out.WriteAdvance(50)), nullptr);
    EXPECT_NE(CATCH_FAILURE(out.SendOutputStream("xyz", 3)), nullptr);
    out.setNoThrow(true);
    out.PutC('x');
    out.PutB("xyz", 3);
    out.PutS("xyz");
    out.PutF("%s", "xyz");
    putV(out, "%s", "xyz");
    out.SendOutputStream("xyz", 3);
    out.Indent(-1);
    out.Rewind();
    out.PutS("abc");
    EXPECT_EQ(heldBytes(out), "abc");
}

TEST(PutStream, PutSOfATooLongTextWritesWhatFitsAndThrows) {
    Text out(6);
    out.PutC('x');
    EXPECT_FAILURE(out.PutS("volume"), 1239, "ut_PutStream", putSName, "Didn't fit. remaining=5 msg='volume'");
    EXPECT_EQ(heldBytes(out), "xvolum");
    EXPECT_EQ(out.WritePosition(), 6);
    EXPECT_TRUE(out.isTerminated());
}

TEST(PutStream, PutSShowsAtMost90BytesInItsMessage) {
    Text out(4);
    EXPECT_FAILURE(out.PutS(std::string(91, 'a').c_str()), 1239, "ut_PutStream", putSName,
                   "Didn't fit. remaining=4 msg='" + std::string(90, 'a') + "'");
}

TEST(PutStream, WithNoThrowPutSTruncatesAfterACompleteCharacterAndLogs) {
    test::LogCapture log;
    Text out(5, true);
    out.PutC('x');
    out.PutS("abcdef");
    EXPECT_EQ(heldBytes(out), "xabcd");
    EXPECT_TRUE(out.isTerminated());
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(0, "", "PutStream::PutS: Didn't fit. remaining=4 msg='abcdef'")}));
    out.Rewind();
    out.PutS("abc\xF0\x9F\x98\x80");
    EXPECT_EQ(heldBytes(out), "abc");
    EXPECT_TRUE(out.isTerminated());
}

TEST(PutStream, WithNoThrowPutSLogsAtMost200Bytes) {
    test::LogCapture log;
    Text out(1, true);
    out.PutS(std::string(201, 'a').c_str());
    EXPECT_EQ(
        test::traceLines(log),
        (Lines{traceLine(0, "", "PutStream::PutS: Didn't fit. remaining=1 msg='" + std::string(200, 'a') + "'")}));
}

TEST(PutStream, WithNoThrowAnUnprintableTextIsTruncatedAtAnyByteAndLogged) {
    test::LogCapture log;
    Text out(6, true);
    out.PutS("a\x01"
             "bcdefgh");
    EXPECT_EQ(heldBytes(out), "a\x01"
                              "bcde");
    const Lines lines = test::traceLines(log);
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_EQ(lines[5], traceLine(0, "",
                                  "truncatePartialUtf8: String is not a printable UTF-8 string: 'a\x01"
                                  "bcde'"));
}

TEST(PutStream, PutFWritesFormattedText) {
    Text out(32);
    out.PutF("%s", "");
    out.PutF("%d/%u/%lx/%c/%5.2f/%%", -1, 2u, 255ul, 'c', 1.5);
    EXPECT_EQ(heldBytes(out), "-1/2/ff/c/ 1.50/%");
    EXPECT_TRUE(out.isTerminated());
}

TEST(PutStream, PutFFillsTheSpaceExactly) {
    Text out(6);
    out.PutC('x');
    out.PutF("%s", "ports");
    EXPECT_EQ(heldBytes(out), "xports");
    EXPECT_TRUE(out.isTerminated());
    out.PutF("%s", "");
    EXPECT_EQ(heldBytes(out), "xports");
}

TEST(PutStream, PutFOfOneCharacterTooManyWritesWhatFitsAndThrows) {
    Text out(6);
    out.PutC('x');
    EXPECT_FAILURE(out.PutF("%s!", "ports"), 1239, "ut_PutStream", putFName,
                   "Didn't fit. wrote=6 remaining=5 msg='%s!'");
    EXPECT_EQ(heldBytes(out), "xports");
    EXPECT_TRUE(out.isTerminated());
}

TEST(PutStream, PutFShowsAtMost90BytesOfTheFormat) {
    Text out(4);
    EXPECT_FAILURE(
        out.PutF("fffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff"),
        1239, "ut_PutStream", putFName, "Didn't fit. wrote=95 remaining=4 msg='" + std::string(90, 'f') + "'");
    EXPECT_EQ(heldBytes(out), "ffff");
}

TEST(PutStream, WithNoThrowPutFTruncatesAfterACompleteCharacterAndLogs) {
    test::LogCapture log;
    Text out(5, true);
    out.PutF("%s", "abcdefg");
    EXPECT_EQ(heldBytes(out), "abcde");
    EXPECT_TRUE(out.isTerminated());
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(0, "", "PutStream::PutF: Didn't fit. wrote=7 remaining=5 msg='%s'")}));
    out.Rewind();
    out.PutF("abc%s", "\xE2\x82\xAC");
    EXPECT_EQ(heldBytes(out), "abc");
    EXPECT_TRUE(out.isTerminated());
}

TEST(PutStream, PutVBehavesAsPutF) {
    Text out(6);
    putV(out, "%s=%d", "abcd", 1);
    EXPECT_EQ(heldBytes(out), "abcd=1");
    EXPECT_TRUE(out.isTerminated());
    out.Rewind();
    out.PutC('x');
    EXPECT_FAILURE(putV(out, "%s=%d", "abcd", 1), 1239, "ut_PutStream", putVSignature(""),
                   "Didn't fit. wrote=6 remaining=5 msg='%s=%d'");
    EXPECT_EQ(heldBytes(out), "xabcd=");
    EXPECT_TRUE(out.isTerminated());
}

TEST(PutStream, PutVTerminatesAfterTheAdvanceAndPutFDoesNot) {
    Marking out(8);
    putV(out, "%s", "ab");
    EXPECT_STREQ(out.pBuffer(), "ab");
    out.Rewind();
    out.PutF("%s", "ab");
    EXPECT_EQ(out.bytes().substr(0, 3), "ab!");
}

TEST(PutStream, WithNoThrowPutVTruncatesAfterACompleteCharacterAndLogs) {
    test::LogCapture log;
    Text out(3, true);
    putV(out, "%s", "ab\xC3\xA9");
    EXPECT_EQ(heldBytes(out), "ab");
    EXPECT_TRUE(out.isTerminated());
    ASSERT_GE(log.count(), 1u);
    EXPECT_EQ(test::traceLines(log)[0], traceLine(0, "", "PutStream::PutV: Didn't fit. wrote=4 remaining=3 msg='%s'"));
}

TEST(PutStream, WithNoThrowPutFLogsAtMost200BytesOfTheFormat) {
    test::LogCapture log;
    Text out(1, true);
    putV(out,
         "%s"
         "ffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff"
         "ffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffffff",
         "");
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(
                  0, "", "PutStream::PutV: Didn't fit. wrote=200 remaining=1 msg='%s" + std::string(198, 'f') + "'")}));
}

TEST(PutStream, PutFOfALongTextAllocatesNoMemory) {
    const std::string text(100000, 'v');
    Text out(100000);
    out.PutF("%s", text.c_str());
    EXPECT_EQ(heldBytes(out), text);
}

TEST(PutStream, PutFThatCannotConvertStaysInBounds) {
    Text out(8);
    out.PutS("ab");
    const wchar_t unconvertible[] = {static_cast<wchar_t>(0x20AC), 0};
    const auto failure = CATCH_FAILURE(out.PutF("%ls", unconvertible));
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->code(), 1239u);
    out.Rewind();
    out.PutS("ab");
    EXPECT_EQ(heldBytes(out), "ab");
}

TEST(PutStream, OutputOfAFailedFormatIsDiscarded) {
    const test::LogCapture log;
    const wchar_t unconvertible[] = {static_cast<wchar_t>(0x20AC), 0};
    for (const bool noThrow : {false, true}) {
        Text out(8, noThrow);
        out.PutS("ab");
        CATCH_FAILURE(out.PutF("xyz%ls", unconvertible));
        EXPECT_STREQ(out.pBuffer(), "ab");
        CATCH_FAILURE(putV(out, "xyz%ls", unconvertible));
        EXPECT_STREQ(out.pBuffer(), "ab");
        EXPECT_EQ(out.WritePosition(), 2);
    }
}

TEST(PutStream, IndentWritesBlanks) {
    Text out(4);
    out.Indent(0);
    EXPECT_EQ(heldBytes(out), "");
    out.Indent(1);
    EXPECT_EQ(heldBytes(out), " ");
    out.Indent(3);
    EXPECT_EQ(heldBytes(out), "    ");
    EXPECT_TRUE(out.isTerminated());
    EXPECT_FAILURE(out.Indent(1), 1239, "ut_PutStream", putCName, "");
}

TEST(PutStream, IndentOfTooManyBlanksWritesThoseThatFit) {
    Text out(4);
    EXPECT_FAILURE(out.Indent(10), 1239, "ut_PutStream", putCName, "");
    EXPECT_EQ(heldBytes(out), "    ");
    test::LogCapture log;
    Text quiet(4, true);
    quiet.Indent(10);
    EXPECT_EQ(heldBytes(quiet), "    ");
    EXPECT_EQ(log.count(), 0u);
}

TEST(PutStream, IndentThrowsForABlankThatDoesNotFitWithoutAskingAgain) {
    FullAtFirst out(4);
    EXPECT_FAILURE(out.Indent(3), 1239, "ut_PutStream", putCName, "");
    EXPECT_EQ(out.asked, 1);
    EXPECT_EQ(out.WritePosition(), 0);
}

TEST(PutStream, WithNoThrowIndentDropsABlankThatDoesNotFitAndWritesTheOthers) {
    FullAtFirst out(4, true);
    out.Indent(3);
    EXPECT_EQ(heldBytes(out), "  ");
    EXPECT_EQ(out.asked, 3);
}

TEST(PutStream, IndentOfANegativeCountWritesUntilTheOverflow) {
    for (const int n : {-1, -5, INT_MIN}) {
        Text out(4);
        out.PutC('x');
        EXPECT_FAILURE(out.Indent(n), 1239, "ut_PutStream", putCName, "");
        EXPECT_EQ(heldBytes(out), "x   ");
        Text quiet(4, true);
        quiet.Indent(n);
        EXPECT_EQ(heldBytes(quiet), "    ");
    }
}

TEST(PutStream, SendWritesAllThatFits) {
    Text out(5);
    EXPECT_TRUE(out.SendOutputStream("ab\0c", 4));
    EXPECT_EQ(out.bytes(), std::string("ab\0c\0\0", 6));
    EXPECT_TRUE(out.SendOutputStream("d", 1));
    EXPECT_EQ(heldBytes(out), std::string("ab\0cd", 5));
    EXPECT_TRUE(out.isTerminated());
    EXPECT_TRUE(out.SendOutputStream("x", 0));
}

TEST(PutStream, SendOfTooMuchAdvancesByTheFullCountAndThrowsFromBuffer) {
    Text out(5);
    out.PutC('x');
    EXPECT_FAILURE(out.SendOutputStream("abcdef", 6), 1239, "ut_Buffer", writeAdvanceName, "");
    EXPECT_EQ(out.WritePosition(), 7);
    EXPECT_EQ(out.bytes().substr(0, 5), "xabcd");
}

TEST(PutStream, WithNoThrowSendOfTooMuchFillsTheStream) {
    test::LogCapture log;
    Text out(5, true);
    EXPECT_FALSE(out.SendOutputStream("abc\xE2\x82\xAC", 6));
    EXPECT_EQ(heldBytes(out), "abc\xE2\x82");
    EXPECT_EQ(out.WritePosition(), 5);
    EXPECT_TRUE(out.isTerminated());
    EXPECT_FALSE(out.SendOutputStream("x", 1));
    EXPECT_EQ(log.count(), 0u);
}

TEST(PutStream, SendOfAHugeCountStaysInBounds) {
    const std::string data(16, 'd');
    for (const unsigned int count : {UINT_MAX, 0x80000000u, 0x7FFFFFFFu, 0xFFFFFFF0u}) {
        Text out(5);
        out.PutC('x');
        EXPECT_NE(CATCH_FAILURE(out.SendOutputStream(data.data(), count)), nullptr) << count;
        out.Rewind();
        Text quiet(5, true);
        EXPECT_FALSE(quiet.SendOutputStream(data.data(), count)) << count;
        EXPECT_EQ(quiet.WritePosition(), 5) << count;
        EXPECT_EQ(heldBytes(quiet), "ddddd") << count;
    }
}

TEST(PutStream, SendOfNullWritesNothing) {
    for (const bool noThrow : {false, true}) {
        Text out(5, noThrow);
        EXPECT_TRUE(out.SendOutputStream(nullptr, 0));
        CATCH_FAILURE(out.SendOutputStream(nullptr, 3));
        EXPECT_EQ(out.WritePosition(), 0);
        EXPECT_EQ(out.bytes(), std::string("\0\x7E\x7E\x7E\x7E\0", 6));
    }
}

TEST(PutStream, StartRewindsAndEndDoesNothing) {
    Text out(5);
    out.PutS("abc");
    out.ReadAdvance(1);
    out.EndOutputStream();
    EXPECT_EQ(heldBytes(out), "bc");
    EXPECT_TRUE(out.StartOutputStream());
    EXPECT_EQ(out.WritePosition(), 0);
    EXPECT_EQ(out.ReadPosition(), 0);
    EXPECT_TRUE(out.isTerminated());
    out.FlushOutputStream();
    EXPECT_EQ(heldBytes(out), "");
}

TEST(PutStream, IsOpenWhileSpaceIsLeftAndThenInErrorAndAtTheEnd) {
    Text out(2);
    out.PutC('a');
    EXPECT_TRUE(out.isOutputStreamOpen());
    EXPECT_FALSE(out.isOutputStreamInError());
    EXPECT_FALSE(out.isOutputStreamAtEnd());
    EXPECT_TRUE(out.isOutputStreamGood());
    out.PutC('b');
    EXPECT_FALSE(out.isOutputStreamOpen());
    EXPECT_TRUE(out.isOutputStreamInError());
    EXPECT_TRUE(out.isOutputStreamAtEnd());
    EXPECT_FALSE(out.isOutputStreamGood());
}

TEST(PutStream, EachWriteCallsWriteRemainingOnce) {
    Draining out;
    const auto asked = [&](auto&& write) {
        out.Rewind();
        out.asked = out.advanced = 0;
        write();
        EXPECT_EQ(out.advanced, 1);
        return out.asked;
    };
    EXPECT_EQ(asked([&] { out.PutC('a'); }), 1);
    EXPECT_EQ(asked([&] { out.PutB("ab", 2); }), 1);
    EXPECT_EQ(asked([&] { out.PutS("ab"); }), 1);
    EXPECT_EQ(asked([&] { out.PutF("%d", 12); }), 1);
    EXPECT_EQ(asked([&] { putV(out, "%d", 12); }), 1);
    EXPECT_EQ(asked([&] { out.SendOutputStream("ab", 2); }), 1);
}

TEST(PutStream, StreamThatDrainsItsBufferAcceptsMoreThanItsSize) {
    Draining out;
    for (const char c : std::string("0123456789"))
        out.PutC(c);
    EXPECT_EQ(out.drained, "01234567");
    EXPECT_STREQ(out.pTail(), "89");
}

TEST(PutStream, StreamThatReportsTooMuchSpaceStaysInBounds) {
    const test::LogCapture log;
    for (const bool noThrow : {false, true}) {
        test::OverstatedSpace<Text> out(4, noThrow);
        for (int i = 0; i < 10; ++i)
            CATCH_FAILURE(out.PutC('x'));
        out.Rewind();
        CATCH_FAILURE(out.PutB("abcdefgh", 8));
        out.Rewind();
        CATCH_FAILURE(out.PutS("abcdefgh"));
        out.Rewind();
        CATCH_FAILURE(out.PutF("%s", "abcdefgh"));
        out.Rewind();
        CATCH_FAILURE(putV(out, "%s", "abcdefgh"));
        out.Rewind();
        CATCH_FAILURE(out.SendOutputStream("abcdefgh", 8));
        out.Rewind();
        CATCH_FAILURE(out.PutParmUint32(1); out.PutParmUint32(2));
        out.Rewind();
        CATCH_FAILURE(out.PutParmString("abcdefgh"));
        out.Rewind();
        char block[8] = {};
        CATCH_FAILURE(out.PutParmBuf(block, 8));
        out.Rewind();
        CATCH_FAILURE(out.Indent(8));
        EXPECT_EQ(out.bytes().size(), 5u);
    }
}

TEST(PutStream, ToFileWritesTheReadableBytesAndLeavesThemReadable) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.write("text", "something much longer that was there before");
    Text out(16);
    out.PutB("xab\0c\n", 6);
    out.ReadAdvance(1);
    out.ToFile(path.c_str());
    EXPECT_EQ(directory.read("text"), std::string("ab\0c\n", 5));
    EXPECT_EQ(out.ReadPosition(), 1);
    EXPECT_EQ(out.WritePosition(), 6);
}

TEST(PutStream, ToFileIsTrueForOneByteOnly) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.path("text");
    for (int count = 0; count <= 4; ++count) {
        Text out(4);
        out.PutB("abcd", count);
        EXPECT_EQ(out.ToFile(path.c_str()), count == 1) << count;
        EXPECT_EQ(directory.read("text"), std::string("abcd", static_cast<std::size_t>(count)));
    }
}

TEST(PutStream, ToFileCreatesAFileWithMode0666LessTheUmask) {
    const test::TemporaryDirectory directory;
    Text out(4);
    out.PutC('x');
    const test::Umask restored(0);
    for (const auto& [mask, bits] : {std::pair<mode_t, mode_t>{0, 0666}, {027, 0640}}) {
        const std::string path = directory.path("new" + std::to_string(mask));
        umask(mask);
        EXPECT_TRUE(out.ToFile(path.c_str()));
        struct stat status = {};
        ASSERT_EQ(stat(path.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777u, bits);
    }
}

TEST(PutStream, ToFileClosesItsFile) {
    const test::TemporaryDirectory directory;
    const int before = lowestFreeDescriptor();
    Text out(4);
    out.ToFile(directory.path("text").c_str());
    out.ToFile(directory.path("no/such/file").c_str());
    EXPECT_EQ(lowestFreeDescriptor(), before);
}

TEST(PutStream, ToFileThatCannotBeOpenedIsFalse) {
    const test::TemporaryDirectory directory;
    Text out(4);
    out.PutC('x');
    EXPECT_FALSE(out.ToFile(directory.path("no/such/file").c_str()));
    EXPECT_FALSE(out.ToFile(directory.path().c_str()));
    EXPECT_FALSE(out.ToFile(""));
    EXPECT_FALSE(out.ToFile(nullptr));
    EXPECT_EQ(heldBytes(out), "x");
}

TEST(PutStream, ToFileOnAFullDeviceReturnsTheFileStreamsResult) {
    Text out(4);
    out.PutC('x');
    EXPECT_TRUE(out.ToFile("/dev/full"));
    out.PutC('y');
    EXPECT_FALSE(out.ToFile("/dev/full"));
}

TEST(PutStream, ToFileWithoutStorageOrAfterAFailureStaysInBounds) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.path("text");
    PutStream none;
    EXPECT_FALSE(none.ToFile(path.c_str()));
    EXPECT_EQ(directory.read("text"), "");
    Text out(4);
    EXPECT_NE(CATCH_FAILURE(out.PutS("abcd")), nullptr);
    out.ToFile(path.c_str());
    EXPECT_EQ(directory.read("text"), "");
    out.Rewind();
    EXPECT_NE(CATCH_FAILURE(out.WriteAdvance(100)), nullptr);
    out.ToFile(path.c_str());
    EXPECT_LE(directory.read("text").size(), 5u);
}

} // namespace
