#include <cstring>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "TemporaryDirectory.h"
#include "Trial.h"
#include "fw_Console.h"
#include "ut_BufferStream.h"
#include "ut_CircularStream.h"
#include "ut_DescriptorOutputStream.h"
#include "ut_DynamicStream.h"
#include "ut_FileInputStream.h"
#include "ut_FileOutputStream.h"
#include "ut_IntArray.h"
#include "ut_NullStream.h"
#include "ut_PagingVirtualPutStream.h"
#include "ut_ShortArray.h"
#include "ut_StringArray.h"
#include "ut_TerminalConsole.h"
#include "ut_UIntArray.h"
#include "ut_UShortArray.h"
#include "ut_VirtualGetStream.h"
#include "ut_VirtualPutStream.h"

// Buffers and streams. One without storage reports it; what allocates nothing works without any memory.

namespace faults {

namespace {

using utility::BufferStream;
using utility::NullStream;

// A file with one line of text, and a folder for others, until the program ends.
struct Files {
    test::TemporaryDirectory folder;
    std::string text = folder.path() + "/text";
    std::string written = folder.path() + "/written";

    Files() {
        const int fd = open(text.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (write(fd, "one\ntwo\n", 8) != 8)
            std::abort();
        close(fd);
    }
};

const Files& files() {
    static const Files made;
    return made;
}

// Calls what only derived classes may call.
struct DerivedStream : BufferStream {
    using BufferStream::BufferStream;

    int ask() {
        terminate();
        return boundedRoom(16) + boundedReadable(16) + static_cast<int>(isStored(0));
    }
};

std::vector<Row> bufferRows() {
    return {
        {"Buffer: operations for derived classes", allocatesNothing,
         [](Trial& trial) {
             DerivedStream stream(16);
             int answer = 0;
             trial.run([&] { return answer = stream.ask(); });
             FAULTS_EXPECT(answer == 17);
         }},
        {"BufferStream: constructor", "1238 bad_alloc",
         [](Trial& trial) {
             construct<BufferStream>(trial, 16);
         }},
        {"BufferStream: new", "1238 bad_alloc null",
         [](Trial& trial) {
             BufferStream* stream = nullptr;
             trial.run([&] { return stream = new BufferStream(16); });
             delete stream;
         }},
        {"BufferStream: constructor from a file", "1238 bad_alloc",
         [](Trial& trial) {
             construct<BufferStream>(trial, files().text.c_str());
         }},
        {"GetStream: constructor from a file", "1238 bad_alloc",
         [](Trial& trial) {
             construct<utility::GetStream>(trial, files().text.c_str());
         }},
        {"GetStream: fromFile", "1238 bad_alloc",
         [](Trial& trial) {
             utility::GetStream stream;
             trial.run([&] { return stream.fromFile(files().text.c_str()); });
             char* line = stream.GetLine();
             FAULTS_EXPECT(trial.failed() ? line == nullptr : std::strcmp(line, "one") == 0);
             stream.Rewind();
         }},
        {"GetStream: fromFile with the no-throw flag", "same",
         [](Trial& trial) {
             utility::GetStream stream;
             stream.setNoThrow(true);
             trial.run([&] { return stream.fromFile(files().text.c_str()); });
             FAULTS_EXPECT(stream.ReadAvailable() == 8 || stream.ReadAvailable() == 0);
         }},
        {"PutStream: ToFile", allocatesNothing,
         [](Trial& trial) {
             BufferStream stream(16);
             stream.PutC('x');
             trial.run([&] { return stream.ToFile(files().written.c_str()); });
             FAULTS_EXPECT(stream.ReadAvailable() == 1);
         }},
        {"PutStream: PutC without space", "same bad_alloc",
         [](Trial& trial) {
             BufferStream stream(1);
             stream.PutC('x');
             trial.run([&] { stream.PutC('y'); });
             stream.Rewind();
             stream.PutC('z');
             FAULTS_EXPECT(stream.ReadAvailable() == 1);
         }},
        {"PutStream: PutS without space", "same bad_alloc",
         [](Trial& trial) {
             BufferStream stream(4);
             trial.run([&] { stream.PutS("too long"); });
             stream.Rewind();
             stream.PutS("abc");
             FAULTS_EXPECT(stream.ReadAvailable() == 3);
         }},
        {"PutStream: PutF without space", "same bad_alloc",
         [](Trial& trial) {
             BufferStream stream(4);
             trial.run([&] { stream.PutF("%d", 123456); });
             stream.Rewind();
         }},
        {"PutStream: PutB without space", "same bad_alloc",
         [](Trial& trial) {
             BufferStream stream(4);
             trial.run([&] { stream.PutB("too long", 8); });
             stream.Rewind();
         }},
        {"Buffer: ReadAdvance and CopyFrom without space", "same bad_alloc",
         [](Trial& trial) {
             BufferStream stream(2);
             BufferStream source(4);
             source.PutS("abc");
             trial.run([&] { stream.CopyFrom(&source); });
             stream.Rewind();
         }},
        {"GetStream: operator[] out of range", "same bad_alloc",
         [](Trial& trial) {
             BufferStream stream(2);
             trial.run([&] { return stream[1]; });
         }},
        {"GetStream: array readers", "bad_alloc same",
         [](Trial& trial) {
             BufferStream stream(64);
             utility::UIntArray written(2);
             written.Append(1);
             written.Append(2);
             stream.PutParmUint32Array(written);
             utility::UIntArray read(1);
             trial.run([&] { return stream.GetParmUint32Array(read); });
             // Without memory for the whole array it grows step by step.
             FAULTS_EXPECT(read.length() >= 1 && read[0] == 1);
             FAULTS_EXPECT(trial.failed() || read.length() == 2);
             stream.Rewind();
         }},
        {"GetStream: GetParmStringArray", "1230 bad_alloc same",
         [](Trial& trial) {
             BufferStream stream(64);
             utility::StringArray written(2);
             written.Append("one");
             written.Append("two");
             stream.PutParmStringArray(written);
             utility::StringArray read(1);
             trial.run([&] { return stream.GetParmStringArray(read); });
             FAULTS_EXPECT(read.length() == (trial.failed() ? 1 : 2));
         }},
        {"Buffer and streams: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             utility::UShortArray unsignedShorts(2);
             utility::ShortArray shorts(2);
             utility::UIntArray words(2);
             utility::IntArray integers(2);
             utility::StringArray texts(2);
             unsignedShorts.Append(1);
             shorts.Append(2);
             words.Append(3);
             integers.Append(4);
             texts.Append(nullptr);
             utility::UShortArray unsignedShortsRead(9);
             utility::ShortArray shortsRead(9);
             utility::UIntArray wordsRead(9);
             utility::IntArray integersRead(9);
             BufferStream stream(256);
             char storage[64];
             char text[] = "one\ntwo\nthree";
             trial.run([&] {
                 stream.PutParmUint16(1);
                 stream.PutParmSint16(-1);
                 stream.PutParmUint32(2);
                 stream.PutParmSint32(-2);
                 stream.PutParmString("text");
                 stream.PutParmBuf(text, 3);
                 stream.PutParmUint16Array(unsignedShorts);
                 stream.PutParmSint16Array(shorts);
                 stream.PutParmUint32Array(words);
                 stream.PutParmSint32Array(integers);
                 stream.PutParmStringArray(texts);
                 unsigned short u16 = 0;
                 short s16 = 0;
                 unsigned int u32 = 0;
                 int s32 = 0;
                 bool whole = stream.GetParmUint16(&u16) && stream.GetParmSint16(&s16) && stream.GetParmUint32(&u32) &&
                              stream.GetParmSint32(&s32) && std::strcmp(stream.GetParmString(), "text") == 0 &&
                              stream.GetParmBuf(storage, 8) == 3 && stream.GetParmUint16Array(unsignedShortsRead) &&
                              stream.GetParmSint16Array(shortsRead) && stream.GetParmUint32Array(wordsRead) &&
                              stream.GetParmSint32Array(integersRead);

                 utility::GetStream lines(text, sizeof text - 1);
                 lines.WriteAdvance(sizeof text - 1);
                 char first = 0;
                 whole = whole && lines.GetC(&first) && lines[1] == 'n' && lines.GetLine() != nullptr &&
                         lines.ReadLine() != nullptr && lines.StartInputStream() && lines.isInputStreamOpen() &&
                         !lines.isInputStreamInError() && !lines.isInputStreamAtEnd() && lines.isInputStreamGood() &&
                         lines.ReceiveInputStream(storage, 2) == 2;
                 lines.setInputMode(framework::InputStream::INPUT_DEFAULT);
                 const int size = lines.GetInputStreamSize();
                 lines.EndInputStream();
                 const utility::GetStream nothing;
                 whole = whole && size <= 0 && nothing.pBuffer() == nullptr;

                 utility::PutStream out(storage, sizeof storage);
                 const utility::PutStream none;
                 const BufferStream quiet(storage, 8, true);
                 out.Indent(2);
                 out.PutC('x');
                 out.PutB("yz", 2);
                 out.PutS("text");
                 out.PutF("%d", 5);
                 out.setDecoration(utility::Decorator::Strong);
                 out.setDecoration(utility::Decorator::Normal, &out);
                 whole = whole && utility::Decorator::toToken(utility::Decorator::Strong) != 0 &&
                         out.StartOutputStream() && out.isOutputStreamOpen() && !out.isOutputStreamInError() &&
                         !out.isOutputStreamAtEnd() && out.isOutputStreamGood() && out.SendOutputStream("s", 1);
                 out.FlushOutputStream();
                 out.EndOutputStream();
                 out.setNoThrow(true);
                 whole = whole && out.isNoThrow() && quiet.isNoThrow() && none.Size() == 0 &&
                         out.pHead() - out.pTail() == out.ReadAvailable() && out.WriteRemaining() > 0 &&
                         out.WritePosition() > out.ReadPosition() && out.pBuffer() == storage;
                 out.truncatePartialUtf8();
                 out.ReadAdvance(1);
                 out.Consolidate();
                 stream.Rewind();
                 stream.CopyFrom(&out);
                 utility::NullStream source(8);
                 source.StartInputStream();
                 stream.TransferFromInputStream(source);
                 return whole;
             });
         }},
    };
}

std::vector<Row> memoryStreamRows() {
    using utility::CircularStream;
    using utility::DynamicStream;
    return {
        {"CircularStream: constructor", "1238 bad_alloc",
         [](Trial& trial) {
             construct<CircularStream>(trial, 16);
         }},
        {"CircularStream: new", "1238 bad_alloc null",
         [](Trial& trial) {
             CircularStream* stream = nullptr;
             trial.run([&] { return stream = new CircularStream(16); });
             delete stream;
         }},
        {"CircularStream: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<CircularStream> stream(std::in_place, 8);
             NullStream source(3);
             trial.run([&] {
                 char text[8];
                 bool whole = stream->StartOutputStream() && stream->SendOutputStream("abc", 3) &&
                              stream->isOutputStreamOpen() && !stream->isOutputStreamInError();
                 stream->isOutputStreamAtEnd();
                 stream->EndOutputStream();
                 whole = whole && stream->StartInputStream() && stream->ReceiveInputStream(text, 2) == 2 &&
                         stream->isInputStreamOpen() && !stream->isInputStreamInError();
                 stream->isInputStreamAtEnd();
                 stream->EndInputStream();
                 stream->WriteAdvance(1);
                 stream->ReadAdvance(1);
                 source.StartInputStream();
                 stream->TransferFromInputStream(source);
                 const int held = stream->ReadAvailable() + stream->WriteRemaining();
                 stream.reset();
                 return whole && held > 0;
             });
         }},
        {"DynamicStream: constructor", "same",
         [](Trial& trial) {
             std::optional<DynamicStream> stream;
             trial.run([&] { stream.emplace(8192); });
             if (stream.has_value())
                 stream->SendOutputStream("abc", 3);
         }},
        {"DynamicStream: SendOutputStream", "false",
         [](Trial& trial) {
             DynamicStream stream(9000);
             char data[5000] = {};
             char read[5000];
             data[0] = 'a';
             stream.StartOutputStream();
             trial.run([&] { return stream.SendOutputStream(data, sizeof data); });
             stream.StartInputStream();
             const int count = stream.ReceiveInputStream(read, sizeof read);
             FAULTS_EXPECT(trial.failed() ? count == -1 || count == 4096 : count == 5000);
             stream.StartOutputStream();
             FAULTS_EXPECT(stream.SendOutputStream(data, sizeof data));
         }},
        {"DynamicStream: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<DynamicStream> stream(std::in_place, 100);
             stream->SendOutputStream("abc", 3);
             trial.run([&] {
                 char text[8];
                 stream->StartOutputStream();
                 bool whole = stream->SendOutputStream("abcd", 4) && stream->isOutputStreamOpen() &&
                              !stream->isOutputStreamInError() && stream->isOutputStreamAtEnd();
                 stream->EndOutputStream();
                 whole = whole && stream->StartInputStream() && stream->GetInputStreamSize() == 4 &&
                         stream->ReceiveInputStream(text, 8) == 4 && stream->isInputStreamOpen() &&
                         !stream->isInputStreamInError();
                 stream->isInputStreamAtEnd();
                 stream->EndInputStream();
                 whole = whole && stream->getSize() > 0;
                 stream->reset();
                 stream.reset();
                 return whole;
             });
         }},
        {"NullStream: all", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 NullStream stream(4);
                 char text[8];
                 bool whole = stream.StartInputStream() && stream.isInputStreamOpen() &&
                              stream.ReceiveInputStream(text, 2) == 2 && stream.inputCount() == 2;
                 stream.isInputStreamAtEnd();
                 stream.isInputStreamInError();
                 stream.EndInputStream();
                 whole = whole && stream.StartOutputStream() && stream.isOutputStreamOpen() &&
                         stream.SendOutputStream("a", 1) && stream.outputCount() == 1;
                 stream.isOutputStreamAtEnd();
                 stream.isOutputStreamInError();
                 stream.EndOutputStream();
                 return whole;
             });
         }},
    };
}

// A console without a person: the first key shows the next page.
class PressedKey : public framework::Console {
public:
    explicit PressedKey(framework::OutputStream& out) : m_out(out) {}
    framework::OutputStream& outputStream() override {
        return m_out;
    }
    char readKey() override {
        return ' ';
    }
    void removePrompt(int) override {}

private:
    framework::OutputStream& m_out;
};

std::vector<Row> virtualRows() {
    using utility::PagingVirtualPutStream;
    using utility::VirtualGetStream;
    using utility::VirtualPutStream;
    return {
        {"VirtualPutStream: constructor", "1238 bad_alloc",
         [](Trial& trial) {
             NullStream target(0);
             construct<VirtualPutStream>(trial, target, 16, 8);
         }},
        {"VirtualPutStream: new", "1238 bad_alloc null",
         [](Trial& trial) {
             NullStream target(0);
             VirtualPutStream* stream = nullptr;
             trial.run([&] { return stream = new VirtualPutStream(target, 16, 8); });
             delete stream;
         }},
        {"VirtualPutStream: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             NullStream target(0);
             trial.run([&] {
                 char storage[16];
                 VirtualPutStream stream(target, storage, sizeof storage, 8);
                 const VirtualPutStream without(8);
                 stream.setTrace(false);
                 bool whole = stream.StartOutputStream() && stream.isOutputStreamOpen() &&
                              stream.SendOutputStream("a long text for a small buffer", 30) &&
                              !stream.isOutputStreamInError() && stream.WriteRemaining() > 0;
                 stream.setHoldOutput(true);
                 stream.PutB("held", 4);
                 stream.setHoldOutput(false);
                 stream.PutF("%s", "text");
                 stream.FlushOutputStream();
                 stream.isOutputStreamAtEnd();
                 stream.EndOutputStream();
                 return whole && stream.transferred() > 0 && without.transferred() == 0;
             });
         }},
        {"PagingVirtualPutStream: constructor", "1238 bad_alloc",
         [](Trial& trial) {
             NullStream target(0);
             PressedKey console(target);
             construct<PagingVirtualPutStream>(trial, console, 80, 24, 64, 8);
         }},
        {"PagingVirtualPutStream: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             NullStream target(0);
             target.StartOutputStream();
             PressedKey console(target);
             trial.run([&] {
                 char storage[32];
                 PagingVirtualPutStream stream(console, 10, 3, storage, sizeof storage, 8);
                 stream.setPageSize(12, 3);
                 for (int line = 0; line < 12; ++line)
                     stream.PutF("line %d\n", line);
                 stream.SendOutputStream("more", 4);
                 stream.FlushOutputStream();
                 stream.flushPage(1);
                 return !stream.hasQuit();
             });
         }},
        {"VirtualGetStream: constructor", "1238 bad_alloc",
         [](Trial& trial) {
             NullStream source(64);
             construct<VirtualGetStream>(trial, source, 16, 4, 4, static_cast<char*>(nullptr));
         }},
        {"VirtualGetStream: operator[] out of range", "same bad_alloc",
         [](Trial& trial) {
             NullStream source(4);
             source.StartInputStream();
             VirtualGetStream stream(source, 16, 4, 4, nullptr);
             trial.run([&] { return stream[9]; });
         }},
        {"VirtualGetStream: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             NullStream source(64);
             trial.run([&] {
                 char storage[16];
                 char text[8];
                 VirtualGetStream stream(source, sizeof storage, 4, 4, storage);
                 VirtualGetStream without(4, 4);
                 stream.setTrace(false);
                 stream.setWaitForData(true);
                 bool whole = stream.StartInputStream() && stream.isInputStreamOpen() &&
                              !stream.isInputStreamInError() && !stream.isInputStreamAtEnd();
                 stream.load();
                 whole = whole && stream.ReadAvailable() > 0 && stream[3] == stream[2];
                 stream.MoveTo(2);
                 stream.MoveTo();
                 stream.ReceiveInputStream(text, sizeof text);
                 stream.EndInputStream();
                 return whole && stream.received() > 0 && without.received() == 0;
             });
         }},
    };
}

std::vector<Row> fileRows() {
    using utility::FileInputStream;
    using utility::FileOutputStream;
    return {
        {"FileInputStream: constructor", allocatesNothing,
         [](Trial& trial) {
             std::optional<FileInputStream> stream;
             trial.run([&] { stream.emplace(files().text.c_str()); });
             if (stream.has_value()) {
                 stream->StartInputStream();
                 stream->Reopen();
                 stream->Position(1);
                 FAULTS_EXPECT(stream->isInputStreamOpen() || stream->errorNumber() != 0);
             }
         }},
        {"FileOutputStream: constructor", allocatesNothing,
         [](Trial& trial) {
             std::optional<FileOutputStream> stream;
             trial.run([&] { stream.emplace(files().written.c_str(), false, 0600u); });
             if (stream.has_value()) {
                 const bool sent = stream->StartOutputStream() && stream->SendOutputStream("x", 1);
                 FAULTS_EXPECT(sent || stream->errorNumber() != 0);
             }
         }},
        {"File streams that cannot be opened", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 FileInputStream in("/nonexistent/file");
                 FileOutputStream out("/nonexistent/file", false, 0600);
                 return !in.StartInputStream() && !out.StartOutputStream() && in.isInputStreamInError() &&
                        out.isOutputStreamInError() && in.errorNumber() != 0 && out.errorNumber() != 0;
             });
         }},
        {"FileInputStream: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<FileInputStream> stream(std::in_place, files().text.c_str());
             const int fd = open(files().text.c_str(), O_RDONLY);
             trial.run([&] {
                 char text[8];
                 bool whole = stream->StartInputStream() && stream->isInputStreamOpen() &&
                              stream->GetInputStreamSize() == 8 && stream->Position(4) &&
                              stream->ReceiveInputStream(text, 8) == 4 && stream->At() == 8 &&
                              stream->GetInode() == FileInputStream::GetInode(files().text.c_str());
                 stream->isInputStreamAtEnd();
                 whole = whole && stream->Reopen() >= 0 && !stream->isInputStreamInError();
                 stream->EndInputStream();
                 whole = whole && stream->errorNumber() == 0;
                 stream.reset();
                 FileInputStream adopted(fd);
                 return whole && adopted.isInputStreamOpen();
             });
         }},
        {"FileOutputStream: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             std::optional<FileOutputStream> stream(std::in_place, files().written.c_str(), true, 0600u);
             const int fd = open(files().written.c_str(), O_WRONLY | O_CREAT, 0600);
             trial.run([&] {
                 bool whole = stream->StartOutputStream() && stream->isOutputStreamOpen() &&
                              stream->SendOutputStream("x", 1) && !stream->isOutputStreamInError();
                 stream->isOutputStreamAtEnd();
                 stream->EndOutputStream();
                 whole = whole && stream->errorNumber() == 0;
                 stream.reset();
                 FileOutputStream adopted(fd);
                 return whole && adopted.isOutputStreamOpen();
             });
         }},
        {"DescriptorOutputStream: all operations", allocatesNothing,
         [](Trial& trial) {
             const int fd = open(files().written.c_str(), O_WRONLY | O_CREAT, 0600);
             utility::DescriptorOutputStream stream(fd);
             trial.run([&] {
                 const bool sent = stream.StartOutputStream() && stream.isOutputStreamOpen() &&
                                   stream.SendOutputStream("x", 1) && !stream.isOutputStreamInError() &&
                                   !stream.isOutputStreamAtEnd();
                 stream.EndOutputStream();
                 return sent;
             });
             close(fd);
         }},
        {"TerminalConsole: all operations", allocatesNothing,
         [](Trial& trial) {
             const int in = open(files().text.c_str(), O_RDONLY);
             const int out = open(files().written.c_str(), O_WRONLY | O_CREAT, 0600);
             trial.run([&] {
                 utility::TerminalConsole console(in, out, true);
                 char byte = 0;
                 const bool shown = console.outputStream().SendOutputStream("prompt", 6) && console.readKey() == 'o' &&
                                    console.readByte(&byte) && byte == 'n';
                 console.skipRestOfKey(byte);
                 console.removePrompt(80);
                 utility::TerminalConsole::restoreMode();
                 return shown && console.outputError() == 0;
             });
             close(in);
             close(out);
         }},
    };
}

} // namespace

std::vector<Row> streamRows() {
    std::vector<Row> rows = bufferRows();
    add(rows, memoryStreamRows());
    add(rows, virtualRows());
    add(rows, fileRows());
    return rows;
}

} // namespace faults
