#include "fw_StableStringRepository.h"

#include <atomic>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include <signal.h>
#include <sys/time.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "fw_Memory.h"
#include "support/ChildProcess.h"
#include "support/FailingAllocation.h"

using strings::GS;
using strings::StringRepository;

namespace {

// Made before the repository of a library that is not linked first could have been constructed.
const stringtoken tokenOfStart = GS.toToken("made by a constructor of the program");

std::string textNumber(int number) {
    return "text number " + std::to_string(number);
}

TEST(StableStringRepository, UsageExample) {
    stringtoken token = strings::GS.toToken("volume");
    EXPECT_STREQ(strings::StringRepository::toString(token), "volume");
}

TEST(StableStringRepository, NullHasNumberZero) {
    EXPECT_EQ(GS.toToken(nullptr), 0U);
}

TEST(StableStringRepository, WorksFromStaticConstructors) {
    EXPECT_GE(tokenOfStart, 6945U);
    EXPECT_STREQ(StringRepository::toString(tokenOfStart), "made by a constructor of the program");
}

TEST(StableStringRepository, WorksInStaticDestructorsAndExitHandlers) {
    const test::ChildResult child = test::runInChild([] {
        std::atexit([] {
            const stringtoken token = GS.toToken("made at the very end");
            const char* text = StringRepository::toString(token);
            _exit(token >= 6945 && text != nullptr && std::string(text) == "made at the very end" ? 7 : 8);
        });
        std::exit(0);
    });
    EXPECT_EQ(child.status, 7);
}

TEST(StableStringRepository, FirstNumberOfRunTimeIs6945AndTheNextFollow) {
    const stringtoken first = GS.toToken("first of this test");
    EXPECT_GE(first, 6945U);
    EXPECT_EQ(GS.toToken("second of this test"), first + 1);
    EXPECT_EQ(GS.toToken("first of this test"), first);
    EXPECT_EQ(GS.toToken("third of this test"), first + 2);
    EXPECT_EQ(tokenOfStart, 6945U);
}

TEST(StableStringRepository, CopiesTheText) {
    char text[] = "a text that changes";
    const stringtoken token = GS.toToken(text);
    text[0] = 'X';
    EXPECT_STREQ(StringRepository::toString(token), "a text that changes");
    EXPECT_NE(GS.toToken(text), token);
}

TEST(StableStringRepository, TellsTextsApartByEveryByte) {
    EXPECT_NE(GS.toToken(""), 0U);
    EXPECT_EQ(GS.toToken(""), GS.toToken(""));
    EXPECT_NE(GS.toToken("ab"), GS.toToken("ba"));
    EXPECT_NE(GS.toToken("url"), 630U);
    EXPECT_NE(GS.toToken("URL "), 630U);
    EXPECT_NE(GS.toToken("\xc3\xa4"), GS.toToken("\xc3\xa5"));
    const std::string longText(100000, 'x');
    const stringtoken token = GS.toToken(longText.c_str());
    EXPECT_EQ(StringRepository::toString(token), longText);
    EXPECT_NE(GS.toToken((longText + "y").c_str()), token);
}

TEST(StableStringRepository, HoldsManyTexts) {
    std::vector<stringtoken> tokens;
    for (int i = 0; i < 20000; ++i)
        tokens.push_back(GS.toToken(textNumber(i).c_str()));
    for (int i = 0; i < 20000; ++i) {
        ASSERT_EQ(GS.toToken(textNumber(i).c_str()), tokens[static_cast<unsigned int>(i)]);
        ASSERT_EQ(StringRepository::toString(tokens[static_cast<unsigned int>(i)]), textNumber(i));
    }
}

TEST(StableStringRepository, ThreadsGetTheSameNumberForTheSameText) {
    constexpr int threadCount = 4;
    constexpr int textCount = 2000;
    std::vector<std::vector<stringtoken>> tokens(threadCount);
    std::atomic<int> waiting{threadCount};
    std::atomic<bool> wrongText{false};
    std::vector<std::thread> threads;
    for (std::vector<stringtoken>& mine : tokens)
        threads.emplace_back([&] {
            for (--waiting; waiting > 0;)
                std::this_thread::yield();
            for (int i = 0; i < textCount; ++i) {
                const std::string text = "shared " + textNumber(i);
                mine.push_back(GS.toToken(text.c_str()));
                const char* known = StringRepository::toString(mine.back());
                if (known == nullptr || known != text)
                    wrongText = true;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_FALSE(wrongText);
    for (const std::vector<stringtoken>& other : tokens)
        EXPECT_EQ(other, tokens[0]);
    std::vector<stringtoken> sorted = tokens[0];
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted.back() - sorted.front(), static_cast<stringtoken>(textCount - 1));
}

TEST(StableStringRepository, FailedAllocationGivesZeroAndLeavesNothingBehind) {
    const stringtoken before = GS.toToken("before the failures");
    // Far enough that the table of numbers has to grow on the way.
    for (int i = 0; i < 3000; ++i) {
        const std::string text = "failing " + textNumber(i);
        stringtoken token = 0;
        stringtoken failed = 0;
        test::failEachAllocationOnce([&] { token = GS.toToken(text.c_str()); }, [&] { failed |= token; });
        ASSERT_EQ(failed, 0U);
        ASSERT_EQ(token, before + 1 + static_cast<stringtoken>(i));
        ASSERT_EQ(StringRepository::toString(token), text);
    }
}

TEST(StableStringRepository, TakesNoMemoryForATextItKnows) {
    GS.toToken("known by now");
    const unsigned long before = test::allocationCount();
    GS.toToken("known by now");
    GS.toToken("URL");
    StringRepository::toString(630);
    EXPECT_EQ(test::allocationCount(), before);
}

TEST(StableStringRepository, ChildOfABusyProcessCanMakeTexts) {
    std::atomic<bool> stop{false};
    std::thread busy([&] {
        for (int i = 0; !stop; ++i)
            GS.toToken(("busy " + textNumber(i % 100000)).c_str());
    });
    for (int i = 0; i < 20; ++i) {
        const test::ChildResult child = test::runInChild([] { return GS.toToken("made in the child") != 0 ? 0 : 1; });
        EXPECT_EQ(child.status, 0);
    }
    stop = true;
    busy.join();
}

// A log sink that a signal handler calls may ask for a token.
TEST(StableStringRepository, SignalHandlerDoesNotWaitForItsOwnThread) {
    const test::ChildResult child = test::runInChild([] {
        static volatile sig_atomic_t handled = 0;
        struct sigaction action = {};
        action.sa_handler = [](int) {
            char text[] = "made by handler 0000000";
            int number = handled;
            handled = number + 1;
            for (std::size_t at = sizeof text - 2; number > 0; --at, number /= 10)
                text[at] = static_cast<char>('0' + number % 10);
            GS.toToken(text);
        };
        sigaction(SIGALRM, &action, nullptr);
        const itimerval interval = {{0, 200}, {0, 200}};
        setitimer(ITIMER_REAL, &interval, nullptr);
        // Allocates nothing itself: a handler must not interrupt an allocation.
        char text[] = "made by thread 0000000";
        for (int made = 0; made < 300000 || handled < 100; ++made) {
            int number = made;
            for (std::size_t at = sizeof text - 2; number > 0; --at, number /= 10)
                text[at] = static_cast<char>('0' + number % 10);
            GS.toToken(text);
        }
        const itimerval none = {};
        setitimer(ITIMER_REAL, &none, nullptr);
    });
    EXPECT_FALSE(child.timedOut);
    EXPECT_EQ(child.status, 0);
}

} // namespace
