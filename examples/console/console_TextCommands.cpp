#include <algorithm>
#include <string>

#include "console_CommandGroup.h"
#include "console_Files.h"
#include "console_SilentLog.h"
#include "console_Utf8Check.h"
#include "console_WordCounts.h"
#include "ut_Misc.h"
#include "ut_md5.h"

namespace console {

namespace {

bool countWords(Invocation& call) {
    WordCounts counts;
    const bool succeeded = readFile(call, call.word(0), [&](const char* block, int count) {
        std::for_each(block, block + count, [&](char c) { counts.add(c); });
        return true;
    });
    if (!succeeded)
        return false;
    counts.endWord();
    call.answer().table("words", {right("count", 8), left("word")});
    for (const WordCounts::Count* word : counts.sorted())
        call.answer().row({word->second, word->first});
    return true;
}

// Runs `one`, which adds a row with a checksum, for each path, also after a failure. Returns false, with all failures
// joined, if any failed.
bool forEachPath(Invocation& call, const char* checksum, bool (*one)(Invocation& call, const char* path)) {
    call.answer().table("files", {left(checksum, 0, "  "), left("path")});
    std::string failures;
    for (unsigned int i = 0; i < call.wordCount(); ++i) {
        if (Interruption::isRequested())
            break;
        if (!one(call, call.word(i)))
            failures += (failures.empty() ? "" : "; ") + call.failure();
    }
    return failures.empty() || call.fail("%s", failures.c_str());
}

bool showMd5(Invocation& call, const char* path) {
    md5_state_t state;
    unsigned char digest[16];
    char text[33];
    md5_init(&state);
    const bool succeeded = readFile(call, path, [&](const char* block, int count) {
        md5_append(&state, reinterpret_cast<const unsigned char*>(block), count);
        return true;
    });
    if (!succeeded)
        return false;
    md5_finish(&state, digest);
    call.answer().row({utility::Misc::toHexString(digest, sizeof digest, text, sizeof text), path});
    return true;
}

bool md5(Invocation& call) {
    return forEachPath(call, "md5", showMd5);
}

bool showCrc(Invocation& call, const char* path) {
    unsigned char crc = 0xFF;
    char text[3];
    const bool succeeded = readFile(call, path, [&](const char* block, int count) {
        std::for_each(block, block + count,
                      [&](char c) { crc = utility::Misc::crc_table(static_cast<unsigned char>(c), crc); });
        return true;
    });
    if (!succeeded)
        return false;
    call.answer().row({utility::Misc::toHexString(crc, true, text, sizeof text), path});
    return true;
}

bool crc(Invocation& call) {
    return forEachPath(call, "crc", showCrc);
}

bool checkUtf8(Invocation& call) {
    const SilentLog silent;
    Utf8Check check;
    bool good = true;
    const bool read = readFile(call, call.word(0), [&](const char* block, int count) {
        for (int i = 0; good && i < count; ++i)
            good = check.add(block[i]);
        return good;
    });
    if (!read)
        return false;
    if (!good || !check.endCharacter())
        return call.fail("%s: not printable UTF-8 at offset %llu", call.word(0), check.badOffset());
    const std::string path = call.word(0);
    call.answer().line("path", Value(path).shownAs(path + ": printable UTF-8"));
    return true;
}

constexpr Command commands[] = {
    {"count words", "PATH", "count the words of a file, the most frequent first", 1, 1, countWords, COMPLETE_PATHS},
    {"md5", "PATH...", "show the MD5 digests of files", 1, 1000, md5, COMPLETE_PATHS},
    {"crc", "PATH...", "show the CRC-8 of files", 1, 1000, crc, COMPLETE_PATHS},
    {"check utf8", "PATH", "find the first character that is not printable UTF-8", 1, 1, checkUtf8, COMPLETE_PATHS}};

} // namespace

constexpr CommandGroup textCommands("Checksums and texts", commands);

} // namespace console
