#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <thread>

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "fw_Logger.h"
#include "fw_Memory.h"
#include "support/ChildProcess.h"
#include "support/ExpectFailure.h"
#include "support/FailingAllocation.h"
#include "support/LogCapture.h"
#include "support/ProtectedMachine.h"
#include "support/TemporaryDirectory.h"

using framework::Logger;

namespace {

void throwFailure(bool flag) {
    throw new framework::Exception(1239, "ut_PutStream", __LINE__, "void f()", "message", flag);
}

struct alignas(64) Wide {
    char bytes[64];
};

unsigned long allocationsOf(void (*operation)()) {
    const unsigned long before = test::allocationCount();
    operation();
    return test::allocationCount() - before;
}

void* volatile kept;

TEST(LogCapture, CollectsTypeFunctionLineAndText) {
    test::LogCapture log;
    Logger::StaticLog(Logger::LOG_ERROR, "%d ports", 4);
    Logger::StaticLogMethod(Logger::LOG_DEBUG, "void f(int)", 12, "text");
    ASSERT_EQ(log.count(), 2U);
    EXPECT_EQ(log.entries()[0].type, Logger::LOG_ERROR);
    EXPECT_EQ(log.entries()[0].function, "");
    EXPECT_EQ(log.entries()[0].line, 0);
    EXPECT_EQ(log.entries()[1].line, 12);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"4 ports", "text"}));
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR, "4 ports"));
    EXPECT_FALSE(log.contains(Logger::LOG_WARNING, "4 ports"));
    EXPECT_FALSE(log.contains(Logger::LOG_ERROR, "4 port"));
    EXPECT_TRUE(log.contains(Logger::LOG_DEBUG, "void f(int)", "text"));
    EXPECT_FALSE(log.contains(Logger::LOG_DEBUG, "void g(int)", "text"));
    EXPECT_FALSE(log.contains(Logger::LOG_ERROR, "", "4 ports"));
    log.clear();
    EXPECT_EQ(log.count(), 0U);
    Logger::StaticLog(Logger::LOG_ERROR, "again");
    EXPECT_EQ(log.texts(), std::vector<std::string>{"again"});
}

TEST(LogCapture, KeepsTextsLongerThanItsStorageGrowsBy) {
    test::LogCapture log;
    const std::string text(3U << 20, 'x');
    Logger::StaticLogS(Logger::LOG_DEBUG, text.c_str());
    Logger::StaticLogS(Logger::LOG_DEBUG, "short");
    EXPECT_EQ(log.texts(), (std::vector<std::string>{text, "short"}));
}

TEST(LogCapture, AllocatesNothingOnTheHeap) {
    test::LogCapture log;
    EXPECT_EQ(allocationsOf([] { Logger::StaticLog(Logger::LOG_ERROR, "%d ports", 4); }), 0U);
    EXPECT_EQ(log.count(), 1U);
}

TEST(ExpectFailure, AcceptsOnlyTheExactValues) {
    EXPECT_FAILURE(throwFailure(true), 1239, "ut_PutStream", "void f()", "message");
    EXPECT_FAILURE_WITH_FLAG(throwFailure(false), 1239, "ut_PutStream", "void f()", "message", false);
    const std::unique_ptr<framework::Exception> failure = CATCH_FAILURE(throwFailure(true));
    ASSERT_NE(failure, nullptr);
    EXPECT_FALSE(test::isFailure(failure.get(), 1238, "ut_PutStream", "void f()", "message", true));
    EXPECT_FALSE(test::isFailure(failure.get(), 1239, "ut_GetStream", "void f()", "message", true));
    EXPECT_FALSE(test::isFailure(failure.get(), 1239, "ut_PutStream", "void g()", "message", true));
    EXPECT_FALSE(test::isFailure(failure.get(), 1239, "ut_PutStream", "void f()", "", true));
    EXPECT_FALSE(test::isFailure(failure.get(), 1239, "ut_PutStream", "void f()", "message", false));
    EXPECT_FALSE(test::isFailure(nullptr, 1239, "ut_PutStream", "void f()", "message", true));
    EXPECT_EQ(CATCH_FAILURE(static_cast<void>(0)), nullptr);
}

TEST(FailingAllocation, CountsEveryKindOfAllocationOnce) {
    EXPECT_EQ(allocationsOf([] { std::free(kept = std::malloc(3)); }), 1U);
    EXPECT_EQ(allocationsOf([] { std::free(kept = std::calloc(3, 3)); }), 1U);
    EXPECT_EQ(allocationsOf([] { std::free(kept = std::realloc(kept = std::malloc(3), 4000)); }), 2U);
    EXPECT_EQ(allocationsOf([] { std::free(kept = aligned_alloc(64, 64)); }), 1U);
    EXPECT_EQ(allocationsOf([] { delete static_cast<int*>(kept = new int); }), 1U);
    EXPECT_EQ(allocationsOf([] { delete[] static_cast<int*>(kept = new int[4]); }), 1U);
    EXPECT_EQ(allocationsOf([] { delete static_cast<int*>(kept = new (std::nothrow) int); }), 1U);
    EXPECT_EQ(allocationsOf([] { delete[] static_cast<int*>(kept = new (std::nothrow) int[4]); }), 1U);
    EXPECT_EQ(allocationsOf([] { delete static_cast<Wide*>(kept = new Wide); }), 1U);
    EXPECT_EQ(allocationsOf([] { delete[] static_cast<Wide*>(kept = new Wide[2]); }), 1U);
    EXPECT_EQ(allocationsOf([] { framework::Memory::StaticFree(framework::Memory::StaticAlloc(4)); }), 1U);
    EXPECT_EQ(allocationsOf([] {}), 0U);
}

TEST(FailingAllocation, FailsOnlyTheChosenAllocation) {
    test::FailingAllocation failing(2);
    void* const first = kept = std::malloc(1);
    void* const second = kept = std::malloc(1);
    void* const third = kept = std::malloc(1);
    failing.stop();
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(second, nullptr);
    EXPECT_NE(third, nullptr);
    EXPECT_EQ(failing.failures(), 1U);
    std::free(first);
    std::free(third);
}

TEST(FailingAllocation, FailsInTheLibrariesAndInOperatorNew) {
    test::FailingAllocation failing(test::failAll);
    void* const fromLibrary = framework::Memory::StaticAlloc(4);
    bool thrown = false;
    try {
        kept = new int;
    } catch (const std::bad_alloc&) {
        thrown = true;
    }
    failing.stop();
    EXPECT_EQ(fromLibrary, nullptr);
    EXPECT_TRUE(thrown);
}

TEST(FailingAllocation, DoesNotAffectOtherThreads) {
    bool got = false;
    std::thread other;
    {
        test::FailingAllocation failing(1000000);
        other = std::thread([&] {
            void* const piece = kept = std::malloc(1);
            got = piece != nullptr;
            std::free(piece);
        });
        other.join();
    }
    EXPECT_TRUE(got);
}

TEST(FailingAllocation, SweepFailsEachAllocationOnce) {
    unsigned int checked = 0;
    unsigned int failed = 0;
    const auto operation = [&] {
        for (int i = 0; i < 3; ++i) {
            void* const piece = kept = std::malloc(1);
            failed += static_cast<unsigned int>(piece == nullptr);
            std::free(piece);
        }
    };
    EXPECT_EQ(test::failEachAllocationOnce(operation, [&] { ++checked; }), 3U);
    EXPECT_EQ(checked, 3U);
    EXPECT_EQ(failed, 3U);
}

TEST(TemporaryDirectory, IsRemovedWithItsContent) {
    std::string path;
    {
        const test::TemporaryDirectory directory;
        path = directory.path();
        EXPECT_EQ(directory.write("a", "text"), path + "/a");
        EXPECT_EQ(directory.read("a"), "text");
        EXPECT_TRUE(directory.exists("a"));
        EXPECT_FALSE(directory.exists("b"));
        EXPECT_EQ(mkdir(directory.path("closed").c_str(), 0700), 0);
        directory.write("closed/b", "");
        EXPECT_EQ(chmod(directory.path("closed").c_str(), 0), 0);
    }
    EXPECT_NE(access(path.c_str(), F_OK), 0);
}

TEST(ChildProcess, ReportsStatusAndOutput) {
    const test::ChildResult child = test::runInChild([] {
        std::printf("out");
        std::fprintf(stderr, "err");
        return 3;
    });
    EXPECT_TRUE(child.exited);
    EXPECT_EQ(child.status, 3);
    EXPECT_EQ(child.signal, 0);
    EXPECT_FALSE(child.timedOut);
    EXPECT_EQ(child.out, "out");
    EXPECT_EQ(child.err, "err");
}

TEST(ChildProcess, ReportsTheSignalThatEndedIt) {
    const test::ChildResult child = test::runInChild([] { raise(SIGTERM); });
    EXPECT_FALSE(child.exited);
    EXPECT_EQ(child.signal, SIGTERM);
}

TEST(ChildProcess, IsKilledAfterTheTimeLimit) {
    const test::ChildResult child = test::runInChild([] { pause(); }, std::chrono::seconds(1));
    EXPECT_TRUE(child.timedOut);
    EXPECT_EQ(child.signal, SIGKILL);
}

// What protects the machine is tried in a child: it holds for the life of a process.

TEST(ProtectedMachine, LeavesNothingOfTheMachineToWrite) {
    const test::ChildResult child = test::runInChild([] {
        test::ProtectedMachine machine;
        machine.SetUp();
        if (testing::Test::IsSkipped())
            return 77;
        EXPECT_LT(open("/etc/passwd", O_WRONLY | O_CLOEXEC), 0);
        EXPECT_LT(open("/etc/passwd.new", O_WRONLY | O_CREAT | O_CLOEXEC, 0600), 0);
        EXPECT_LT(open("/vxut", O_WRONLY | O_CREAT | O_CLOEXEC, 0600), 0);
        const test::TemporaryDirectory directory;
        EXPECT_EQ(directory.read(directory.write("file", "text").substr(directory.path().size() + 1)), "text");
        return testing::Test::HasFailure() ? 1 : 0;
    });
    if (child.status == 77)
        GTEST_SKIP() << "neither a mount namespace nor an ordinary user's rights can be had";
    EXPECT_EQ(child.status, 0) << child.out << child.err;
}

TEST(ProtectedMachine, ReachesFromTheProgramToWhatItStarts) {
    const test::ChildResult child = test::runInChild([] {
        test::ProtectedMachine machine;
        machine.SetUp();
        if (testing::Test::IsSkipped())
            return 77;
        return std::system("test ! -w /etc/passwd -a ! -w /etc -a ! -w /") == 0 ? 0 : 1;
    });
    if (child.status == 77)
        GTEST_SKIP() << "neither a mount namespace nor an ordinary user's rights can be had";
    EXPECT_EQ(child.status, 0) << child.out << child.err;
}

TEST(ProtectedMachine, OrdinaryUserIsEnoughWhereNoNamespaceCanBeHad) {
    if (geteuid() != 0)
        GTEST_SKIP() << "not root";
    const test::ChildResult child = test::runInChild([] {
        if (!test::ProtectedMachine::becomeNobody())
            return 77;
        EXPECT_TRUE(test::ProtectedMachine::isOutOfReach());
        EXPECT_GE(open("/proc/self/fd", O_RDONLY | O_DIRECTORY | O_CLOEXEC), 0);
        const test::TemporaryDirectory directory;
        directory.write("file", "text");
        return testing::Test::HasFailure() ? 1 : 0;
    });
    if (child.status == 77)
        GTEST_SKIP() << "this program cannot become an ordinary user";
    EXPECT_EQ(child.status, 0) << child.out << child.err;
}

} // namespace
