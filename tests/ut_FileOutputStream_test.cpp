#include "ut_FileOutputStream.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>
#include <type_traits>

#include <fcntl.h>
#include <pty.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "ChildProcess.h"
#include "Descriptor.h"
#include "LogCapture.h"
#include "OpenDescriptors.h"
#include "OrdinaryUser.h"
#include "SendText.h"
#include "TemporaryDirectory.h"
#include "Umask.h"
#include "VirtualSlot.h"
#include "ut_FileInputStream.h"

namespace {

using test::sendText;
using utility::FileOutputStream;

static_assert(std::is_base_of<framework::OutputStream, FileOutputStream>::value, "it is written as an output");
static_assert(!std::is_copy_constructible<FileOutputStream>::value, "a copy would close the descriptor twice");
static_assert(!std::is_copy_assignable<FileOutputStream>::value, "an assignment would close the descriptor twice");
static_assert(!std::is_convertible<int, FileOutputStream>::value, "a number is not a stream by itself");

// Expects that no test logs anything.
class FileOutputStreamTest : public testing::Test {
protected:
    ~FileOutputStreamTest() override {
        EXPECT_EQ(m_log.texts(), std::vector<std::string>());
    }

    test::Descriptor openFile(const std::string& name, int flags) const {
        return test::Descriptor(open(m_directory.path(name).c_str(), flags));
    }
    unsigned int permissionsOf(const std::string& path) const {
        struct stat64 status;
        return stat64(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    test::TemporaryDirectory m_directory;
    test::LogCapture m_log;
};

TEST_F(FileOutputStreamTest, UsageExample) {
    const std::string path = m_directory.path("ports");
    {
        utility::FileOutputStream file(path.c_str(), false, 0600);
        EXPECT_FALSE(!file.SendOutputStream("4\n", 2) || file.isOutputStreamInError());
        EXPECT_EQ(file.errorNumber(), 0);
    }
    EXPECT_EQ(m_directory.read("ports"), "4\n");
}

TEST_F(FileOutputStreamTest, VirtualOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&FileOutputStream::StartOutputStream), 2);
    EXPECT_EQ(test::virtualSlot(&FileOutputStream::EndOutputStream), 3);
    EXPECT_EQ(test::virtualSlot(&FileOutputStream::SendOutputStream), 4);
    EXPECT_EQ(test::virtualSlot(&FileOutputStream::FlushOutputStream), 5);
    EXPECT_EQ(test::virtualSlot(&FileOutputStream::TransferFromInputStream), 6);
    EXPECT_EQ(test::virtualSlot(&FileOutputStream::isOutputStreamOpen), 7);
    EXPECT_EQ(test::virtualSlot(&FileOutputStream::isOutputStreamInError), 8);
    EXPECT_EQ(test::virtualSlot(&FileOutputStream::isOutputStreamAtEnd), 9);
    EXPECT_EQ(test::virtualSlot(&FileOutputStream::isOutputStreamGood), 10);
}

TEST_F(FileOutputStreamTest, NewFileIsOpenAndGood) {
    const std::string path = m_directory.path("new");
    FileOutputStream stream(path.c_str(), false, 0600);
    EXPECT_TRUE(stream.isOutputStreamOpen());
    EXPECT_FALSE(stream.isOutputStreamInError());
    EXPECT_FALSE(stream.isOutputStreamAtEnd());
    EXPECT_TRUE(stream.isOutputStreamGood());
    EXPECT_EQ(stream.errorNumber(), 0);
    EXPECT_EQ(m_directory.read("new"), "");
}

TEST_F(FileOutputStreamTest, NewFileHasTheGivenPermissions) {
    const test::Umask mask(0);
    for (const bool append : {false, true}) {
        for (const unsigned int mode : {0600u, 0640u, 0666u, 0400u}) {
            const std::string path = m_directory.path(std::to_string(mode) + (append ? "a" : ""));
            const FileOutputStream stream(path.c_str(), append, mode);
            EXPECT_EQ(permissionsOf(path), mode);
        }
    }
}

TEST_F(FileOutputStreamTest, ExistingFileKeepsItsPermissions) {
    const std::string path = m_directory.write("ports", "4");
    ASSERT_EQ(chmod(path.c_str(), 0644), 0);
    const FileOutputStream stream(path.c_str(), false, 0600);
    EXPECT_EQ(permissionsOf(path), 0644u);
}

TEST_F(FileOutputStreamTest, TruncatesAnExistingFile) {
    const std::string path = m_directory.write("ports", "a long former content");
    FileOutputStream stream(path.c_str(), false, 0600);
    EXPECT_EQ(m_directory.read("ports"), "");
    EXPECT_TRUE(sendText(stream, "new"));
    EXPECT_EQ(m_directory.read("ports"), "new");
}

TEST_F(FileOutputStreamTest, AppendsToAnExistingFile) {
    const std::string path = m_directory.write("ports", "1\n");
    FileOutputStream stream(path.c_str(), true, 0600);
    EXPECT_EQ(m_directory.read("ports"), "1\n");
    EXPECT_TRUE(sendText(stream, "2\n"));
    EXPECT_TRUE(sendText(stream, "3\n"));
    EXPECT_EQ(m_directory.read("ports"), "1\n2\n3\n");
}

TEST_F(FileOutputStreamTest, AppendsEvenAfterASeekToTheStart) {
    const std::string path = m_directory.write("ports", "1\n");
    FileOutputStream stream(path.c_str(), true, 0600);
    EXPECT_TRUE(stream.StartOutputStream());
    EXPECT_TRUE(sendText(stream, "2\n"));
    EXPECT_EQ(m_directory.read("ports"), "1\n2\n");
}

TEST_F(FileOutputStreamTest, OpensForWritingOnly) {
    for (const bool append : {false, true}) {
        const std::string path = m_directory.path("ports");
        const FileOutputStream stream(path.c_str(), append, 0600);
        const std::vector<int> descriptors = test::descriptorsOf(path);
        ASSERT_EQ(descriptors.size(), 1u);
        const int flags = fcntl(descriptors[0], F_GETFL);
        EXPECT_EQ(flags & O_ACCMODE, O_WRONLY);
        EXPECT_EQ((flags & O_APPEND) != 0, append);
    }
}

TEST_F(FileOutputStreamTest, OpensCloseOnExec) {
    for (const bool append : {false, true}) {
        const std::string path = m_directory.path("ports");
        const FileOutputStream stream(path.c_str(), append, 0600);
        const std::vector<int> descriptors = test::descriptorsOf(path);
        ASSERT_EQ(descriptors.size(), 1u);
        EXPECT_TRUE(test::isClosedOnExec(descriptors[0]));
    }
}

TEST_F(FileOutputStreamTest, NeverUsesTheDescriptorOfAStandardStream) {
    for (const bool append : {false, true}) {
        const std::string path = m_directory.write(append ? "appended" : "made", append ? "1 " : "former content");
        const test::ChildResult child = test::runInChild([&] {
            test::closeStandardStreams();
            {
                FileOutputStream stream(path.c_str(), append, 0600);
                const std::vector<int> descriptors = test::descriptorsOf(path);
                if (!test::areStandardStreamsClosed() || !stream.isOutputStreamGood() || descriptors.size() != 1)
                    return 1;
                if (!test::isClosedOnExec(descriptors[0]))
                    return 2;
                // If the file's descriptor were 2, this message would be written to the file.
                framework::Logger::setSink(nullptr, nullptr);
                framework::Logger::StaticLog(framework::Logger::LOG_ERROR, "a message");
                if (!sendText(stream, "4"))
                    return 3;
            }
            return test::descriptorsOf(path).empty() ? 0 : 4;
        });
        EXPECT_EQ(child.status, 0);
        EXPECT_EQ(m_directory.read(append ? "appended" : "made"), append ? "1 4" : "4");
    }
}

TEST_F(FileOutputStreamTest, AThreadThatWritesToAClosedStandardStreamNeverReachesTheFile) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP()
        << "the thread sanitizer reports that a thread uses a descriptor which another one closes, as it must here";
#endif
    const std::string path = m_directory.path("ports");
    const test::ChildResult child = test::runInChild([&] {
        close(STDERR_FILENO);
        std::atomic<bool> isDone(false);
        int unexpectedErrors = 0;
        std::thread writer([&] {
            while (!isDone) {
                if (write(STDERR_FILENO, "x", 1) != -1 || errno != EBADF)
                    ++unexpectedErrors;
            }
        });
        off_t written = 0;
        for (int i = 0; i < 5000; ++i) {
            const FileOutputStream stream(path.c_str(), false, 0600);
            struct stat status = {};
            if (stat(path.c_str(), &status) == 0)
                written += status.st_size;
        }
        isDone = true;
        writer.join();
        if (fcntl(STDERR_FILENO, F_GETFD) != -1)
            return 3;
        return written != 0 ? 1 : unexpectedErrors != 0 ? 2 : 0;
    });
    EXPECT_EQ(child.status, 0);
}

TEST_F(FileOutputStreamTest, ClosesTheFileItOpened) {
    const std::string path = m_directory.path("ports");
    {
        const FileOutputStream stream(path.c_str(), false, 0600);
        EXPECT_EQ(test::descriptorsOf(path).size(), 1u);
    }
    EXPECT_EQ(test::descriptorsOf(path).size(), 0u);
}

TEST_F(FileOutputStreamTest, ClosesTheFileItOpenedEvenInError) {
    const std::string path = m_directory.path("fifo");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const test::Descriptor reader = openFile("fifo", O_RDONLY | O_NONBLOCK);
    {
        FileOutputStream stream(path.c_str(), false, 0600);
        EXPECT_FALSE(stream.StartOutputStream());
        EXPECT_TRUE(stream.isOutputStreamInError());
        EXPECT_EQ(test::descriptorsOf(path).size(), 2u);
    }
    EXPECT_EQ(test::descriptorsOf(path).size(), 1u);
}

void expectFailedOpen(FileOutputStream& stream, int error) {
    EXPECT_FALSE(stream.isOutputStreamOpen());
    EXPECT_TRUE(stream.isOutputStreamInError());
    EXPECT_FALSE(stream.isOutputStreamAtEnd());
    EXPECT_FALSE(stream.isOutputStreamGood());
    EXPECT_EQ(stream.errorNumber(), error);
    EXPECT_TRUE(sendText(stream, "dropped"));
    EXPECT_FALSE(stream.StartOutputStream());
    EXPECT_EQ(stream.errorNumber(), error);
}

TEST_F(FileOutputStreamTest, PathInAMissingDirectoryIsAnErrorAndSendsAreDiscarded) {
    const std::string path = m_directory.path("missing/ports");
    FileOutputStream stream(path.c_str(), false, 0600);
    expectFailedOpen(stream, ENOENT);
    EXPECT_FALSE(m_directory.exists("missing"));
}

TEST_F(FileOutputStreamTest, AppendingInAMissingDirectoryIsAnError) {
    const std::string path = m_directory.path("missing/ports");
    FileOutputStream stream(path.c_str(), true, 0600);
    expectFailedOpen(stream, ENOENT);
}

TEST_F(FileOutputStreamTest, DirectoryCannotBeWritten) {
    FileOutputStream stream(m_directory.path().c_str(), false, 0600);
    expectFailedOpen(stream, EISDIR);
}

TEST_F(FileOutputStreamTest, PathThroughAFileIsAnError) {
    const std::string path = m_directory.write("file", "") + "/ports";
    FileOutputStream stream(path.c_str(), false, 0600);
    expectFailedOpen(stream, ENOTDIR);
}

TEST_F(FileOutputStreamTest, PathThatIsTooLongIsAnError) {
    const std::string path = m_directory.path(std::string(300, 'x'));
    FileOutputStream stream(path.c_str(), false, 0600);
    expectFailedOpen(stream, ENAMETOOLONG);
}

TEST_F(FileOutputStreamTest, EmptyAndNullPathsAreMissingFiles) {
    FileOutputStream empty("", false, 0600);
    expectFailedOpen(empty, ENOENT);
    FileOutputStream null(nullptr, false, 0600);
    expectFailedOpen(null, ENOENT);
}

TEST_F(FileOutputStreamTest, FileWithoutWritePermissionIsAnError) {
    const std::string path = m_directory.write("ports", "kept");
    ASSERT_EQ(chmod(path.c_str(), 0444), 0);
    ASSERT_EQ(chmod(m_directory.path().c_str(), 0755), 0);
    const test::ChildResult child = test::runInChild([&] {
        test::becomeOrdinaryUser();
        FileOutputStream stream(path.c_str(), false, 0600);
        const bool dropped = sendText(stream, "dropped");
        return dropped && !stream.isOutputStreamOpen() && stream.isOutputStreamInError() ? stream.errorNumber() : -1;
    });
    EXPECT_EQ(child.status, EACCES) << child.err;
    EXPECT_EQ(m_directory.read("ports"), "kept");
}

TEST_F(FileOutputStreamTest, AdoptedDescriptorIsSeekedToItsStart) {
    m_directory.write("ports", "0123456789");
    const test::Descriptor file = openFile("ports", O_WRONLY);
    ASSERT_EQ(lseek(file.number(), 7, SEEK_SET), 7);
    FileOutputStream stream(file.number());
    EXPECT_TRUE(stream.isOutputStreamOpen());
    EXPECT_FALSE(stream.isOutputStreamInError());
    EXPECT_FALSE(stream.isOutputStreamAtEnd());
    EXPECT_EQ(stream.errorNumber(), 0);
    EXPECT_EQ(file.offset(), 0);
    EXPECT_TRUE(sendText(stream, "abc"));
    EXPECT_EQ(m_directory.read("ports"), "abc3456789");
}

TEST_F(FileOutputStreamTest, AdoptedDescriptorOverwritesUnlessItAppends) {
    m_directory.write("over", "0123456789");
    m_directory.write("append", "0123456789");
    const test::Descriptor over = openFile("over", O_WRONLY);
    const test::Descriptor append = openFile("append", O_WRONLY | O_APPEND);
    ASSERT_EQ(lseek(over.number(), 0, SEEK_END), 10);
    FileOutputStream first(over.number());
    FileOutputStream second(append.number());
    EXPECT_TRUE(sendText(first, "abc"));
    EXPECT_TRUE(sendText(second, "abc"));
    EXPECT_EQ(m_directory.read("over"), "abc3456789");
    EXPECT_EQ(m_directory.read("append"), "0123456789abc");
}

TEST_F(FileOutputStreamTest, AdoptedDescriptorStaysOpenAndKeepsItsFlags) {
    m_directory.write("ports", "");
    const test::Descriptor file = openFile("ports", O_WRONLY);
    {
        FileOutputStream stream(file.number());
        EXPECT_FALSE(test::isClosedOnExec(file.number()));
        EXPECT_TRUE(sendText(stream, "4"));
    }
    EXPECT_TRUE(test::isOpenDescriptor(file.number()));
    EXPECT_EQ(write(file.number(), "2", 1), 1);
    EXPECT_EQ(m_directory.read("ports"), "42");
}

TEST_F(FileOutputStreamTest, AdoptedPipeIsInErrorAndDiscardsAllOutput) {
    const test::Pipe pipe;
    FileOutputStream stream(pipe.writer.number());
    EXPECT_TRUE(stream.isOutputStreamOpen());
    EXPECT_TRUE(stream.isOutputStreamInError());
    EXPECT_FALSE(stream.isOutputStreamGood());
    EXPECT_EQ(stream.errorNumber(), ESPIPE);
    EXPECT_TRUE(sendText(stream, "dropped"));
    EXPECT_FALSE(stream.StartOutputStream());
    EXPECT_EQ(pipe.reader.readAvailable(), "");
}

TEST_F(FileOutputStreamTest, StandardOutputOnAPipeIsInErrorAndDiscardsAllOutput) {
    const test::Pipe pipe;
    const test::ChildResult child = test::runInChild([&] {
        dup2(pipe.writer.number(), 1);
        FileOutputStream stream(1);
        return sendText(stream, "dropped") && stream.isOutputStreamInError() ? stream.errorNumber() : -1;
    });
    EXPECT_EQ(child.status, ESPIPE);
    EXPECT_EQ(pipe.reader.readAvailable(), "");
}

TEST_F(FileOutputStreamTest, AdoptedTerminalIsInErrorAndDiscardsAllOutput) {
    int master = -1;
    int slave = -1;
    ASSERT_EQ(openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
    const test::Descriptor screen(master);
    const test::Descriptor terminal(slave);
    FileOutputStream stream(terminal.number());
    EXPECT_TRUE(stream.isOutputStreamOpen());
    EXPECT_TRUE(stream.isOutputStreamInError());
    EXPECT_EQ(stream.errorNumber(), ESPIPE);
    EXPECT_TRUE(sendText(stream, "dropped"));
    EXPECT_EQ(screen.readAvailable(), "");
}

TEST_F(FileOutputStreamTest, InvalidDescriptorIsInError) {
    FileOutputStream stream(-1);
    EXPECT_TRUE(stream.isOutputStreamOpen());
    EXPECT_TRUE(stream.isOutputStreamInError());
    EXPECT_EQ(stream.errorNumber(), EBADF);
    EXPECT_TRUE(sendText(stream, "dropped"));
}

TEST_F(FileOutputStreamTest, StartSeeksToTheFirstByte) {
    const std::string path = m_directory.path("ports");
    FileOutputStream stream(path.c_str(), false, 0600);
    EXPECT_TRUE(sendText(stream, "12345"));
    EXPECT_TRUE(stream.StartOutputStream());
    EXPECT_TRUE(sendText(stream, "ab"));
    EXPECT_EQ(m_directory.read("ports"), "ab345");
}

TEST_F(FileOutputStreamTest, EndStateIsClearedByStartAndDoesNotPreventSends) {
    const std::string path = m_directory.path("ports");
    FileOutputStream stream(path.c_str(), false, 0600);
    stream.EndOutputStream();
    EXPECT_TRUE(stream.isOutputStreamAtEnd());
    EXPECT_TRUE(stream.isOutputStreamOpen());
    EXPECT_FALSE(stream.isOutputStreamInError());
    EXPECT_FALSE(stream.isOutputStreamGood());
    EXPECT_TRUE(sendText(stream, "1"));
    EXPECT_TRUE(stream.isOutputStreamAtEnd());
    EXPECT_EQ(m_directory.read("ports"), "1");
    EXPECT_TRUE(stream.StartOutputStream());
    EXPECT_FALSE(stream.isOutputStreamAtEnd());
    EXPECT_TRUE(stream.isOutputStreamGood());
}

TEST_F(FileOutputStreamTest, EndStateOfAStreamThatIsNotOpenIsKeptByStart) {
    const std::string path = m_directory.path("missing/ports");
    FileOutputStream stream(path.c_str(), false, 0600);
    stream.EndOutputStream();
    EXPECT_TRUE(stream.isOutputStreamAtEnd());
    EXPECT_FALSE(stream.StartOutputStream());
    EXPECT_TRUE(stream.isOutputStreamAtEnd());
}

TEST_F(FileOutputStreamTest, FailedSeekOfStartSetsThePermanentErrorState) {
    const std::string path = m_directory.path("fifo");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const test::Descriptor reader = openFile("fifo", O_RDONLY | O_NONBLOCK);
    FileOutputStream stream(path.c_str(), false, 0600);
    EXPECT_TRUE(stream.isOutputStreamGood());
    EXPECT_TRUE(sendText(stream, "before"));
    stream.EndOutputStream();
    EXPECT_FALSE(stream.StartOutputStream());
    EXPECT_FALSE(stream.isOutputStreamAtEnd()) << "cleared before the seek";
    EXPECT_TRUE(stream.isOutputStreamInError());
    EXPECT_EQ(stream.errorNumber(), ESPIPE);
    EXPECT_TRUE(sendText(stream, "after"));
    EXPECT_FALSE(stream.StartOutputStream());
    EXPECT_EQ(reader.readAvailable(), "before");
}

TEST_F(FileOutputStreamTest, SendsAllBytesOfAnyValue) {
    std::string data(70000, '\0');
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<char>(i * 7 + i / 256);
    const std::string path = m_directory.path("ports");
    FileOutputStream stream(path.c_str(), false, 0600);
    EXPECT_TRUE(sendText(stream, data));
    EXPECT_EQ(m_directory.read("ports"), data);
}

TEST_F(FileOutputStreamTest, SendsTheGivenNumberOfBytesWithoutATerminator) {
    const std::string path = m_directory.path("ports");
    FileOutputStream stream(path.c_str(), false, 0600);
    EXPECT_TRUE(stream.SendOutputStream("12345", 3));
    EXPECT_TRUE(stream.SendOutputStream("12345", 0));
    EXPECT_FALSE(stream.isOutputStreamInError());
    EXPECT_EQ(m_directory.read("ports"), "123");
}

TEST_F(FileOutputStreamTest, SendOfNullReturnsTrueAndWritesNothing) {
    const std::string path = m_directory.path("ports");
    FileOutputStream stream(path.c_str(), false, 0600);
    EXPECT_TRUE(stream.SendOutputStream(nullptr, 5));
    EXPECT_TRUE(stream.SendOutputStream(nullptr, 0));
    EXPECT_FALSE(stream.isOutputStreamInError());
    EXPECT_EQ(stream.errorNumber(), 0);
    EXPECT_EQ(m_directory.read("ports"), "");
}

TEST_F(FileOutputStreamTest, SendToAFullDiskReturnsTrueAndSetsThePermanentErrorState) {
    FileOutputStream stream("/dev/full", false, 0600);
    ASSERT_TRUE(stream.isOutputStreamGood());
    EXPECT_TRUE(sendText(stream, "lost"));
    EXPECT_TRUE(stream.isOutputStreamOpen());
    EXPECT_TRUE(stream.isOutputStreamInError());
    EXPECT_FALSE(stream.isOutputStreamGood());
    EXPECT_EQ(stream.errorNumber(), ENOSPC);
    EXPECT_TRUE(sendText(stream, "dropped"));
    EXPECT_FALSE(stream.StartOutputStream());
    EXPECT_TRUE(stream.isOutputStreamInError());
    EXPECT_EQ(stream.errorNumber(), ENOSPC);
}

TEST_F(FileOutputStreamTest, SendToAReadOnlyDescriptorReturnsTrueAndSetsTheErrorState) {
    m_directory.write("ports", "kept");
    const test::Descriptor file = openFile("ports", O_RDONLY);
    FileOutputStream stream(file.number());
    EXPECT_FALSE(stream.isOutputStreamInError());
    EXPECT_TRUE(sendText(stream, "lost"));
    EXPECT_TRUE(stream.isOutputStreamInError());
    EXPECT_EQ(stream.errorNumber(), EBADF);
    EXPECT_EQ(m_directory.read("ports"), "kept");
}

TEST_F(FileOutputStreamTest, NothingIsWrittenAfterAnError) {
    m_directory.write("ports", "");
    test::Descriptor reading = openFile("ports", O_RDONLY);
    FileOutputStream stream(reading.number());
    EXPECT_TRUE(sendText(stream, "lost"));
    const test::Descriptor writing = openFile("ports", O_WRONLY);
    ASSERT_EQ(dup2(writing.number(), reading.number()), reading.number());
    EXPECT_TRUE(sendText(stream, "dropped"));
    EXPECT_EQ(m_directory.read("ports"), "");
}

TEST_F(FileOutputStreamTest, OnlyAShortWriteReturnsFalseAndItIsNotAnError) {
    const std::string path = m_directory.path("fifo");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const test::Descriptor reader = openFile("fifo", O_RDONLY | O_NONBLOCK);
    FileOutputStream stream(path.c_str(), false, 0600);
    for (const int fd : test::descriptorsOf(path))
        ASSERT_EQ(fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK), 0);

    EXPECT_FALSE(sendText(stream, std::string(4000000, 'x')));
    EXPECT_FALSE(stream.isOutputStreamInError());
    EXPECT_EQ(stream.errorNumber(), 0);

    EXPECT_TRUE(sendText(stream, "lost"));
    EXPECT_TRUE(stream.isOutputStreamInError());
    EXPECT_EQ(stream.errorNumber(), EAGAIN);
}

TEST_F(FileOutputStreamTest, MoreThanTheLargestIntIsAShortWriteOnEveryPlatform) {
    const std::size_t size = std::size_t{1} << 31;
    void* const nothing = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (nothing == MAP_FAILED)
        GTEST_SKIP() << "no 2 GiB are free in the address space";
    FileOutputStream stream("/dev/null", false, 0600);
    EXPECT_FALSE(stream.SendOutputStream(static_cast<const char*>(nothing), static_cast<unsigned int>(size)));
    EXPECT_FALSE(stream.isOutputStreamInError());
    munmap(nothing, size);
}

TEST_F(FileOutputStreamTest, WriteAcrossTheFileSizeLimitReturnsFalseAndTheNextOneIsAnError) {
    const std::string path = m_directory.path("ports");
    const test::ChildResult child = test::runInChild([&] {
        FileOutputStream stream(path.c_str(), false, 0600);
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {50, 50};
        setrlimit(RLIMIT_FSIZE, &limit);
        if (sendText(stream, std::string(100, 'x')) || stream.isOutputStreamInError() || stream.errorNumber() != 0)
            return 1;
        return sendText(stream, "y") && stream.isOutputStreamInError() ? stream.errorNumber() : 2;
    });
    EXPECT_EQ(child.status, EFBIG);
    EXPECT_EQ(m_directory.read("ports"), std::string(50, 'x'));
}

TEST_F(FileOutputStreamTest, SendToAPipeWithoutReaderReturnsTrueAndSetsTheErrorState) {
    const std::string path = m_directory.path("fifo");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const test::ChildResult child = test::runInChild([&] {
        std::signal(SIGPIPE, SIG_IGN);
        test::Descriptor reader = openFile("fifo", O_RDONLY | O_NONBLOCK);
        FileOutputStream stream(path.c_str(), false, 0600);
        reader.close();
        return sendText(stream, "lost") && stream.isOutputStreamInError() ? stream.errorNumber() : -1;
    });
    EXPECT_EQ(child.status, EPIPE);
}

TEST_F(FileOutputStreamTest, WritesContinueToARemovedFile) {
    const std::string path = m_directory.path("ports");
    FileOutputStream stream(path.c_str(), false, 0600);
    const test::Descriptor reader = openFile("ports", O_RDONLY);
    ASSERT_EQ(unlink(path.c_str()), 0);
    EXPECT_TRUE(sendText(stream, "4"));
    EXPECT_FALSE(stream.isOutputStreamInError());
    EXPECT_EQ(reader.readAvailable(), "4");
}

TEST_F(FileOutputStreamTest, WritesContinueToAMovedFile) {
    const std::string path = m_directory.path("ports");
    FileOutputStream stream(path.c_str(), false, 0600);
    ASSERT_EQ(rename(path.c_str(), m_directory.path("moved").c_str()), 0);
    m_directory.write("ports", "new");
    EXPECT_TRUE(sendText(stream, "4"));
    EXPECT_FALSE(stream.isOutputStreamInError());
    EXPECT_EQ(m_directory.read("moved"), "4");
    EXPECT_EQ(m_directory.read("ports"), "new");
}

TEST_F(FileOutputStreamTest, FlushDoesNothing) {
    const std::string path = m_directory.path("ports");
    FileOutputStream stream(path.c_str(), false, 0600);
    EXPECT_TRUE(sendText(stream, "4"));
    stream.FlushOutputStream();
    EXPECT_TRUE(stream.isOutputStreamGood());
    EXPECT_EQ(m_directory.read("ports"), "4");
}

TEST_F(FileOutputStreamTest, ReceivesAWholeTransfer) {
    const std::string content(40000, 'p');
    const std::string source = m_directory.write("source", content);
    const std::string target = m_directory.path("target");
    utility::FileInputStream in(source.c_str());
    FileOutputStream out(target.c_str(), false, 0600);
    EXPECT_TRUE(out.TransferFromInputStream(in));
    EXPECT_EQ(m_directory.read("target"), content);
}

TEST_F(FileOutputStreamTest, AppendsToAFileOfMoreThanTwoGiB) {
    const std::string path = m_directory.write("large", "");
    const off64_t size = off64_t{3} << 30;
    ASSERT_EQ(truncate64(path.c_str(), size), 0);
    FileOutputStream stream(path.c_str(), true, 0600);
    ASSERT_TRUE(stream.isOutputStreamGood());
    EXPECT_TRUE(sendText(stream, "4"));
    struct stat64 status;
    ASSERT_EQ(stat64(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_size, size + 1);
}

} // namespace
