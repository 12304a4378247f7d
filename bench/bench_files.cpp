// Lines to and from a file beside stdio, with buffers of the same size.

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <unistd.h>

#include "bench.h"
#include "ut_FileInputStream.h"
#include "ut_FileOutputStream.h"
#include "ut_VirtualGetStream.h"
#include "ut_VirtualPutStream.h"

namespace bench {
namespace {

constexpr int bufferSize = 4096;
constexpr long lineCount = 10000;
constexpr char lineText[] = "controller A, port 3: link up, 16 Gbit/s\n";

// A file that is deleted on destruction.
class File {
public:
    File() {
        const char* const folder = std::getenv("TMPDIR");
        m_path = std::string(folder != nullptr ? folder : "/tmp") + "/bench.XXXXXX";
        const int descriptor = mkstemp(&m_path[0]);
        if (descriptor < 0) {
            std::perror(path());
            std::exit(2);
        }
        close(descriptor);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        unlink(path());
    }
    const char* path() const {
        return m_path.c_str();
    }
    std::string content() const {
        std::string content;
        std::FILE* const file = std::fopen(path(), "r");
        for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file))
            content += static_cast<char>(c);
        std::fclose(file);
        return content;
    }

private:
    std::string m_path;
};

// Both write lineCount lines and then start the file again, so that it does not grow.
template<typename Ours, typename Theirs>
void linesOut(Bench& bench, const Row& row, Ours put, Theirs print) {
    const File ourFile;
    const File theirFile;
    utility::FileOutputStream target(ourFile.path(), false, 0600);
    utility::VirtualPutStream out(target, bufferSize, bufferSize - 64);
    std::FILE* const file = std::fopen(theirFile.path(), "w");
    std::setvbuf(file, nullptr, _IOFBF, bufferSize);

    const auto ours = [&](long call) {
        if (call % lineCount == 0) {
            out.FlushOutputStream();
            target.StartOutputStream();
        }
        put(out, call);
    };
    const auto theirs = [&](long call) {
        if (call % lineCount == 0)
            std::rewind(file);
        print(file, call);
    };
    for (long call = 0; call < lineCount; ++call) {
        ours(call);
        theirs(call);
    }
    out.FlushOutputStream();
    std::fflush(file);
    const std::string content = ourFile.content();
    bench.row(row, !content.empty() && content == theirFile.content(), ours, theirs);
    std::fclose(file);
}

// Both return the number of bytes in all lines, and the sum of the first bytes.
struct Sums {
    std::size_t bytes = 0;
    std::size_t first = 0;

    void add(const char* line, std::size_t length) {
        bytes += length;
        first += static_cast<unsigned char>(line[0]);
    }
    bool operator==(const Sums& other) const {
        return bytes == other.bytes && first == other.first;
    }
};

void linesIn(Bench& bench) {
    const File lines;
    std::FILE* const writer = std::fopen(lines.path(), "w");
    for (long line = 0; line < lineCount; ++line)
        std::fprintf(writer, "%ld: %.*s", line, static_cast<int>(line % 38), lineText), std::fputc('\n', writer);
    std::fclose(writer);

    utility::FileInputStream source(lines.path());
    utility::VirtualGetStream in(source, bufferSize, 0, 256, nullptr);
    const auto ours = [&] {
        Sums sums;
        in.StartInputStream();
        for (char* line = in.ReadLine(); line != nullptr; line = in.ReadLine())
            sums.add(line, std::strlen(line));
        in.EndInputStream();
        return sums;
    };

    std::FILE* const file = std::fopen(lines.path(), "r");
    std::setvbuf(file, nullptr, _IOFBF, bufferSize);
    char* buffer = nullptr;
    std::size_t size = 0;
    const auto theirs = [&] {
        Sums sums;
        std::rewind(file);
        for (ssize_t length = getline(&buffer, &size, file); length > 0; length = getline(&buffer, &size, file)) {
            buffer[length - 1] = 0;
            sums.add(buffer, std::strlen(buffer));
        }
        return sums;
    };
    bench.row(
        {"lines from a file: ReadLine", "getline(3)", 0.85, lineCount}, ours() == theirs(), [&](long) { keep(ours()); },
        [&](long) { keep(theirs()); });
    std::free(buffer);
    std::fclose(file);
}

} // namespace

void benchFiles(Bench& bench) {
    const char* const line = hide(&lineText[0]);
    linesOut(
        bench, {"lines to a file: PutS", "fputs", 0.9}, [&](utility::VirtualPutStream& out, long) { out.PutS(line); },
        [&](std::FILE* file, long) { std::fputs(line, file); });
    const int length = hide(static_cast<int>(sizeof lineText - 1));
    linesOut(
        bench, {"lines to a file: PutB", "fwrite", 1.0},
        [&](utility::VirtualPutStream& out, long) { out.PutB(line, length); },
        [&](std::FILE* file, long) { std::fwrite(line, 1, static_cast<std::size_t>(length), file); });
    const char* const name = hide("controller A");
    linesOut(
        bench, {"lines to a file: PutF", "fprintf", 0.8},
        [&](utility::VirtualPutStream& out, long call) {
            out.PutF("%s, port %d: errors %u\n", name, static_cast<int>(call % 8), static_cast<unsigned int>(call));
        },
        [&](std::FILE* file, long call) {
            std::fprintf(file, "%s, port %d: errors %u\n", name, static_cast<int>(call % 8),
                         static_cast<unsigned int>(call));
        });
    linesIn(bench);
}

} // namespace bench
