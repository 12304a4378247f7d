#include "ut_PagingVirtualPutStream.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingOperation.h"
#include "GuardedText.h"
#include "HeldBytes.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "RecordingConsole.h"
#include "SendText.h"
#include "TraceLines.h"
#include "VirtualSlot.h"
#include "fw_gettext.h"

namespace {

constexpr const char* prompt = "Press any key to continue (Q to quit)";
constexpr const char* translation = "Weiter mit jeder Taste (Q beendet)";
bool translating = false;

} // namespace

// Replaces the framework's function, so that a test can check that the prompt is translated.
const char* vx_gettext(const char* message) {
    return translating && std::strcmp(message, prompt) == 0 ? translation : message;
}

namespace {

using test::heldBytes;
using test::sendText;
using test::traceLine;
using utility::PagingVirtualPutStream;
using Lines = std::vector<std::string>;

constexpr unsigned int traceSwitch = 4679;
constexpr const char* constructName =
    "utility::PagingVirtualPutStream::PagingVirtualPutStream(framework::Console&, int, int, int, int)";
constexpr const char* constructOverArrayName =
    "utility::PagingVirtualPutStream::PagingVirtualPutStream(framework::Console&, int, int, char*, int, int)";
constexpr const char* flushName = "virtual void utility::PagingVirtualPutStream::FlushOutputStream()";
constexpr const char* flushPageName = "bool utility::PagingVirtualPutStream::flushPage(int)";

static_assert(std::is_base_of<utility::VirtualPutStream, PagingVirtualPutStream>::value, "it is written like any text");

// The lines "line <first>" to "line <last>".
std::string lines(int first, int last) {
    std::string text;
    for (int i = first; i <= last; ++i)
        text += "line " + std::to_string(i) + "\n";
    return text;
}

std::string shown(const std::string& text) {
    return "send:" + text;
}

// The calls for pages with a prompt between them.
Lines pages(const Lines& texts, int width = 80) {
    Lines calls;
    for (const std::string& text : texts) {
        if (!calls.empty()) {
            calls.push_back(shown(prompt));
            calls.push_back("key");
            calls.push_back("remove:" + std::to_string(width));
        }
        calls.push_back(shown(text));
    }
    return calls;
}

Lines operator+(Lines first, const Lines& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// A stream with pages of 80 by 25 and a buffer large enough for every test.
struct Paging {
    explicit Paging(const std::string& keys = "", int width = 80, int height = 25)
        : console(keys), stream(console, width, height, 8192, 8192) {}

    test::RecordingConsole console;
    PagingVirtualPutStream stream;
};

TEST(PagingVirtualPutStream, UsageExample) {
    test::RecordingConsole console;
    const std::string content = lines(1, 30);
    const char* const text = content.data();
    const auto length = static_cast<unsigned int>(content.size());
    utility::PagingVirtualPutStream out(console, 80, 25, 4096, 2048);
    EXPECT_FALSE(!out.SendOutputStream(text, length));
    EXPECT_EQ(console.calls(), pages({lines(1, 24), lines(25, 30)}));
}

TEST(PagingVirtualPutStream, OverridesHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&PagingVirtualPutStream::SendOutputStream), 4);
    EXPECT_EQ(test::virtualSlot(&PagingVirtualPutStream::FlushOutputStream), 5);
    EXPECT_EQ(test::virtualSlot(&PagingVirtualPutStream::WriteRemaining), 13);
    EXPECT_EQ(test::virtualSlot(&PagingVirtualPutStream::flushPage), -1);
}

// Construction

TEST(PagingVirtualPutStream, StartsEmptyWithNothingShown) {
    Paging paging;
    EXPECT_EQ(paging.stream.Size(), 8192);
    EXPECT_EQ(heldBytes(paging.stream), "");
    EXPECT_EQ(paging.stream.transferred(), 0);
    EXPECT_FALSE(paging.stream.hasQuit());
    EXPECT_TRUE(paging.stream.isOutputStreamGood());
    EXPECT_EQ(paging.console.calls(), Lines{});
}

TEST(PagingVirtualPutStream, FailedAllocationOfTheBufferThrows1238) {
    test::RecordingConsole console;
    const char* const alloc = "void utility::Buffer::allocBuffer()";
    EXPECT_FAILURE(test::failNth(1, [&] { PagingVirtualPutStream(console, 80, 25, 64, 64); }), 1238, "ut_Buffer", alloc,
                   "");
    EXPECT_FAILURE(PagingVirtualPutStream(console, 80, 25, -1, 64), 1238, "ut_Buffer", alloc, "");
}

TEST(PagingVirtualPutStream, CallersArrayReservesItsLastByteForTheTerminator) {
    test::RecordingConsole console;
    test::GuardedText text(16);
    PagingVirtualPutStream stream(console, 80, 25, text.array(), 16, 16);
    EXPECT_EQ(stream.Size(), 15);
    EXPECT_EQ(stream.pBuffer(), text.array());
    EXPECT_EQ(text.array()[0], 0);
    EXPECT_EQ(text.array()[15], 0);
    EXPECT_TRUE(sendText(stream, "ports\n"));
    EXPECT_EQ(console.calls(), Lines{"send:ports\n"});
    EXPECT_TRUE(text.isGuardWhole());
}

TEST(PagingVirtualPutStream, PagesAreTheSameWithACallersArray) {
    test::RecordingConsole console;
    char text[64];
    PagingVirtualPutStream stream(console, 10, 4, text, sizeof text, 60);
    EXPECT_FALSE(stream.hasQuit());
    EXPECT_TRUE(sendText(stream, "1234567890abc\nx\ny\n"));
    EXPECT_EQ(console.calls(), pages({"1234567890abc\nx\n", "y\n"}, 10));

    test::RecordingConsole smallConsole;
    PagingVirtualPutStream small(smallConsole, -1, -1, text, sizeof text, 60);
    EXPECT_TRUE(sendText(small, "abc"));
    EXPECT_EQ(smallConsole.calls(), pages({"ab", "c"}, 2));
}

TEST(PagingVirtualPutStream, SmallestArraysAreNeverOverrun) {
    for (const int size : {0, 1, 2}) {
        for (const int threshold : {-1, 0, 1, 2, 100}) {
            test::RecordingConsole console;
            test::LogCapture log;
            test::GuardedText text(static_cast<unsigned int>(size));
            PagingVirtualPutStream stream(console, 80, 25, text.array(), size, threshold);
            stream.setNoThrow(true);
            const bool taken = sendText(stream, "ab\ncd\n");
            EXPECT_EQ(taken, size == 2 && threshold < 2) << size << ", " << threshold;
            stream.PutB("ef\n", 3);
            stream.PutF("%d\n", 4);
            stream.FlushOutputStream();
            stream.flushPage(10);
            EXPECT_TRUE(text.isGuardWhole()) << size << ", " << threshold;
            EXPECT_EQ(text.isUntouched(), size == 0);
        }
    }
}

// Pages

TEST(PagingVirtualPutStream, ThirtyShortLinesAreOnePageThenAPromptThenTheRest) {
    Paging paging;
    EXPECT_TRUE(sendText(paging.stream, lines(1, 30)));
    EXPECT_EQ(paging.console.calls(), pages({lines(1, 24), lines(25, 30)}));
    EXPECT_EQ(paging.stream.transferred(), static_cast<int>(lines(1, 30).size()));
    EXPECT_EQ(heldBytes(paging.stream), "");
    EXPECT_FALSE(paging.stream.hasQuit());
}

TEST(PagingVirtualPutStream, OutputThatFitsThePageIsNotPrompted) {
    for (const int count : {1, 23, 24}) {
        Paging paging;
        EXPECT_TRUE(sendText(paging.stream, lines(1, count)));
        EXPECT_EQ(paging.console.calls(), pages({lines(1, count)})) << count;
    }
}

TEST(PagingVirtualPutStream, OneLineMoreThanThePageHasAPrompt) {
    Paging paging;
    EXPECT_TRUE(sendText(paging.stream, lines(1, 25)));
    EXPECT_EQ(paging.console.calls(), pages({lines(1, 24), lines(25, 25)}));
}

TEST(PagingVirtualPutStream, IncompleteLineMoreThanThePageHasAPrompt) {
    Paging paging;
    EXPECT_TRUE(sendText(paging.stream, lines(1, 24) + "x"));
    EXPECT_EQ(paging.console.calls(), pages({lines(1, 24), "x"}));
}

TEST(PagingVirtualPutStream, EveryPageHasAPromptOfItsOwn) {
    Paging paging;
    EXPECT_TRUE(sendText(paging.stream, lines(1, 100)));
    EXPECT_EQ(paging.console.calls(),
              pages({lines(1, 24), lines(25, 48), lines(49, 72), lines(73, 96), lines(97, 100)}));
}

TEST(PagingVirtualPutStream, LinesAreCountedAcrossSends) {
    Paging paging;
    EXPECT_TRUE(sendText(paging.stream, lines(1, 10)));
    EXPECT_TRUE(sendText(paging.stream, lines(11, 20)));
    EXPECT_TRUE(sendText(paging.stream, lines(21, 30)));
    EXPECT_EQ(paging.console.calls(),
              pages({lines(1, 10)}) + pages({lines(11, 20)}) + pages({lines(21, 24), lines(25, 30)}));
}

TEST(PagingVirtualPutStream, PageExactlyFilledByASendCountsAsShown) {
    Paging paging;
    EXPECT_TRUE(sendText(paging.stream, lines(1, 24)));
    EXPECT_TRUE(sendText(paging.stream, lines(25, 48)));
    EXPECT_TRUE(sendText(paging.stream, lines(49, 73)));
    EXPECT_EQ(paging.console.calls(),
              pages({lines(1, 24)}) + pages({lines(25, 48)}) + pages({lines(49, 72), lines(73, 73)}));
}

TEST(PagingVirtualPutStream, SendOfNothingShowsNothing) {
    Paging paging;
    EXPECT_TRUE(sendText(paging.stream, ""));
    EXPECT_EQ(paging.console.calls(), Lines{});
}

TEST(PagingVirtualPutStream, SendOfNullReturnsFalseUnlessItsSizeIsZero) {
    Paging paging;
    paging.stream.PutS("held\n");
    EXPECT_FALSE(paging.stream.SendOutputStream(nullptr, 1));
    EXPECT_EQ(paging.console.calls(), Lines{});
    EXPECT_TRUE(paging.stream.SendOutputStream(nullptr, 0));
    EXPECT_EQ(paging.console.calls(), Lines{"send:held\n"});
}

TEST(PagingVirtualPutStream, LongLineCountsAsSeveralScreenLines) {
    Paging paging;
    const std::string longLine(200, 'x');
    EXPECT_TRUE(sendText(paging.stream, longLine + "\n" + lines(1, 22)));
    EXPECT_EQ(paging.console.calls(), pages({longLine + "\n" + lines(1, 21), lines(22, 22)}));
}

TEST(PagingVirtualPutStream, IncompleteLineCountsWhenItEnds) {
    Paging paging;
    const std::string longLine(200, 'x');
    EXPECT_TRUE(sendText(paging.stream, longLine));
    EXPECT_TRUE(sendText(paging.stream, "\n" + lines(1, 22)));
    EXPECT_EQ(paging.console.calls(), pages({longLine}) + pages({"\n" + lines(1, 21), lines(22, 22)}));
}

TEST(PagingVirtualPutStream, IncompleteLineContinuesAtItsColumn) {
    Paging paging("", 10, 4);
    EXPECT_TRUE(sendText(paging.stream, "1234567"));
    EXPECT_TRUE(sendText(paging.stream, "890abcdefghijklmnopqrstuvw"));
    EXPECT_EQ(paging.console.calls(), pages({"1234567"}) + pages({"890abcdefghijklmnopqrst", "uvw"}, 10));
}

TEST(PagingVirtualPutStream, ManyPiecesOfOneLineAreOneLine) {
    Paging paging("", 80, 3);
    for (int i = 0; i < 10; ++i)
        EXPECT_TRUE(sendText(paging.stream, "x"));
    EXPECT_TRUE(sendText(paging.stream, "\na\nb\n"));
    Lines expected(10, shown("x"));
    EXPECT_EQ(paging.console.calls(), expected + pages({"\na\n", "b\n"}));
}

TEST(PagingVirtualPutStream, NewlineAfterAFullLineIsASeparateLine) {
    Paging paging("", 10, 4);
    EXPECT_TRUE(sendText(paging.stream, "1234567890\nx\ny\n"));
    EXPECT_EQ(paging.console.calls(), pages({"1234567890\nx\n", "y\n"}, 10));
}

TEST(PagingVirtualPutStream, LineOneByteShortOfTheWidthIsOneLineWithItsNewline) {
    Paging paging("", 10, 4);
    EXPECT_TRUE(sendText(paging.stream, "123456789\nx\ny\nz\n"));
    EXPECT_EQ(paging.console.calls(), pages({"123456789\nx\ny\n", "z\n"}, 10));
}

TEST(PagingVirtualPutStream, NulEndsALineAndIsShown) {
    Paging paging("", 10, 3);
    const std::string text("a\0b\0c\0", 6);
    EXPECT_TRUE(sendText(paging.stream, text));
    EXPECT_EQ(paging.console.calls(), pages({text.substr(0, 4), text.substr(4)}, 10));
}

TEST(PagingVirtualPutStream, CarriageReturnsAndTabsAreOneColumnEach) {
    Paging paging("", 4, 3);
    EXPECT_TRUE(sendText(paging.stream, "\t\r\t\r\t\r\t\rx"));
    EXPECT_EQ(paging.console.calls(), pages({"\t\r\t\r\t\r\t\r", "x"}, 4));
}

TEST(PagingVirtualPutStream, BytesAbove127AreOneColumnEach) {
    Paging paging("", 4, 3);
    EXPECT_TRUE(sendText(paging.stream, "\xC3\xA4\xC3\xB6\xC3\xBC\xFF\xFFz"));
    EXPECT_EQ(paging.console.calls(), pages({"\xC3\xA4\xC3\xB6\xC3\xBC\xFF\xFF", "z"}, 4));
}

TEST(PagingVirtualPutStream, SizesBelowTwoCountAsTwo) {
    for (const int size : {INT_MIN, -1, 0, 1, 2}) {
        Paging narrow("", size, 3);
        EXPECT_TRUE(sendText(narrow.stream, "abcde"));
        EXPECT_EQ(narrow.console.calls(), pages({"abcd", "e"}, 2)) << size;
        Paging low("", 10, size);
        EXPECT_TRUE(sendText(low.stream, "a\nb\nc\n"));
        EXPECT_EQ(low.console.calls(), pages({"a\n", "b\n", "c\n"}, 10)) << size;
    }
}

TEST(PagingVirtualPutStream, LargestPageShowsEverything) {
    Paging paging("", INT_MAX, INT_MAX);
    EXPECT_TRUE(sendText(paging.stream, lines(1, 500)));
    EXPECT_EQ(paging.console.calls(), pages({lines(1, 500)}));
}

TEST(PagingVirtualPutStream, NewPageSizeAppliesFromTheNextPageOn) {
    Paging paging;
    EXPECT_TRUE(sendText(paging.stream, lines(1, 3)));
    paging.stream.setPageSize(40, 6);
    EXPECT_TRUE(sendText(paging.stream, lines(4, 8)));
    EXPECT_EQ(paging.console.calls(), pages({lines(1, 3)}) + pages({lines(4, 5), lines(6, 8)}, 40));
}

TEST(PagingVirtualPutStream, PageShrunkBelowItsContentContinuesWithinItsNewSize) {
    Paging paging;
    EXPECT_TRUE(sendText(paging.stream, lines(1, 20) + std::string(13, 'x')));
    paging.stream.setPageSize(5, 7);
    // A page shows six lines and the prompt, so line 20 is line 2 of its page; column 13 is column 3 of five.
    EXPECT_TRUE(sendText(paging.stream, "y\nb\nc\nd\ne\n"));
    EXPECT_EQ(paging.console.calls(), pages({lines(1, 20) + std::string(13, 'x')}) + pages({"y\nb\nc\nd\n", "e\n"}, 5));
}

TEST(PagingVirtualPutStream, PageShrunkBelowItsContentStillShowsEverything) {
    Paging paging;
    const std::string start = lines(1, 20) + std::string(70, 'x');
    EXPECT_TRUE(sendText(paging.stream, start));
    for (const int size : {3, 2, 0}) {
        paging.stream.setPageSize(size, size);
        EXPECT_TRUE(sendText(paging.stream, "ab\ncd\nefghijklm\n"));
        EXPECT_EQ(heldBytes(paging.stream), "");
    }
    std::string text;
    for (const std::string& call : paging.console.calls()) {
        if (call.compare(0, 5, "send:") == 0 && call != shown(prompt))
            text += call.substr(5);
    }
    EXPECT_EQ(text, start + "ab\ncd\nefghijklm\nab\ncd\nefghijklm\nab\ncd\nefghijklm\n");
}

// Prompts

TEST(PagingVirtualPutStream, PromptIsTranslated) {
    translating = true;
    Paging paging("", 80, 2);
    EXPECT_TRUE(sendText(paging.stream, "a\nb\n"));
    translating = false;
    EXPECT_EQ(paging.console.calls(), (Lines{"send:a\n", shown(translation), "key", "remove:80", "send:b\n"}));
}

TEST(PagingVirtualPutStream, PromptDoesNotCountAsTransferred) {
    Paging paging("", 80, 2);
    EXPECT_TRUE(sendText(paging.stream, "a\nb\n"));
    EXPECT_EQ(paging.stream.transferred(), 4);
}

TEST(PagingVirtualPutStream, EveryKeyButQShowsTheNextPage) {
    for (int key = 0; key < 256; ++key) {
        const char c = static_cast<char>(key);
        Paging paging(std::string(1, c), 80, 2);
        const bool quits = c == 'q' || c == 'Q';
        EXPECT_EQ(sendText(paging.stream, "a\nb\n"), !quits) << key;
        EXPECT_EQ(paging.stream.hasQuit(), quits) << key;
        const Lines calls = paging.console.calls();
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "send:b\n"), quits ? 0 : 1) << key;
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "remove:80"), 1) << "the prompt is removed in any case";
    }
}

TEST(PagingVirtualPutStream, QuitDiscardsTheRestUntilTheNextSend) {
    for (const char* const key : {"q", "Q"}) {
        Paging paging(key);
        EXPECT_FALSE(sendText(paging.stream, lines(1, 60)));
        EXPECT_TRUE(paging.stream.hasQuit());
        EXPECT_EQ(heldBytes(paging.stream), "");
        EXPECT_EQ(paging.stream.transferred(), static_cast<int>(lines(1, 24).size()));
        EXPECT_TRUE(sendText(paging.stream, lines(1, 25)));
        EXPECT_FALSE(paging.stream.hasQuit());
        EXPECT_EQ(paging.console.calls(), (Lines{shown(lines(1, 24)), shown(prompt), "key", "remove:80"}) +
                                              pages({lines(1, 24), lines(25, 25)}));
    }
}

TEST(PagingVirtualPutStream, QuitAtALaterPageDiscardsTheRest) {
    Paging paging("  q");
    EXPECT_FALSE(sendText(paging.stream, lines(1, 100)));
    EXPECT_EQ(paging.console.calls(),
              pages({lines(1, 24), lines(25, 48), lines(49, 72)}) + (Lines{shown(prompt), "key", "remove:80"}));
}

TEST(PagingVirtualPutStream, EmptySendClearsTheQuit) {
    Paging paging("q", 80, 2);
    EXPECT_FALSE(sendText(paging.stream, "a\nb\n"));
    EXPECT_TRUE(sendText(paging.stream, ""));
    EXPECT_FALSE(paging.stream.hasQuit());
}

// Buffers that fill

TEST(PagingVirtualPutStream, LongSendIsShownAtTheThreshold) {
    test::RecordingConsole console;
    PagingVirtualPutStream stream(console, 80, 3, 8, 8);
    EXPECT_TRUE(sendText(stream, "a\nb\nc\nd\ne\nf\ng\n"));
    EXPECT_EQ(console.calls(), pages({"a\nb\n", "c\nd\n"}) + pages({"e\nf\n", "g\n"}));
}

TEST(PagingVirtualPutStream, QuitInALongSendEndsIt) {
    test::RecordingConsole console("q");
    PagingVirtualPutStream stream(console, 80, 3, 8, 8);
    EXPECT_FALSE(sendText(stream, "a\nb\nc\nd\ne\nf\ng\n"));
    EXPECT_EQ(console.calls(), (Lines{"send:a\nb\n", shown(prompt), "key", "remove:80"}));
    EXPECT_EQ(heldBytes(stream), "");
}

TEST(PagingVirtualPutStream, SendOfBytesInTheBufferShowsThemAgain) {
    test::RecordingConsole console;
    PagingVirtualPutStream stream(console, 80, 25, 16, 4);
    stream.PutS("abcdef");
    EXPECT_TRUE(stream.SendOutputStream(stream.pTail() + 1, 5));
    EXPECT_EQ(console.calls(), (Lines{"send:abcdef", "send:bcdef"}));
}

TEST(PagingVirtualPutStream, SendThatDoesNotFitReturnsFalseAndShowsNothingYet) {
    test::RecordingConsole console;
    PagingVirtualPutStream stream(console, 80, 25, 8, 9);
    EXPECT_FALSE(sendText(stream, "abcdefghij"));
    EXPECT_EQ(heldBytes(stream), "abcdefgh");
    EXPECT_EQ(console.calls(), Lines{});
}

TEST(PagingVirtualPutStream, SendShowsTheBufferFirst) {
    Paging paging("", 80, 3);
    paging.stream.PutS("a\n");
    paging.stream.PutF("%s\n", "b");
    EXPECT_EQ(paging.console.calls(), Lines{});
    EXPECT_TRUE(sendText(paging.stream, "c\n"));
    EXPECT_EQ(paging.console.calls(), pages({"a\nb\n", "c\n"}));
}

TEST(PagingVirtualPutStream, FormattedTextIsShownByAFlush) {
    Paging paging("", 80, 3);
    paging.stream.PutS("a\nb\nc\n");
    paging.stream.FlushOutputStream();
    EXPECT_EQ(paging.console.calls(), pages({"a\nb\n", "c\n"}));
    paging.stream.FlushOutputStream();
    EXPECT_EQ(paging.console.calls(), pages({"a\nb\n", "c\n"}));
}

TEST(PagingVirtualPutStream, FormattedTextIsShownAtTheThreshold) {
    test::RecordingConsole console;
    PagingVirtualPutStream stream(console, 80, 25, 16, 6);
    stream.PutS("a\nb\nc\n");
    EXPECT_EQ(console.calls(), Lines{});
    stream.PutS("d\n");
    EXPECT_EQ(console.calls(), Lines{"send:a\nb\nc\n"});
    EXPECT_EQ(heldBytes(stream), "d\n");
}

TEST(PagingVirtualPutStream, EndAndStartShowTheBuffer) {
    Paging paging;
    paging.stream.PutS("a\n");
    paging.stream.EndOutputStream();
    paging.stream.PutS("b\n");
    EXPECT_TRUE(paging.stream.StartOutputStream());
    EXPECT_EQ(paging.console.calls(), (Lines{"send:a\n", "end", "send:b\n", "end", "start"}));
    EXPECT_EQ(paging.stream.transferred(), 0);
}

TEST(PagingVirtualPutStream, DestructionShowsNothing) {
    test::RecordingConsole console;
    {
        PagingVirtualPutStream stream(console, 80, 25, 64, 64);
        stream.PutS("lost\n");
    }
    EXPECT_EQ(console.calls(), Lines{});
}

// Consoles that fail

TEST(PagingVirtualPutStream, RefusedPageEndsTheFlushAndTheSendReturnsTrue) {
    Paging paging;
    paging.console.screen().refusals = 1;
    EXPECT_TRUE(sendText(paging.stream, lines(1, 30)));
    EXPECT_EQ(paging.console.calls(), Lines{"refused:" + lines(1, 24)});
    EXPECT_EQ(heldBytes(paging.stream), "");
    EXPECT_EQ(paging.stream.transferred(), 0);
    EXPECT_FALSE(paging.stream.hasQuit());
}

TEST(PagingVirtualPutStream, RefusedSecondPageDiscardsTheRest) {
    Paging paging;
    int sends = 0;
    // Refuse the send after the first page and its prompt.
    paging.console.screen().afterSend = [&] {
        paging.console.screen().refusals = ++sends == 2 ? 1 : 0;
    };
    EXPECT_TRUE(sendText(paging.stream, lines(1, 60)));
    EXPECT_EQ(paging.console.calls(),
              (Lines{shown(lines(1, 24)), shown(prompt), "key", "remove:80", "refused:" + lines(25, 48)}));
    EXPECT_EQ(heldBytes(paging.stream), "");
}

TEST(PagingVirtualPutStream, RefusedPromptStillReadsAKey) {
    Paging paging;
    int sends = 0;
    paging.console.screen().afterSend = [&] {
        paging.console.screen().refusals = ++sends == 1 ? 1 : 0;
    };
    EXPECT_TRUE(sendText(paging.stream, lines(1, 30)));
    EXPECT_EQ(paging.console.calls(),
              (Lines{shown(lines(1, 24)), "refused:" + std::string(prompt), "key", "remove:80", shown(lines(25, 30))}));
}

TEST(PagingVirtualPutStream, SendToADeadConsoleReturnsFalseAndBuffersNothing) {
    for (const bool closed : {false, true}) {
        Paging paging;
        paging.console.screen().open = !closed;
        paging.console.screen().error = !closed;
        EXPECT_FALSE(sendText(paging.stream, "lost\n"));
        EXPECT_TRUE(sendText(paging.stream, "")) << "nothing was left over";
        EXPECT_EQ(paging.console.calls(), Lines{});
        EXPECT_EQ(heldBytes(paging.stream), "");
    }
}

TEST(PagingVirtualPutStream, BufferForADeadConsoleIsDiscarded) {
    Paging paging;
    paging.stream.PutS("lost\n");
    paging.console.screen().error = true;
    paging.stream.FlushOutputStream();
    EXPECT_EQ(heldBytes(paging.stream), "");
    paging.console.screen().error = false;
    EXPECT_TRUE(sendText(paging.stream, "shown\n"));
    EXPECT_EQ(paging.console.calls(), Lines{"send:shown\n"});
}

TEST(PagingVirtualPutStream, ConsoleThatDiesBetweenPagesStillGetsTheRestOfTheFlush) {
    Paging paging;
    paging.console.screen().afterSend = [&] {
        paging.console.screen().error = true;
    };
    EXPECT_TRUE(sendText(paging.stream, lines(1, 30))) << "all was taken before the flush";
    EXPECT_EQ(paging.console.calls(), pages({lines(1, 24), lines(25, 30)}));
    EXPECT_FALSE(sendText(paging.stream, "lost\n"));
}

TEST(PagingVirtualPutStream, ConsoleThatDiesInALongSendEndsIt) {
    test::RecordingConsole console;
    console.screen().afterSend = [&] {
        console.screen().open = false;
    };
    PagingVirtualPutStream stream(console, 80, 25, 8, 8);
    EXPECT_FALSE(sendText(stream, "a\nb\nc\nd\ne\nf\ng\nh\ni\n"));
    EXPECT_EQ(console.calls(), Lines{"send:a\nb\nc\nd\n"});
    EXPECT_EQ(heldBytes(stream), "");
}

// One page by hand

TEST(PagingVirtualPutStream, FlushPageShowsTheGivenBytesAndPromptsForTheRest) {
    Paging paging(" q");
    paging.stream.PutS("abcdef");
    EXPECT_TRUE(paging.stream.flushPage(2));
    EXPECT_EQ(heldBytes(paging.stream), "cdef");
    EXPECT_EQ(paging.stream.ReadPosition(), 0);
    EXPECT_FALSE(paging.stream.flushPage(2));
    EXPECT_TRUE(paging.stream.hasQuit());
    EXPECT_EQ(heldBytes(paging.stream), "ef");
    EXPECT_FALSE(paging.stream.flushPage(2));
    EXPECT_EQ(heldBytes(paging.stream), "");
    EXPECT_EQ(paging.stream.transferred(), 6);
    EXPECT_EQ(paging.console.calls(), (Lines{"send:ab", shown(prompt), "key", "remove:80", "send:cd", shown(prompt),
                                             "key", "remove:80", "send:ef"}));
}

TEST(PagingVirtualPutStream, RefusedFlushPageKeepsTheBuffer) {
    Paging paging;
    paging.console.screen().refusals = 1;
    paging.stream.PutS("abc");
    EXPECT_FALSE(paging.stream.flushPage(2));
    EXPECT_EQ(heldBytes(paging.stream), "abc");
    EXPECT_EQ(paging.stream.transferred(), 0);
}

TEST(PagingVirtualPutStream, FlushPageOfMoreThanTheBufferShowsAll) {
    Paging paging;
    paging.stream.PutS("abc");
    EXPECT_FALSE(paging.stream.flushPage(100));
    EXPECT_EQ(paging.console.calls(), Lines{"send:abc"});
    EXPECT_EQ(paging.stream.transferred(), 3);
}

TEST(PagingVirtualPutStream, FlushPageOfANegativeLengthShowsNoText) {
    Paging paging;
    paging.stream.PutS("abc");
    paging.stream.flushPage(-1);
    paging.stream.flushPage(INT_MIN);
    EXPECT_EQ(heldBytes(paging.stream), "abc");
    EXPECT_EQ(paging.stream.transferred(), 0);
}

// Any text on any page

// An independent model of how text is divided into pages.
class PagingModel {
public:
    PagingModel(int width, int height, std::size_t capacity, std::size_t threshold, const std::string& keys)
        : m_width(width), m_height(height), m_capacity(capacity), m_threshold(threshold), m_keys(keys) {}

    Lines calls;

    bool send(const std::string& data) {
        m_quit = false;
        std::size_t taken = 0;
        while (taken < data.size()) {
            if (m_held.size() >= m_threshold)
                flush();
            if (m_quit)
                return false;
            const std::size_t count = std::min(m_capacity - m_held.size(), data.size() - taken);
            m_held += data.substr(taken, count);
            taken += count;
        }
        flush();
        return !m_quit;
    }

private:
    void flush() {
        while (!m_held.empty() && showPage(scanPage())) {
        }
        m_held.clear();
    }
    std::size_t scanPage() {
        std::size_t taken = 0;
        int line = m_line;
        for (; line < m_height - 1 && taken < m_held.size(); ++line) {
            char last = 'x';
            int column = m_column;
            for (; column < m_width && taken < m_held.size() && last != '\n' && last != 0; ++column)
                last = m_held[taken++];
            m_column = last == '\n' || last == 0 ? 0 : column % m_width;
        }
        if (m_column > 0)
            --line;
        m_line = line % (m_height - 1);
        return taken;
    }
    bool showPage(std::size_t length) {
        calls.push_back(shown(m_held.substr(0, length)));
        m_held.erase(0, length);
        if (m_held.empty())
            return false;
        calls.push_back(shown(prompt));
        calls.push_back("key");
        calls.push_back("remove:" + std::to_string(m_width));
        const char key = m_used < m_keys.size() ? m_keys[m_used++] : ' ';
        m_quit = key == 'q' || key == 'Q';
        return !m_quit;
    }

    int m_width;
    int m_height;
    std::size_t m_capacity;
    std::size_t m_threshold;
    std::string m_keys;
    std::string m_held;
    std::size_t m_used = 0;
    bool m_quit = false;
    int m_column = 0;
    int m_line = 0;
};

TEST(PagingVirtualPutStream, DividesAnyTextIntoPagesAsTheModelDoes) {
    test::RandomRun random;
    for (int run = 0; run < 300 && !testing::Test::HasFailure(); ++run) {
        const int width = static_cast<int>(2 + random.below(12));
        const int height = static_cast<int>(2 + random.below(6));
        const unsigned int capacity = 1 + random.below(60);
        const unsigned int threshold = 1 + random.below(capacity);
        const std::string keys = random.text(60, "          q");
        test::RecordingConsole console(keys);
        PagingVirtualPutStream stream(console, width, height, static_cast<int>(capacity), static_cast<int>(threshold));
        PagingModel model(width, height, capacity, threshold, keys);
        for (int step = 0; step < 12; ++step) {
            const std::string text = random.text(90, std::string("abcdefg\n\n\0", 10));
            EXPECT_EQ(sendText(stream, text), model.send(text));
            EXPECT_EQ(heldBytes(stream), "");
        }
        EXPECT_EQ(console.calls(), model.calls) << width << " by " << height << ", " << threshold << " of " << capacity;
    }
}

// Traces

TEST(PagingVirtualPutStream, TracesItsPageSize) {
    const test::DebugSwitch traces(traceSwitch);
    test::LogCapture log;
    test::RecordingConsole console;
    char text[16];
    const PagingVirtualPutStream own(console, 80, 25, 64, 64);
    const PagingVirtualPutStream overArray(console, 132, 50, text, sizeof text, 16);
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(3, constructName, "width = 80, height = 25"),
                                            traceLine(3, constructOverArrayName, "width = 132, height = 50")}));
}

TEST(PagingVirtualPutStream, TracesPagesAndTheQuit) {
    Paging paging("xq", 80, 2);
    const test::DebugSwitch traces(traceSwitch);
    test::LogCapture log;
    EXPECT_FALSE(sendText(paging.stream, "a\nb\nc\n"));
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(3, flushPageName, "Attempting to flush 2 bytes\n"),
                                            traceLine(3, flushPageName, "[Flushed 2 bytes]\n"),
                                            traceLine(3, flushPageName, "now have 4 at tail 0 head 4\n"),
                                            traceLine(3, flushPageName, "Attempting to flush 2 bytes\n"),
                                            traceLine(3, flushPageName, "[Flushed 2 bytes]\n"),
                                            traceLine(3, flushPageName, "now have 2 at tail 0 head 2\n"),
                                            traceLine(3, flushPageName, "user has requested Quit from paging")}));
}

TEST(PagingVirtualPutStream, TracesTheLastPage) {
    Paging paging;
    const test::DebugSwitch traces(traceSwitch);
    test::LogCapture log;
    EXPECT_TRUE(sendText(paging.stream, "ports"));
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(3, flushPageName, "Attempting to flush 5 bytes\n"),
                                            traceLine(3, flushPageName, "[Flushed 5 bytes]\n"),
                                            traceLine(3, flushPageName, "now have 0 at tail 0 head 0\n")}));
}

TEST(PagingVirtualPutStream, TracesARefusedPage) {
    Paging paging;
    paging.console.screen().refusals = 1;
    const test::DebugSwitch traces(traceSwitch);
    test::LogCapture log;
    EXPECT_TRUE(sendText(paging.stream, "ports"));
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(3, flushPageName, "Attempting to flush 5 bytes\n"),
                                            traceLine(3, flushPageName, "couldn't send page to output stream ")}));
}

TEST(PagingVirtualPutStream, TracesFlushesThatShowNothing) {
    Paging paging;
    const test::DebugSwitch traces(traceSwitch);
    test::LogCapture log;
    paging.stream.FlushOutputStream();
    EXPECT_TRUE(sendText(paging.stream, ""));
    paging.stream.PutS("lost");
    paging.console.screen().open = false;
    paging.stream.FlushOutputStream();
    EXPECT_FALSE(sendText(paging.stream, "lost"));
    EXPECT_EQ(test::traceLines(log), Lines(4, traceLine(3, flushName, "discarding virtual stream output\n")));
}

TEST(PagingVirtualPutStream, TracesNothingIfTheSwitchIsOff) {
    test::LogCapture log;
    Paging paging("q", 80, 2);
    EXPECT_FALSE(sendText(paging.stream, "a\nb\n"));
    paging.stream.FlushOutputStream();
    paging.console.screen().refusals = 1;
    EXPECT_TRUE(sendText(paging.stream, "a\nb\n"));
    paging.console.screen().error = true;
    EXPECT_FALSE(sendText(paging.stream, "a\nb\n"));
    EXPECT_EQ(log.count(), 0u);
}

} // namespace
