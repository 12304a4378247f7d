#include "ut_InputStream.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "VirtualSlot.h"

namespace {

using framework::InputStream;

static_assert(std::is_abstract<InputStream>::value, "a source has to bring its own operations");
static_assert(std::has_virtual_destructor<InputStream>::value, "sources are deleted through the base");
static_assert(sizeof(InputStream) == sizeof(void*), "the interface has no data");

class Source : public InputStream {
public:
    explicit Source(bool* destroyed = nullptr) : m_destroyed(destroyed) {}
    ~Source() override {
        if (m_destroyed != nullptr)
            *m_destroyed = true;
    }
    bool StartInputStream() override {
        return true;
    }
    void EndInputStream() override {}
    int ReceiveInputStream(char* buffer, unsigned int size) override {
        const std::string text = "ports";
        const std::size_t count = std::min<std::size_t>(size, text.size());
        std::memcpy(buffer, text.data(), count);
        return static_cast<int>(count);
    }
    bool isInputStreamOpen() override {
        return open;
    }
    bool isInputStreamInError() override {
        return inError;
    }
    bool isInputStreamAtEnd() override {
        return atEnd;
    }
    bool open = true;
    bool inError = false;
    bool atEnd = false;

private:
    bool* m_destroyed;
};

TEST(InputStream, UsageExample) {
    Source in;
    char block[512];
    int count = in.ReceiveInputStream(block, sizeof block);
    EXPECT_EQ(std::string(block, static_cast<std::size_t>(count)), "ports");
}

TEST(InputStream, IsGoodOnlyWhenOpenWithoutErrorAndNotAtTheEnd) {
    for (int state = 0; state < 8; ++state) {
        Source source;
        source.open = (state & 1) != 0;
        source.inError = (state & 2) != 0;
        source.atEnd = (state & 4) != 0;
        EXPECT_EQ(source.isInputStreamGood(), state == 1) << state;
    }
}

TEST(InputStream, SizeIsUnknown) {
    EXPECT_EQ(Source().GetInputStreamSize(), -1);
}

TEST(InputStream, SettingAModeChangesNothing) {
    Source source;
    source.setInputMode(InputStream::INPUT_DEFAULT);
    source.setInputMode(static_cast<InputStream::InputMode>(1));
    EXPECT_TRUE(source.isInputStreamGood());
    EXPECT_EQ(source.GetInputStreamSize(), -1);
}

TEST(InputStream, CanBeDestroyedThroughTheBase) {
    bool destroyed = false;
    InputStream* const source = new Source(&destroyed);
    delete source;
    EXPECT_TRUE(destroyed);
}

TEST(InputStream, VirtualOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&InputStream::StartInputStream), 2);
    EXPECT_EQ(test::virtualSlot(&InputStream::EndInputStream), 3);
    EXPECT_EQ(test::virtualSlot(&InputStream::ReceiveInputStream), 4);
    EXPECT_EQ(test::virtualSlot(&InputStream::isInputStreamOpen), 5);
    EXPECT_EQ(test::virtualSlot(&InputStream::isInputStreamInError), 6);
    EXPECT_EQ(test::virtualSlot(&InputStream::isInputStreamAtEnd), 7);
    EXPECT_EQ(test::virtualSlot(&InputStream::isInputStreamGood), 8);
    EXPECT_EQ(test::virtualSlot(&InputStream::GetInputStreamSize), 9);
    EXPECT_EQ(test::virtualSlot(&InputStream::setInputMode), 10);
}

} // namespace
