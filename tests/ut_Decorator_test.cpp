#include "ut_Decorator.h"

#include <climits>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "LogCapture.h"
#include "VirtualSlot.h"
#include "fw_StringRepository.h"
#include "ut_BufferStream.h"

namespace {

using utility::Decorator;

static_assert(sizeof(Decorator) == sizeof(void*), "a decorator has no data");
static_assert(std::has_virtual_destructor<Decorator>::value, "decorators are deleted through the base");

Decorator::DecorationType type(int number) {
    return static_cast<Decorator::DecorationType>(number);
}

// Renders headings, as streams of callers do.
class Markup : public utility::BufferStream {
public:
    Markup() : BufferStream(64) {}
    using BufferStream::setDecoration;
    void setDecoration(DecorationType decoration) override {
        PutS(decoration == Heading ? "<h>" : "</h>");
    }
};

TEST(Decorator, UsageExample) {
    utility::BufferStream stream(32);
    stream.setDecoration(utility::Decorator::Heading);
    stream.PutS("Ports\n");
    stream.setDecoration(utility::Decorator::Normal);
    EXPECT_STREQ(stream.pTail(), "Ports\n");
}

TEST(Decorator, TypesAreNumberedFrom0To35) {
    EXPECT_EQ(Decorator::Normal, 0);
    EXPECT_EQ(Decorator::Heading, 5);
    EXPECT_EQ(Decorator::Cyan, 35);
}

TEST(Decorator, TypesAreNamedByTheirTokens) {
    const struct {
        Decorator::DecorationType type;
        const char* text;
    } named[] = {
        {Decorator::Normal, "normal"},   {Decorator::Underlined, "underlined"}, {Decorator::Inverse, "inverse"},
        {Decorator::Heading, "heading"}, {Decorator::Subheading, "subheading"}, {Decorator::Title, "title"},
        {Decorator::Value, "value"},     {Decorator::Critical, "critical"},     {Decorator::Cyan, "cyan"},
    };
    for (const auto& each : named)
        EXPECT_STREQ(strings::StringRepository::toString(Decorator::toToken(each.type)), each.text);
}

TEST(Decorator, EachTypeHasItsToken) {
    EXPECT_EQ(Decorator::toToken(type(0)), 1200u);
    EXPECT_EQ(Decorator::toToken(type(1)), 6911u);
    EXPECT_EQ(Decorator::toToken(type(2)), 6912u);
    EXPECT_EQ(Decorator::toToken(type(3)), 6913u);
    EXPECT_EQ(Decorator::toToken(type(4)), 6914u);
    EXPECT_EQ(Decorator::toToken(type(5)), 1867u);
    for (int number = 6; number <= 35; ++number)
        EXPECT_EQ(Decorator::toToken(type(number)), static_cast<stringtoken>(6909 + number)) << number;
    EXPECT_EQ(Decorator::toToken(type(6)), 6915u);
    EXPECT_EQ(Decorator::toToken(type(35)), 6944u);
}

TEST(Decorator, UnknownTypeHasTheTokenForUnknown) {
    for (const int number : {36, 37, 1000, INT_MAX, -1, -2, INT_MIN})
        EXPECT_EQ(Decorator::toToken(type(number)), 1153u) << number;
}

TEST(Decorator, EveryTokenHasAText) {
    for (int number = 0; number <= 36; ++number) {
        const char* const text = strings::StringRepository::toString(Decorator::toToken(type(number)));
        ASSERT_NE(text, nullptr) << number;
        EXPECT_GT(std::strlen(text), 0u) << number;
    }
}

TEST(Decorator, DecoratingABufferStreamChangesNothing) {
    const test::LogCapture log;
    utility::BufferStream stream(32);
    utility::BufferStream other(32);
    stream.PutS("ports");
    for (int number = -1; number <= 36; ++number) {
        stream.setDecoration(type(number));
        stream.setDecoration(type(number), &stream);
        stream.setDecoration(type(number), &other);
        stream.setDecoration(type(number), nullptr);
    }
    EXPECT_STREQ(stream.pTail(), "ports");
    EXPECT_EQ(stream.ReadAvailable(), 5);
    EXPECT_EQ(other.ReadAvailable(), 0);
    EXPECT_EQ(log.count(), 0u);
}

TEST(Decorator, PlainDecoratorDoesNothing) {
    Decorator decorator;
    decorator.setDecoration(Decorator::Heading);
    decorator.setDecoration(Decorator::Heading, nullptr);
    EXPECT_EQ(Decorator::toToken(Decorator::Heading), 1867u);
}

TEST(Decorator, StreamsThatRenderAreReachedThroughPutStream) {
    Markup markup;
    utility::PutStream& out = markup;
    out.setDecoration(Decorator::Heading);
    out.PutS("Ports");
    out.setDecoration(Decorator::Normal);
    EXPECT_STREQ(markup.pTail(), "<h>Ports</h>");
}

TEST(Decorator, VirtualOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(static_cast<void (Decorator::*)(Decorator::DecorationType)>(&Decorator::setDecoration)),
              2);
    EXPECT_EQ(test::virtualSlot(static_cast<void (Decorator::*)(Decorator::DecorationType, utility::PutStream*)>(
                  &Decorator::setDecoration)),
              3);
}

} // namespace
