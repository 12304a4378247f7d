#include "ut_FileInputStream.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <string>
#include <type_traits>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "ChildProcess.h"
#include "Descriptor.h"
#include "LogCapture.h"
#include "OpenDescriptors.h"
#include "OrdinaryUser.h"
#include "ReceiveText.h"
#include "RecordingOutput.h"
#include "TemporaryDirectory.h"
#include "VirtualSlot.h"
#include "ut_VirtualGetStream.h"

namespace {

using test::receiveText;
using utility::FileInputStream;

static_assert(std::is_base_of<framework::InputStream, FileInputStream>::value, "it is read as an input");
static_assert(!std::is_copy_constructible<FileInputStream>::value, "a copy would close the descriptor twice");
static_assert(!std::is_copy_assignable<FileInputStream>::value, "an assignment would close the descriptor twice");
static_assert(!std::is_convertible<int, FileInputStream>::value, "a number is not a stream by itself");

constexpr unsigned int none = 0xFFFFFFFFu;

// Expects that no test logs anything.
class FileInputStreamTest : public testing::Test {
protected:
    ~FileInputStreamTest() override {
        EXPECT_EQ(m_log.texts(), std::vector<std::string>());
    }

    test::Descriptor openFile(const std::string& name, int flags) const {
        return test::Descriptor(open(m_directory.path(name).c_str(), flags));
    }
    std::string makeFifo(const std::string& name) const {
        EXPECT_EQ(mkfifo(m_directory.path(name).c_str(), 0600), 0);
        return m_directory.path(name);
    }
    static unsigned int inodeOf(const std::string& path) {
        struct stat64 status;
        return stat64(path.c_str(), &status) == 0 ? static_cast<unsigned int>(status.st_ino) : 0;
    }

    test::TemporaryDirectory m_directory;
    test::LogCapture m_log;
};

TEST_F(FileInputStreamTest, UsageExample) {
    const std::string path = m_directory.write("hosts", "127.0.0.1 localhost\n");
    utility::FileInputStream file(path.c_str());
    char block[512];
    int count = file.ReceiveInputStream(block, sizeof block);
    EXPECT_EQ(std::string(block, static_cast<std::size_t>(count)), "127.0.0.1 localhost\n");
    EXPECT_EQ(file.ReceiveInputStream(block, sizeof block), 0);
}

TEST_F(FileInputStreamTest, VirtualOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&FileInputStream::StartInputStream), 2);
    EXPECT_EQ(test::virtualSlot(&FileInputStream::EndInputStream), 3);
    EXPECT_EQ(test::virtualSlot(&FileInputStream::ReceiveInputStream), 4);
    EXPECT_EQ(test::virtualSlot(&FileInputStream::isInputStreamOpen), 5);
    EXPECT_EQ(test::virtualSlot(&FileInputStream::isInputStreamInError), 6);
    EXPECT_EQ(test::virtualSlot(&FileInputStream::isInputStreamAtEnd), 7);
    EXPECT_EQ(test::virtualSlot(&FileInputStream::isInputStreamGood), 8);
    EXPECT_EQ(test::virtualSlot(&FileInputStream::GetInputStreamSize), 9);
    EXPECT_EQ(test::virtualSlot(&FileInputStream::setInputMode), 10);
}

TEST_F(FileInputStreamTest, ExistingFileIsOpenAndGood) {
    const std::string path = m_directory.write("ports", "4");
    FileInputStream stream(path.c_str());
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_FALSE(stream.isInputStreamInError());
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_TRUE(stream.isInputStreamGood());
    EXPECT_EQ(stream.errorNumber(), 0);
}

TEST_F(FileInputStreamTest, OpensForReadingOnlyAndCloseOnExec) {
    const std::string path = m_directory.write("ports", "4");
    const FileInputStream stream(path.c_str());
    const std::vector<int> descriptors = test::descriptorsOf(path);
    ASSERT_EQ(descriptors.size(), 1u);
    EXPECT_EQ(fcntl(descriptors[0], F_GETFL) & O_ACCMODE, O_RDONLY);
    EXPECT_TRUE(test::isClosedOnExec(descriptors[0]));
}

TEST_F(FileInputStreamTest, NeverUsesTheDescriptorOfAStandardStream) {
    const std::string path = m_directory.write("ports", "4");
    const test::ChildResult child = test::runInChild([&] {
        test::closeStandardStreams();
        {
            FileInputStream stream(path.c_str());
            if (!test::areStandardStreamsClosed() || !stream.isInputStreamGood() || receiveText(stream, 10) != "4")
                return 1;
            if (!test::isClosedOnExec(test::descriptorsOf(path).at(0)))
                return 2;
            if (stream.Reopen() != 0 || !test::areStandardStreamsClosed() || receiveText(stream, 10) != "4")
                return 3;
            const std::vector<int> descriptors = test::descriptorsOf(path);
            if (descriptors.size() != 1 || !test::isClosedOnExec(descriptors[0]))
                return 4;
        }
        return test::descriptorsOf(path).empty() ? 0 : 5;
    });
    EXPECT_EQ(child.status, 0) << child.err;
}

TEST_F(FileInputStreamTest, LeavesAStandardStreamOpenThatWasClosedBefore) {
    const std::string path = m_directory.write("ports", "4");
    const test::ChildResult child = test::runInChild([&] {
        close(STDIN_FILENO);
        { const FileInputStream whileClosed(path.c_str()); }
        if (open("/dev/null", O_RDONLY) != STDIN_FILENO)
            return 1;
        { const FileInputStream whileOpen(path.c_str()); }
        return fcntl(STDIN_FILENO, F_GETFD) >= 0 ? 0 : 2;
    });
    EXPECT_EQ(child.status, 0) << child.err;
}

TEST_F(FileInputStreamTest, FailsIfOnlyDescriptorsOfStandardStreamsAreLeft) {
    const std::string path = m_directory.write("ports", "4");
    const test::ChildResult child = test::runInChild([&] {
        test::closeStandardStreams();
        rlimit few = {};
        getrlimit(RLIMIT_NOFILE, &few);
        few.rlim_cur = 3;
        if (setrlimit(RLIMIT_NOFILE, &few) != 0)
            return 1;
        FileInputStream stream(path.c_str());
        if (stream.isInputStreamOpen() || !test::areStandardStreamsClosed())
            return 2;
        // F_DUPFD_CLOEXEC fails with EINVAL if its minimum is at or above the limit.
        return stream.errorNumber() == EMFILE || stream.errorNumber() == EINVAL ? 0 : 3;
    });
    EXPECT_EQ(child.status, 0) << child.err;
}

TEST_F(FileInputStreamTest, ClosesTheFileItOpened) {
    const std::string path = m_directory.write("ports", "4");
    {
        const FileInputStream stream(path.c_str());
        EXPECT_EQ(test::descriptorsOf(path).size(), 1u);
    }
    EXPECT_EQ(test::descriptorsOf(path).size(), 0u);
}

TEST_F(FileInputStreamTest, ClosesTheFileItOpenedEvenInError) {
    {
        FileInputStream stream(m_directory.path().c_str());
        EXPECT_EQ(receiveText(stream, 10), "-1");
        EXPECT_TRUE(stream.isInputStreamInError());
        EXPECT_EQ(test::descriptorsOf(m_directory.path()).size(), 1u);
    }
    EXPECT_EQ(test::descriptorsOf(m_directory.path()).size(), 0u);
}

void expectFailedOpen(FileInputStream& stream, int error) {
    EXPECT_FALSE(stream.isInputStreamOpen());
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_FALSE(stream.isInputStreamGood());
    EXPECT_EQ(stream.errorNumber(), error);
    EXPECT_EQ(receiveText(stream, 10), "-1");
    EXPECT_FALSE(stream.StartInputStream());
    EXPECT_FALSE(stream.Position(0));
    EXPECT_EQ(stream.At(), none);
    EXPECT_EQ(stream.GetInputStreamSize(), -1);
    EXPECT_EQ(stream.GetInode(), none);
    EXPECT_EQ(stream.errorNumber(), error);
}

TEST_F(FileInputStreamTest, MissingFileIsAnError) {
    const std::string path = m_directory.path("missing");
    FileInputStream stream(path.c_str());
    expectFailedOpen(stream, ENOENT);
    EXPECT_FALSE(m_directory.exists("missing"));
}

TEST_F(FileInputStreamTest, PathThroughAFileIsAnError) {
    const std::string path = m_directory.write("file", "") + "/ports";
    FileInputStream stream(path.c_str());
    expectFailedOpen(stream, ENOTDIR);
}

TEST_F(FileInputStreamTest, LinkToItselfIsAnError) {
    const std::string path = m_directory.path("link");
    ASSERT_EQ(symlink("link", path.c_str()), 0);
    FileInputStream stream(path.c_str());
    expectFailedOpen(stream, ELOOP);
}

TEST_F(FileInputStreamTest, EmptyAndNullPathsAreMissingFiles) {
    FileInputStream empty("");
    expectFailedOpen(empty, ENOENT);
    FileInputStream null(static_cast<const char*>(nullptr));
    expectFailedOpen(null, ENOENT);
}

TEST_F(FileInputStreamTest, FileWithoutReadPermissionIsAnError) {
    const std::string path = m_directory.write("ports", "secret");
    ASSERT_EQ(chmod(path.c_str(), 0200), 0);
    ASSERT_EQ(chmod(m_directory.path().c_str(), 0755), 0);
    const test::ChildResult child = test::runInChild([&] {
        test::becomeOrdinaryUser();
        FileInputStream stream(path.c_str());
        const bool refused = receiveText(stream, 6) == "-1";
        return refused && !stream.isInputStreamOpen() && stream.isInputStreamInError() ? stream.errorNumber() : -1;
    });
    EXPECT_EQ(child.status, EACCES) << child.err;
}

TEST_F(FileInputStreamTest, AdoptedDescriptorIsSeekedToItsStart) {
    m_directory.write("ports", "0123456789");
    const test::Descriptor file = openFile("ports", O_RDONLY);
    ASSERT_EQ(lseek(file.number(), 7, SEEK_SET), 7);
    FileInputStream stream(file.number());
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_EQ(file.offset(), 0);
    EXPECT_EQ(receiveText(stream, 3), "012");
    EXPECT_EQ(stream.errorNumber(), 0);
}

TEST_F(FileInputStreamTest, AdoptedDescriptorStaysOpenAndKeepsItsFlags) {
    m_directory.write("ports", "0123456789");
    const test::Descriptor file = openFile("ports", O_RDONLY);
    {
        FileInputStream stream(file.number());
        EXPECT_FALSE(test::isClosedOnExec(file.number()));
        EXPECT_EQ(receiveText(stream, 3), "012");
    }
    EXPECT_EQ(file.readAvailable(), "3456789");
}

TEST_F(FileInputStreamTest, AskingForTheErrorStateSetsItForAnAdoptedDescriptor) {
    m_directory.write("ports", "0123456789");
    const test::Descriptor file = openFile("ports", O_RDONLY);
    FileInputStream stream(file.number());
    EXPECT_EQ(receiveText(stream, 3), "012");
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_FALSE(stream.isInputStreamGood());
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_EQ(receiveText(stream, 3), "-1");
    EXPECT_FALSE(stream.StartInputStream());
}

TEST_F(FileInputStreamTest, AdoptedDescriptorIsNotASourceForOtherStreamsButItsPathIs) {
    m_directory.write("ports", "0123456789");
    const test::Descriptor file = openFile("ports", O_RDONLY);
    const std::string path = "/proc/self/fd/" + std::to_string(file.number());

    FileInputStream adopted(file.number());
    test::RecordingOutput nothing;
    EXPECT_FALSE(nothing.TransferFromInputStream(adopted));
    EXPECT_EQ(nothing.text(), "");
    FileInputStream viewed(file.number());
    utility::VirtualGetStream empty(viewed, 64, 0, 1, nullptr);
    empty.StartInputStream();
    EXPECT_EQ(empty.ReadAvailable(), 0);

    FileInputStream opened(path.c_str());
    if (!opened.isInputStreamOpen())
        GTEST_SKIP() << "no /proc here";
    test::RecordingOutput whole;
    EXPECT_TRUE(whole.TransferFromInputStream(opened));
    EXPECT_EQ(whole.text(), "0123456789");
    FileInputStream source(path.c_str());
    utility::VirtualGetStream view(source, 64, 0, 1, nullptr);
    EXPECT_TRUE(view.StartInputStream());
    EXPECT_EQ(view.ReadAvailable(), 10);
}

TEST_F(FileInputStreamTest, AdoptedPipeIsInErrorFromTheStart) {
    const test::Pipe pipe;
    ASSERT_EQ(write(pipe.writer.number(), "kept", 4), 4);
    FileInputStream stream(pipe.reader.number());
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_EQ(stream.errorNumber(), ESPIPE);
    EXPECT_EQ(receiveText(stream, 4), "-1");
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_EQ(pipe.reader.readAvailable(), "kept");
}

TEST_F(FileInputStreamTest, InvalidDescriptorIsInError) {
    FileInputStream stream(-1);
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_EQ(stream.errorNumber(), EBADF);
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_EQ(receiveText(stream, 4), "-1");
    EXPECT_EQ(stream.GetInputStreamSize(), -1);
    EXPECT_EQ(stream.GetInode(), none);
}

TEST_F(FileInputStreamTest, ReceivesTheAvailableBytesUpToTheSize) {
    const std::string path = m_directory.write("ports", "0123456789");
    FileInputStream stream(path.c_str());
    EXPECT_EQ(receiveText(stream, 1), "0");
    EXPECT_EQ(receiveText(stream, 4), "1234");
    EXPECT_EQ(receiveText(stream, 100), "56789");
    EXPECT_FALSE(stream.isInputStreamAtEnd()) << "the end is known only when nothing was left";
}

TEST_F(FileInputStreamTest, ReceivesBytesOfAnyValue) {
    std::string content(70000, '\0');
    for (std::size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(i * 7 + i / 256);
    const std::string path = m_directory.write("ports", content);
    FileInputStream stream(path.c_str());
    EXPECT_EQ(receiveText(stream, 80000), content);
}

TEST_F(FileInputStreamTest, EndOfFileReturnsZeroAndSetsAFlagThatStartClears) {
    const std::string path = m_directory.write("ports", "4");
    FileInputStream stream(path.c_str());
    EXPECT_EQ(receiveText(stream, 10), "4");
    EXPECT_EQ(receiveText(stream, 10), "");
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_FALSE(stream.isInputStreamGood());
    EXPECT_FALSE(stream.isInputStreamInError());
    EXPECT_EQ(receiveText(stream, 10), "");
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_TRUE(stream.isInputStreamGood());
    EXPECT_EQ(receiveText(stream, 10), "4");
}

TEST_F(FileInputStreamTest, EmptyFileIsAtItsEndAfterTheFirstReceive) {
    const std::string path = m_directory.write("ports", "");
    FileInputStream stream(path.c_str());
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_EQ(receiveText(stream, 10), "");
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_EQ(stream.GetInputStreamSize(), 0);
}

TEST_F(FileInputStreamTest, FileThatGrowsCanBeReadFurther) {
    const std::string path = m_directory.write("ports", "4");
    FileInputStream stream(path.c_str());
    EXPECT_EQ(receiveText(stream, 10), "4");
    EXPECT_EQ(receiveText(stream, 10), "");
    const test::Descriptor writer = openFile("ports", O_WRONLY | O_APPEND);
    ASSERT_EQ(write(writer.number(), "2", 1), 1);
    EXPECT_EQ(receiveText(stream, 10), "2");
}

TEST_F(FileInputStreamTest, ReceivingZeroBytesSetsTheEndState) {
    const std::string path = m_directory.write("ports", "4");
    FileInputStream stream(path.c_str());
    EXPECT_EQ(receiveText(stream, 0), "");
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_EQ(receiveText(stream, 1), "4");
}

TEST_F(FileInputStreamTest, NullBufferIsRefusedWithoutAnError) {
    const std::string path = m_directory.write("ports", "4");
    FileInputStream stream(path.c_str());
    EXPECT_EQ(stream.ReceiveInputStream(nullptr, 10), -1);
    EXPECT_EQ(stream.ReceiveInputStream(nullptr, 0), -1);
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_FALSE(stream.isInputStreamInError());
    EXPECT_EQ(stream.errorNumber(), 0);
    EXPECT_EQ(receiveText(stream, 10), "4");
}

TEST_F(FileInputStreamTest, DirectoryOpensButCannotBeRead) {
    FileInputStream stream(m_directory.path().c_str());
    EXPECT_TRUE(stream.isInputStreamGood());
    EXPECT_EQ(receiveText(stream, 10), "-1");
    EXPECT_EQ(stream.errorNumber(), EISDIR);
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_FALSE(stream.StartInputStream());
    EXPECT_FALSE(stream.Position(0));
    EXPECT_EQ(stream.At(), none);
    EXPECT_EQ(stream.errorNumber(), EISDIR);
}

TEST_F(FileInputStreamTest, DescriptorForWritingCannotBeRead) {
    m_directory.write("ports", "4");
    const test::Descriptor file = openFile("ports", O_WRONLY);
    FileInputStream stream(file.number());
    EXPECT_EQ(stream.errorNumber(), 0);
    EXPECT_EQ(receiveText(stream, 10), "-1");
    EXPECT_EQ(stream.errorNumber(), EBADF);
}

TEST_F(FileInputStreamTest, NothingIsReadAfterAnError) {
    m_directory.write("ports", "4");
    const test::Descriptor writing = openFile("ports", O_WRONLY);
    FileInputStream stream(writing.number());
    EXPECT_EQ(receiveText(stream, 10), "-1");
    const test::Descriptor reading = openFile("ports", O_RDONLY);
    ASSERT_EQ(dup2(reading.number(), writing.number()), writing.number());
    EXPECT_EQ(receiveText(stream, 10), "-1");
    EXPECT_EQ(reading.offset(), 0);
}

TEST_F(FileInputStreamTest, OneReceiveIsOneReadOfWhatAPipeHolds) {
    const std::string path = makeFifo("fifo");
    const test::Descriptor writer = openFile("fifo", O_RDWR);
    FileInputStream stream(path.c_str());
    ASSERT_EQ(write(writer.number(), "123", 3), 3);
    EXPECT_EQ(receiveText(stream, 10), "123");
    ASSERT_EQ(write(writer.number(), "45", 2), 2);
    EXPECT_EQ(receiveText(stream, 1), "4");
    EXPECT_EQ(receiveText(stream, 10), "5");
}

TEST_F(FileInputStreamTest, PipeCannotBeSeeked) {
    const std::string path = makeFifo("fifo");
    const test::Descriptor writer = openFile("fifo", O_RDWR);
    FileInputStream stream(path.c_str());
    EXPECT_TRUE(stream.isInputStreamGood());
    stream.EndInputStream();
    EXPECT_FALSE(stream.Position(0));
    EXPECT_FALSE(stream.isInputStreamAtEnd()) << "cleared before the seek";
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_EQ(stream.errorNumber(), ESPIPE);
    ASSERT_EQ(write(writer.number(), "123", 3), 3);
    EXPECT_EQ(receiveText(stream, 10), "-1");
}

TEST_F(FileInputStreamTest, AskingForThePositionOfAPipeIsAnError) {
    const std::string path = makeFifo("fifo");
    const test::Descriptor writer = openFile("fifo", O_RDWR);
    FileInputStream stream(path.c_str());
    stream.EndInputStream();
    EXPECT_EQ(stream.At(), none);
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_EQ(stream.errorNumber(), ESPIPE);
}

TEST_F(FileInputStreamTest, EmptyNonBlockingPipeIsAnError) {
    const std::string path = makeFifo("fifo");
    const test::Descriptor writer = openFile("fifo", O_RDWR);
    FileInputStream stream(path.c_str());
    for (const int fd : test::descriptorsOf(path))
        ASSERT_EQ(fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK), 0);
    EXPECT_EQ(receiveText(stream, 10), "-1");
    EXPECT_EQ(stream.errorNumber(), EAGAIN);
    EXPECT_TRUE(stream.isInputStreamInError());
}

TEST_F(FileInputStreamTest, InterruptedReadIsNotRepeated) {
    const std::string path = makeFifo("fifo");
    const test::ChildResult child = test::runInChild([&] {
        const test::Descriptor writer = openFile("fifo", O_RDWR);
        FileInputStream stream(path.c_str());
        struct sigaction action;
        std::memset(&action, 0, sizeof action);
        action.sa_handler = [](int) {
        };
        sigaction(SIGALRM, &action, nullptr);
        const itimerval often = {{0, 20000}, {0, 20000}};
        setitimer(ITIMER_REAL, &often, nullptr);
        return receiveText(stream, 10) == "-1" && stream.isInputStreamInError() ? stream.errorNumber() : -1;
    });
    EXPECT_EQ(child.status, EINTR);
}

TEST_F(FileInputStreamTest, EndStateDoesNotPreventReceives) {
    const std::string path = m_directory.write("ports", "42");
    FileInputStream stream(path.c_str());
    stream.EndInputStream();
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_FALSE(stream.isInputStreamGood());
    EXPECT_EQ(receiveText(stream, 1), "4");
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receiveText(stream, 1), "4");
}

TEST_F(FileInputStreamTest, PositionSeeksAndClearsTheEnd) {
    const std::string path = m_directory.write("ports", "0123456789");
    FileInputStream stream(path.c_str());
    EXPECT_TRUE(stream.Position(4));
    EXPECT_EQ(receiveText(stream, 2), "45");
    stream.EndInputStream();
    EXPECT_TRUE(stream.Position(9));
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_EQ(receiveText(stream, 2), "9");
    EXPECT_TRUE(stream.Position(0));
    EXPECT_EQ(receiveText(stream, 2), "01");
}

TEST_F(FileInputStreamTest, PositionAtAndBeyondTheEndIsAllowed) {
    const std::string path = m_directory.write("ports", "0123456789");
    FileInputStream stream(path.c_str());
    for (const unsigned int offset : {10u, 11u, 2147483647u, 2147483648u, 4294967295u}) {
        EXPECT_TRUE(stream.Position(offset)) << offset;
        EXPECT_FALSE(stream.isInputStreamAtEnd());
        EXPECT_EQ(stream.At(), offset);
        EXPECT_EQ(receiveText(stream, 2), "");
        EXPECT_TRUE(stream.isInputStreamAtEnd());
    }
    EXPECT_FALSE(stream.isInputStreamInError());
}

TEST_F(FileInputStreamTest, AtReturnsTheCurrentOffsetAndClearsTheEnd) {
    const std::string path = m_directory.write("ports", "0123456789");
    FileInputStream stream(path.c_str());
    EXPECT_EQ(stream.At(), 0u);
    EXPECT_EQ(receiveText(stream, 3), "012");
    EXPECT_EQ(stream.At(), 3u);
    stream.EndInputStream();
    EXPECT_EQ(stream.At(), 3u);
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_EQ(receiveText(stream, 3), "345");
}

TEST_F(FileInputStreamTest, SizeFollowsTheFile) {
    const std::string path = m_directory.write("ports", "0123456789");
    FileInputStream stream(path.c_str());
    EXPECT_EQ(stream.GetInputStreamSize(), 10);
    EXPECT_TRUE(stream.Position(4));
    EXPECT_EQ(stream.GetInputStreamSize(), 10);
    ASSERT_EQ(truncate64(path.c_str(), 3), 0);
    EXPECT_EQ(stream.GetInputStreamSize(), 3);
}

TEST_F(FileInputStreamTest, SizeIsAvailableInTheErrorState) {
    const std::string path = m_directory.write("ports", "01234");
    FileInputStream stream(path.c_str());
    ASSERT_EQ(unlink(path.c_str()), 0);
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_EQ(stream.GetInputStreamSize(), 5);
}

TEST_F(FileInputStreamTest, SizeAndInodeOfAClosedDescriptorSetThePermanentErrorState) {
    m_directory.write("ports", "01234");
    for (const bool sizeFirst : {true, false}) {
        test::Descriptor file = openFile("ports", O_RDONLY);
        FileInputStream stream(file.number());
        EXPECT_EQ(stream.GetInputStreamSize(), 5);
        EXPECT_EQ(stream.errorNumber(), 0);
        file.close();
        if (sizeFirst)
            EXPECT_EQ(stream.GetInputStreamSize(), -1);
        else
            EXPECT_EQ(stream.GetInode(), none);
        EXPECT_EQ(stream.errorNumber(), EBADF);
        EXPECT_TRUE(stream.isInputStreamOpen());
        const test::Descriptor again = openFile("ports", O_RDONLY);
        EXPECT_FALSE(stream.Position(0)) << "an error stays";
        EXPECT_EQ(receiveText(stream, 5), "-1");
    }
}

TEST_F(FileInputStreamTest, SizeThatDoesNotFitAnIntIsUnknown) {
    const std::string path = m_directory.write("large", "");
    FileInputStream stream(path.c_str());
    ASSERT_EQ(truncate64(path.c_str(), INT_MAX), 0);
    EXPECT_EQ(stream.GetInputStreamSize(), INT_MAX);
    for (const off64_t size : {off64_t{1} << 31, off64_t{3} << 30, off64_t{1} << 32, (off64_t{1} << 32) + 5}) {
        ASSERT_EQ(truncate64(path.c_str(), size), 0);
        EXPECT_EQ(stream.GetInputStreamSize(), -1) << size;
    }
    EXPECT_TRUE(stream.isInputStreamGood());
}

TEST_F(FileInputStreamTest, FileOfMoreThanTwoGiBCanBeReadAtItsEnd) {
    const std::string path = m_directory.write("large", "first");
    const off64_t place = 3000000000;
    ASSERT_EQ(pwrite64(openFile("large", O_WRONLY | O_LARGEFILE).number(), "last", 4, place), 4);
    FileInputStream stream(path.c_str());
    ASSERT_TRUE(stream.isInputStreamGood());
    EXPECT_EQ(stream.GetInputStreamSize(), -1);
    EXPECT_EQ(receiveText(stream, 5), "first");
    EXPECT_TRUE(stream.Position(3000000000u));
    EXPECT_EQ(stream.At(), 3000000000u);
    EXPECT_EQ(receiveText(stream, 10), "last");
    EXPECT_EQ(stream.At(), 3000000004u);
    EXPECT_EQ(receiveText(stream, 10), "");
    EXPECT_EQ(FileInputStream::GetInode(path.c_str()), inodeOf(path));
    EXPECT_EQ(stream.Reopen(), 0);
    EXPECT_EQ(receiveText(stream, 5), "first");
}

TEST_F(FileInputStreamTest, InodeIsThatOfTheOpenFile) {
    const std::string path = m_directory.write("ports", "4");
    FileInputStream stream(path.c_str());
    const unsigned int inode = inodeOf(path);
    EXPECT_EQ(stream.GetInode(), inode);
    ASSERT_EQ(rename(path.c_str(), m_directory.path("moved").c_str()), 0);
    m_directory.write("ports", "another");
    EXPECT_EQ(stream.GetInode(), inode);
    EXPECT_EQ(FileInputStream::GetInode(path.c_str()), inodeOf(path));
    EXPECT_NE(FileInputStream::GetInode(path.c_str()), inode);
}

TEST_F(FileInputStreamTest, InodeIsAvailableInTheErrorState) {
    const std::string path = m_directory.write("ports", "4");
    FileInputStream stream(path.c_str());
    const unsigned int inode = inodeOf(path);
    ASSERT_EQ(unlink(path.c_str()), 0);
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_EQ(stream.GetInode(), inode);
}

TEST_F(FileInputStreamTest, InodeOfAMissingPathHasAllBitsSet) {
    EXPECT_EQ(FileInputStream::GetInode(m_directory.path("missing").c_str()), none);
    EXPECT_EQ(FileInputStream::GetInode(static_cast<const char*>(nullptr)), none);
    EXPECT_EQ(FileInputStream::GetInode(m_directory.path().c_str()), inodeOf(m_directory.path()));
}

TEST_F(FileInputStreamTest, AskingForTheErrorStateSetsItForARemovedFile) {
    const std::string path = m_directory.write("ports", "0123456789");
    FileInputStream stream(path.c_str());
    ASSERT_EQ(unlink(path.c_str()), 0);
    EXPECT_EQ(receiveText(stream, 3), "012") << "nobody asked yet";
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_FALSE(stream.isInputStreamGood());
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_EQ(stream.errorNumber(), ENOENT);
    EXPECT_EQ(receiveText(stream, 3), "-1");
    m_directory.write("ports", "new");
    EXPECT_TRUE(stream.isInputStreamInError());
}

TEST_F(FileInputStreamTest, RemovingTheFileAfterAnErrorKeepsTheErrno) {
    const std::string path = m_directory.path("folder");
    ASSERT_EQ(mkdir(path.c_str(), 0700), 0);
    FileInputStream stream(path.c_str());
    EXPECT_EQ(receiveText(stream, 10), "-1");
    ASSERT_EQ(rmdir(path.c_str()), 0);
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_EQ(stream.errorNumber(), EISDIR);
}

TEST_F(FileInputStreamTest, MovedFileIsAnError) {
    const std::string path = m_directory.write("ports", "0123456789");
    FileInputStream stream(path.c_str());
    ASSERT_EQ(rename(path.c_str(), m_directory.path("moved").c_str()), 0);
    EXPECT_FALSE(stream.isInputStreamGood());
    EXPECT_TRUE(stream.isInputStreamInError());
}

TEST_F(FileInputStreamTest, ReplacedFileCanBeReadFurther) {
    const std::string path = m_directory.write("ports", "old");
    FileInputStream stream(path.c_str());
    ASSERT_EQ(rename(m_directory.write("new", "new").c_str(), path.c_str()), 0);
    EXPECT_FALSE(stream.isInputStreamInError());
    EXPECT_EQ(receiveText(stream, 10), "old");
}

TEST_F(FileInputStreamTest, ReopenReadsTheFileThePathNamesNow) {
    const std::string path = m_directory.write("ports", "old");
    FileInputStream stream(path.c_str());
    EXPECT_EQ(receiveText(stream, 1), "o");
    const std::string moved = m_directory.path("moved");
    ASSERT_EQ(rename(path.c_str(), moved.c_str()), 0);
    m_directory.write("ports", "new");
    EXPECT_EQ(stream.Reopen(), 0);
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_EQ(test::descriptorsOf(moved).size(), 0u) << "the former file is closed";
    const std::vector<int> descriptors = test::descriptorsOf(path);
    ASSERT_EQ(descriptors.size(), 1u);
    EXPECT_TRUE(test::isClosedOnExec(descriptors[0]));
    EXPECT_EQ(fcntl(descriptors[0], F_GETFL) & O_ACCMODE, O_RDONLY);
    EXPECT_EQ(receiveText(stream, 10), "new");
    EXPECT_EQ(stream.GetInode(), inodeOf(path));
}

TEST_F(FileInputStreamTest, ReopenKeepsTheEndFlag) {
    const std::string path = m_directory.write("ports", "4");
    FileInputStream stream(path.c_str());
    stream.EndInputStream();
    EXPECT_EQ(stream.Reopen(), 0);
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_EQ(receiveText(stream, 10), "4");
}

TEST_F(FileInputStreamTest, ReopenedFileIsClosedByTheDestructor) {
    const std::string path = m_directory.write("ports", "4");
    {
        FileInputStream stream(path.c_str());
        EXPECT_EQ(stream.Reopen(), 0);
        EXPECT_EQ(stream.Reopen(), 0);
        EXPECT_EQ(test::descriptorsOf(path).size(), 1u);
    }
    EXPECT_EQ(test::descriptorsOf(path).size(), 0u);
}

TEST_F(FileInputStreamTest, ReopenDoesNotClearAnError) {
    const std::string path = m_directory.write("ports", "4");
    FileInputStream stream(path.c_str());
    ASSERT_EQ(unlink(path.c_str()), 0);
    EXPECT_TRUE(stream.isInputStreamInError());
    m_directory.write("ports", "4");
    EXPECT_EQ(stream.Reopen(), 0);
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_EQ(receiveText(stream, 10), "-1");
    EXPECT_EQ(stream.GetInputStreamSize(), 1);
}

TEST_F(FileInputStreamTest, ReopenOfAMissingFileClosesTheStream) {
    const std::string path = m_directory.write("ports", "4");
    FileInputStream stream(path.c_str());
    const std::string moved = m_directory.path("moved");
    ASSERT_EQ(rename(path.c_str(), moved.c_str()), 0);
    EXPECT_EQ(stream.Reopen(), -1);
    expectFailedOpen(stream, ENOENT);
    EXPECT_EQ(test::descriptorsOf(moved).size(), 0u);

    m_directory.write("ports", "4");
    EXPECT_EQ(stream.Reopen(), 0);
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_TRUE(stream.isInputStreamInError()) << "an error stays";
}

TEST_F(FileInputStreamTest, ReopenOpensAFileThatWasMissingBefore) {
    const std::string path = m_directory.path("ports");
    FileInputStream stream(path.c_str());
    EXPECT_EQ(stream.Reopen(), -1);
    m_directory.write("ports", "4");
    EXPECT_EQ(stream.Reopen(), 0);
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_EQ(stream.GetInputStreamSize(), 1);
}

TEST_F(FileInputStreamTest, ReopenOfAnAdoptedDescriptorFailsLikeAMissingPath) {
    m_directory.write("ports", "4");
    const test::Descriptor file(openFile("ports", O_RDONLY));
    FileInputStream stream(file.number());
    EXPECT_EQ(stream.Reopen(), -1);
    expectFailedOpen(stream, ENOENT);
}

TEST_F(FileInputStreamTest, ReopenClosesAnAdoptedDescriptorToo) {
    m_directory.write("ports", "4");
    const test::Descriptor file(openFile("ports", O_RDONLY));
    FileInputStream stream(file.number());
    EXPECT_EQ(stream.Reopen(), -1);
    EXPECT_FALSE(test::isOpenDescriptor(file.number()));
}

TEST_F(FileInputStreamTest, PathPointerIsStoredAndNotCopied) {
    m_directory.write("1", "first");
    m_directory.write("2", "second");
    std::string path = m_directory.path("1");
    FileInputStream stream(path.c_str());
    path.back() = '2';
    EXPECT_EQ(stream.Reopen(), 0);
    EXPECT_EQ(receiveText(stream, 10), "second");
}

TEST_F(FileInputStreamTest, SettingAModeChangesNothing) {
    const std::string path = m_directory.write("ports", "4");
    FileInputStream stream(path.c_str());
    stream.setInputMode(framework::InputStream::INPUT_DEFAULT);
    EXPECT_EQ(receiveText(stream, 10), "4");
}

} // namespace
