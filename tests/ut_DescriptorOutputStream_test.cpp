#include "ut_DescriptorOutputStream.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <type_traits>

#include <fcntl.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "ChildProcess.h"
#include "Descriptor.h"
#include "TemporaryDirectory.h"
#include "VirtualSlot.h"
#include "ut_VirtualPutStream.h"

namespace {

// How many of this thread's next calls of `write` return 0.
thread_local int emptyWrites = 0;
// How many bytes each call of `write` in this thread accepts.
thread_local std::size_t bytesPerWrite = SIZE_MAX;

} // namespace

extern "C" ssize_t write(int fd, const void* data, std::size_t size) {
    return emptyWrites > 0 && emptyWrites-- > 0 ? 0 : syscall(SYS_write, fd, data, std::min(size, bytesPerWrite));
}

namespace {

using utility::DescriptorOutputStream;

static_assert(std::is_base_of<framework::OutputStream, DescriptorOutputStream>::value, "it is written as an output");
static_assert(!std::is_convertible<int, DescriptorOutputStream>::value, "a number is not a stream by itself");

bool send(DescriptorOutputStream& stream, const std::string& data) {
    return stream.SendOutputStream(data.data(), static_cast<unsigned int>(data.size()));
}

TEST(DescriptorOutputStream, UsageExample) {
    const test::ChildResult child = test::runInChild([] {
        utility::DescriptorOutputStream out(STDOUT_FILENO);
        if (!out.SendOutputStream("ready\n", 6))
            _exit(1);
    });
    EXPECT_TRUE(child.exited);
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.out, "ready\n");
}

TEST(DescriptorOutputStream, NeverSeeks) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.write("file", "kept");
    const test::Descriptor file(open(path.c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_EQ(lseek(file.number(), 2, SEEK_SET), 2);
    DescriptorOutputStream out(file.number());
    EXPECT_TRUE(out.StartOutputStream());
    EXPECT_TRUE(send(out, "XY"));
    out.EndOutputStream();
    EXPECT_TRUE(send(out, "Z"));
    EXPECT_TRUE(out.isOutputStreamGood());
    EXPECT_EQ(file.offset(), 5);
}

TEST(DescriptorOutputStream, ContinuesAfterAShortWrite) {
    const test::Pipe pipe;
    DescriptorOutputStream out(pipe.writer.number());
    bytesPerWrite = 3;
    EXPECT_TRUE(send(out, "ten bytes!"));
    bytesPerWrite = SIZE_MAX;
    EXPECT_EQ(pipe.reader.readAvailable(), "ten bytes!");
}

// Reads `size` bytes slowly.
std::string readSlowly(int fd, std::size_t size) {
    std::string shown;
    char piece[50000];
    while (shown.size() < size) {
        const ssize_t count = read(fd, piece, sizeof piece);
        if (count <= 0)
            break;
        shown.append(piece, static_cast<std::size_t>(count));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return shown;
}

TEST(DescriptorOutputStream, WaitsForASlowReaderOfANonBlockingDescriptor) {
    const test::Pipe pipe;
    ASSERT_EQ(fcntl(pipe.writer.number(), F_SETFL, O_NONBLOCK), 0);
    DescriptorOutputStream out(pipe.writer.number());
    const std::string text(1000000, 'x');
    std::thread writer([&] { EXPECT_TRUE(send(out, text)); });
    EXPECT_TRUE(readSlowly(pipe.reader.number(), text.size()) == text);
    writer.join();
    EXPECT_EQ(out.errorNumber(), 0);
}

TEST(DescriptorOutputStream, ContinuesAfterASignal) {
    struct sigaction action = {};
    struct sigaction former = {};
    action.sa_handler = [](int) {
    };
    // Without SA_RESTART, so that the calls fail with EINTR.
    ASSERT_EQ(sigaction(SIGUSR1, &action, &former), 0);
    for (const int flags : {0, O_NONBLOCK}) {
        const test::Pipe pipe;
        ASSERT_EQ(fcntl(pipe.writer.number(), F_SETFL, flags), 0);
        DescriptorOutputStream out(pipe.writer.number());
        const std::string text(1000000, 'x');
        std::string shown;
        std::thread reader([&, writer = pthread_self()] {
            for (int i = 0; i < 10; ++i) {
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
                pthread_kill(writer, SIGUSR1);
            }
            shown = readSlowly(pipe.reader.number(), text.size());
        });
        EXPECT_TRUE(send(out, text));
        reader.join();
        EXPECT_TRUE(shown == text);
    }
    sigaction(SIGUSR1, &former, nullptr);
}

TEST(DescriptorOutputStream, AFailureIsSticky) {
    const test::Descriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
    DescriptorOutputStream out(full.number());
    EXPECT_TRUE(send(out, ""));
    EXPECT_FALSE(send(out, "text"));
    EXPECT_EQ(out.errorNumber(), ENOSPC);
    EXPECT_TRUE(out.isOutputStreamInError());
    EXPECT_FALSE(out.isOutputStreamGood());
    EXPECT_TRUE(out.isOutputStreamOpen());
    EXPECT_FALSE(out.StartOutputStream());
    EXPECT_FALSE(send(out, ""));
    EXPECT_EQ(out.errorNumber(), ENOSPC);
}

TEST(DescriptorOutputStream, AWriteThatAcceptsNothingIsAFailure) {
    const test::Descriptor null(open("/dev/null", O_WRONLY | O_CLOEXEC));
    DescriptorOutputStream out(null.number());
    emptyWrites = 1;
    EXPECT_FALSE(send(out, "text"));
    EXPECT_EQ(emptyWrites, 0);
    EXPECT_EQ(out.errorNumber(), EIO);
}

TEST(DescriptorOutputStream, ADescriptorThatIsNotOpenFailsAtTheFirstSend) {
    DescriptorOutputStream out(-1);
    EXPECT_TRUE(out.StartOutputStream());
    EXPECT_FALSE(send(out, "text"));
    EXPECT_EQ(out.errorNumber(), EBADF);
}

TEST(DescriptorOutputStream, ANullTextIsRefused) {
    const test::Pipe pipe;
    DescriptorOutputStream out(pipe.writer.number());
    EXPECT_FALSE(out.SendOutputStream(nullptr, 1));
    EXPECT_TRUE(out.SendOutputStream(nullptr, 0));
    EXPECT_EQ(out.errorNumber(), 0);
    EXPECT_EQ(pipe.reader.readAvailable(), "");
}

TEST(DescriptorOutputStream, APipeWithoutAReaderEndsTheProcess) {
    const test::ChildResult child = test::runInChild([] {
        std::signal(SIGPIPE, SIG_DFL);
        test::Pipe pipe;
        pipe.reader.close();
        DescriptorOutputStream out(pipe.writer.number());
        send(out, "text");
    });
    EXPECT_EQ(child.signal, SIGPIPE);
}

TEST(DescriptorOutputStream, APipeWithoutAReaderIsAnErrorIfTheSignalIsIgnored) {
    const test::ChildResult child = test::runInChild([] {
        std::signal(SIGPIPE, SIG_IGN);
        test::Pipe pipe;
        pipe.reader.close();
        DescriptorOutputStream out(pipe.writer.number());
        return !send(out, "text") && out.errorNumber() == EPIPE ? 0 : 1;
    });
    EXPECT_EQ(child.status, 0);
}

TEST(DescriptorOutputStream, KnowsTheStartOfALineAndTheLastSize) {
    const test::Pipe pipe;
    DescriptorOutputStream out(pipe.writer.number());
    EXPECT_TRUE(out.isAtLineStart());
    EXPECT_EQ(out.lastSize(), 0U);
    send(out, "a\nb");
    EXPECT_FALSE(out.isAtLineStart());
    EXPECT_EQ(out.lastSize(), 3U);
    send(out, "\n");
    EXPECT_TRUE(out.isAtLineStart());
    send(out, "x\r");
    EXPECT_TRUE(out.isAtLineStart());
    send(out, "");
    EXPECT_TRUE(out.isAtLineStart());
    EXPECT_EQ(out.lastSize(), 0U);
}

TEST(DescriptorOutputStream, IsTheTargetOfABufferedStream) {
    const test::Pipe pipe;
    DescriptorOutputStream out(pipe.writer.number());
    utility::VirtualPutStream formatted(out, 64, 32);
    std::string expected;
    for (int i = 0; i < 100; ++i) {
        formatted.PutF("port %d\n", i);
        expected += "port " + std::to_string(i) + "\n";
    }
    formatted.FlushOutputStream();
    EXPECT_EQ(pipe.reader.readAvailable(), expected);
}

TEST(DescriptorOutputStream, OverridesHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&DescriptorOutputStream::StartOutputStream), 2);
    EXPECT_EQ(test::virtualSlot(&DescriptorOutputStream::SendOutputStream), 4);
}

} // namespace
