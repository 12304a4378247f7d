#include "ut_OutputStream.h"

#include <algorithm>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "BytePattern.h"
#include "ExpectFailure.h"
#include "HeldBytes.h"
#include "TemporaryDirectory.h"
#include "VirtualSlot.h"
#include "ut_BufferStream.h"
#include "ut_FileInputStream.h"
#include "ut_FileOutputStream.h"
#include "ut_InputStream.h"

namespace {

using framework::InputStream;
using framework::OutputStream;
using test::bytePattern;

static_assert(std::is_abstract<OutputStream>::value, "a sink has to bring its own operations");
static_assert(std::has_virtual_destructor<OutputStream>::value, "sinks are deleted through the base");
static_assert(sizeof(OutputStream) == sizeof(void*), "the interface has no data");

class Sink : public OutputStream {
public:
    explicit Sink(bool* destroyed = nullptr) : m_destroyed(destroyed) {}
    ~Sink() override {
        if (m_destroyed != nullptr)
            *m_destroyed = true;
    }
    bool StartOutputStream() override {
        ++others;
        return true;
    }
    void EndOutputStream() override {
        ++others;
    }
    bool SendOutputStream(const char* data, unsigned int size) override {
        sent.push_back(std::string(data, size));
        return sent.size() != refuseSend;
    }
    void FlushOutputStream() override {
        ++others;
    }
    bool isOutputStreamOpen() override {
        return open;
    }
    bool isOutputStreamInError() override {
        return inError;
    }
    bool isOutputStreamAtEnd() override {
        return atEnd;
    }
    std::string all() const {
        std::string text;
        for (const std::string& piece : sent)
            text += piece;
        return text;
    }
    bool open = true;
    bool inError = false;
    bool atEnd = false;
    std::vector<std::string> sent;
    std::size_t refuseSend = 0;
    int others = 0;

private:
    bool* m_destroyed;
};

class PlainSink : public Sink {
public:
    void FlushOutputStream() override {
        OutputStream::FlushOutputStream();
    }
};

// Returns the prepared results in order, and changes its state after the last one.
class Source : public InputStream {
public:
    explicit Source(std::vector<int> answers) : m_answers(std::move(answers)) {}
    bool StartInputStream() override {
        ++others;
        return true;
    }
    void EndInputStream() override {
        ++others;
    }
    int ReceiveInputStream(char* buffer, unsigned int size) override {
        asked.push_back(size);
        const int answer = m_answers.at(asked.size() - 1);
        if (answer > 0)
            std::fill_n(buffer, std::min(static_cast<unsigned int>(answer), size),
                        static_cast<char>('a' + static_cast<int>(asked.size()) - 1));
        return answer;
    }
    bool isInputStreamOpen() override {
        return asked.size() < m_answers.size() || openThen;
    }
    bool isInputStreamInError() override {
        return asked.size() >= m_answers.size() && inErrorThen;
    }
    bool isInputStreamAtEnd() override {
        return asked.size() >= m_answers.size() && atEndThen;
    }
    bool openThen = true;
    bool inErrorThen = false;
    bool atEndThen = true;
    std::vector<unsigned int> asked;
    int others = 0;

private:
    std::vector<int> m_answers;
};

TEST(OutputStream, UsageExample) {
    Sink out;
    Source in({5});
    int reports = 0;
    const auto report = [&] {
        ++reports;
    };
    if (!out.TransferFromInputStream(in))
        report();
    EXPECT_EQ(out.all(), "aaaaa");
    EXPECT_EQ(reports, 0);
}

TEST(OutputStream, IsGoodOnlyWhenOpenWithoutErrorAndNotAtTheEnd) {
    for (int state = 0; state < 8; ++state) {
        Sink sink;
        sink.open = (state & 1) != 0;
        sink.inError = (state & 2) != 0;
        sink.atEnd = (state & 4) != 0;
        EXPECT_EQ(sink.isOutputStreamGood(), state == 1) << state;
    }
}

TEST(OutputStream, FlushDoesNothing) {
    PlainSink sink;
    sink.FlushOutputStream();
    EXPECT_EQ(sink.others, 0);
    EXPECT_TRUE(sink.sent.empty());
}

TEST(OutputStream, CanBeDestroyedThroughTheBase) {
    bool destroyed = false;
    OutputStream* const sink = new Sink(&destroyed);
    delete sink;
    EXPECT_TRUE(destroyed);
}

TEST(OutputStream, TransferReceivesAtMost16384BytesAtATime) {
    Sink sink;
    Source source({16384, 16384, 1});
    EXPECT_TRUE(sink.TransferFromInputStream(source));
    EXPECT_EQ(source.asked, (std::vector<unsigned int>{16384, 16384, 16384}));
    ASSERT_EQ(sink.sent.size(), 3u);
    EXPECT_EQ(sink.sent[0], std::string(16384, 'a'));
    EXPECT_EQ(sink.sent[1], std::string(16384, 'b'));
    EXPECT_EQ(sink.sent[2], "c");
}

TEST(OutputStream, TransferNeitherStartsNorEndsNorFlushes) {
    Sink sink;
    Source source({3});
    EXPECT_TRUE(sink.TransferFromInputStream(source));
    EXPECT_EQ(sink.others, 0);
    EXPECT_EQ(source.others, 0);
}

TEST(OutputStream, TransferFailsOnANegativeCountAndKeepsWhatWasSent) {
    for (const int error : {-1, -2147483647 - 1}) {
        Sink sink;
        Source source({4, error, 5});
        EXPECT_FALSE(sink.TransferFromInputStream(source));
        EXPECT_EQ(sink.all(), "aaaa");
        EXPECT_EQ(source.asked.size(), 2u);
    }
}

TEST(OutputStream, TransferSucceedsOnACountOfZero) {
    Sink sink;
    Source source({4, 0, 5});
    EXPECT_TRUE(sink.TransferFromInputStream(source));
    EXPECT_EQ(sink.sent, std::vector<std::string>{"aaaa"});
    EXPECT_EQ(source.asked.size(), 2u);
}

TEST(OutputStream, TransferOfZeroBytesIsTrueEvenFromAnInputThatIsThenInError) {
    Sink sink;
    Source source({0});
    source.inErrorThen = true;
    EXPECT_TRUE(sink.TransferFromInputStream(source));
    EXPECT_TRUE(sink.sent.empty());
}

TEST(OutputStream, TransferFailsIfNotAllBytesAreAccepted) {
    Sink sink;
    sink.refuseSend = 2;
    Source source({4, 4, 4});
    EXPECT_FALSE(sink.TransferFromInputStream(source));
    EXPECT_EQ(sink.sent.size(), 2u);
    EXPECT_EQ(source.asked.size(), 2u);
}

TEST(OutputStream, TransferSucceedsWhenTheInputEnds) {
    for (const bool open : {true, false}) {
        Sink sink;
        Source source({4});
        source.openThen = open;
        EXPECT_TRUE(sink.TransferFromInputStream(source));
        EXPECT_EQ(sink.all(), "aaaa");
    }
}

TEST(OutputStream, TransferFailsIfTheInputEntersTheErrorState) {
    for (const bool atEnd : {true, false}) {
        Sink sink;
        Source source({4});
        source.inErrorThen = true;
        source.atEndThen = atEnd;
        EXPECT_FALSE(sink.TransferFromInputStream(source));
        EXPECT_EQ(sink.all(), "aaaa");
    }
}

TEST(OutputStream, TransferFailsIfTheInputClosesBeforeItsEnd) {
    Sink sink;
    Source source({4});
    source.openThen = false;
    source.atEndThen = false;
    EXPECT_FALSE(sink.TransferFromInputStream(source));
    EXPECT_EQ(sink.all(), "aaaa");
}

TEST(OutputStream, TransferFromAnInputThatIsNotGoodReceivesNothing) {
    Sink sink;
    Source ended({});
    EXPECT_TRUE(sink.TransferFromInputStream(ended));
    Source closed({});
    closed.openThen = false;
    closed.atEndThen = false;
    EXPECT_FALSE(sink.TransferFromInputStream(closed));
    Source broken({});
    broken.inErrorThen = true;
    EXPECT_FALSE(sink.TransferFromInputStream(broken));
    EXPECT_TRUE(sink.sent.empty());
    EXPECT_TRUE(ended.asked.empty() && closed.asked.empty() && broken.asked.empty());
}

TEST(OutputStream, TransferDoesNotQueryTheSinksState) {
    Sink sink;
    sink.open = false;
    sink.inError = true;
    sink.atEnd = true;
    Source source({4});
    EXPECT_TRUE(sink.TransferFromInputStream(source));
    EXPECT_EQ(sink.all(), "aaaa");
}

TEST(OutputStream, TransferStaysInBoundsIfTheInputReportsTooManyBytes) {
    Sink sink;
    Source source({20000, 2147483647});
    sink.TransferFromInputStream(source);
    for (const std::string& piece : sink.sent)
        EXPECT_LE(piece.size(), 16384u);
}

TEST(OutputStream, TransfersAWholeFileToAStreamAndBack) {
    const test::TemporaryDirectory directory;
    for (const std::size_t size : {1u, 16383u, 16384u, 16385u, 100000u}) {
        const std::string bytes = bytePattern(size);
        const std::string path = directory.write("in", bytes);
        utility::FileInputStream file(path.c_str());
        utility::BufferStream stream(100001);
        EXPECT_TRUE(stream.TransferFromInputStream(file));
        EXPECT_EQ(test::heldBytes(stream), bytes);
        const std::string copy = directory.path("out");
        utility::FileOutputStream target(copy.c_str(), false, 0600);
        EXPECT_TRUE(target.TransferFromInputStream(stream));
        EXPECT_EQ(directory.read("out"), bytes);
        EXPECT_EQ(stream.ReadAvailable(), 0);
    }
}

TEST(OutputStream, TransferOfAnEmptyFileIsTrue) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.write("empty", "");
    utility::FileInputStream file(path.c_str());
    Sink sink;
    EXPECT_TRUE(sink.TransferFromInputStream(file));
    EXPECT_TRUE(sink.sent.empty());
}

TEST(OutputStream, ExceptionsOfTheSinkPropagate) {
    utility::BufferStream stream(8);
    Source source({9});
    EXPECT_FAILURE(stream.TransferFromInputStream(source), 1239, "ut_Buffer",
                   "virtual void utility::Buffer::WriteAdvance(int)", "");
}

TEST(OutputStream, TransferToATooSmallNoThrowSinkFails) {
    char text[9];
    utility::BufferStream stream(text, sizeof text, true);
    Source source({5, 5, 5});
    EXPECT_FALSE(stream.TransferFromInputStream(source));
    EXPECT_STREQ(text, "aaaaabbb");
    EXPECT_EQ(source.asked.size(), 2u);
}

TEST(OutputStream, VirtualOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&OutputStream::StartOutputStream), 2);
    EXPECT_EQ(test::virtualSlot(&OutputStream::EndOutputStream), 3);
    EXPECT_EQ(test::virtualSlot(&OutputStream::SendOutputStream), 4);
    EXPECT_EQ(test::virtualSlot(&OutputStream::FlushOutputStream), 5);
    EXPECT_EQ(test::virtualSlot(&OutputStream::TransferFromInputStream), 6);
    EXPECT_EQ(test::virtualSlot(&OutputStream::isOutputStreamOpen), 7);
    EXPECT_EQ(test::virtualSlot(&OutputStream::isOutputStreamInError), 8);
    EXPECT_EQ(test::virtualSlot(&OutputStream::isOutputStreamAtEnd), 9);
    EXPECT_EQ(test::virtualSlot(&OutputStream::isOutputStreamGood), 10);
}

} // namespace
