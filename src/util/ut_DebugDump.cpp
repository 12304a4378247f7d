// Debug: lists of switches and dumps, which need arrays and streams.

#include "ut_Debug.h"

#include <algorithm>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "fw_Exception.h"
#include "fw_Logger.h"
#include "fw_StringRepository.h"
#include "ut_BufferStream.h"
#include "ut_StringArray.h"

namespace utility {

void Debug::setDebugOn(const StringArray* names) {
    if (names == nullptr)
        return;
    for (unsigned int i = 0; i < names->length(); ++i)
        setDebugOn((*names)[i]);
}

void Debug::setDebugOff(const StringArray* names) {
    if (names == nullptr)
        return;
    for (unsigned int i = 0; i < names->length(); ++i)
        setDebugOff((*names)[i]);
}

void Debug::debugState(PutStream* out) {
    if (out == nullptr)
        return;
    for (unsigned int n = 0; n < m_bits.size(); ++n) {
        if (!isDebugOn(n))
            continue;
        const char* name = strings::StringRepository::toString(n);
        if (name != nullptr)
            out->PutF("%s ", name);
    }
}

void Debug::readableString(const char* s, BufferStream* out, int n) {
    if (s == nullptr || out == nullptr)
        return;
    for (int i = 0; i < n; ++i) {
        const unsigned char byte = static_cast<unsigned char>(s[i]);
        if (byte >= 7 && byte <= 13) {
            out->PutF("\\%c", "abtnvfr"[byte - 7]);
        } else if (byte == '"' || byte == '\\') {
            out->PutF("\\%c", byte);
        } else if (byte >= 32 && byte <= 126) {
            out->PutC(s[i]);
        } else {
            out->PutF("\\x%c%c", hexChar(static_cast<char>(byte >> 4)), hexChar(static_cast<char>(byte & 15)));
        }
    }
}

namespace {

constexpr int bytesPerDumpLine = 64;

bool isGraphic(unsigned char byte) {
    return byte >= 33 && byte <= 126;
}

// Returns a stream for a dump, or null, which is logged, if an allocation fails.
std::unique_ptr<BufferStream> makeDumpStream(int size) {
    std::unique_ptr<BufferStream> stream;
    try {
        stream.reset(new BufferStream(size));
    } catch (framework::Exception* failure) {
        delete failure;
    } catch (const std::bad_alloc&) {
        // The exception could not be allocated either.
    }
    if (stream == nullptr)
        framework::Logger::StaticLog(framework::Logger::LOG_ERROR, "failure to allocate buffer");
    return stream;
}

void putDumpLine(BufferStream& out, const unsigned char* bytes, int offset, int count) {
    out.PutF("%04d: ", offset);
    for (int i = 0; i < count; ++i)
        out.PutF("%02x ", bytes[i]);
    out.PutS("\n      ");
    for (int i = 0; i < count; ++i) {
        if (isGraphic(bytes[i])) {
            out.PutF("%c  ", bytes[i]);
        } else {
            out.PutS("   ");
        }
    }
    out.PutS("\n");
}

void putHexByte(BufferStream& out, const unsigned char* bytes, unsigned int held, unsigned int i) {
    if (i < held)
        out.PutF("%02x", bytes[i]);
    else
        out.PutS("  ");
}

void putCharacter(BufferStream& out, const unsigned char* bytes, unsigned int held, unsigned int i) {
    if (i >= held)
        out.PutC(' ');
    else if (bytes[i] < 32 || bytes[i] > 126)
        out.PutS("-");
    else
        out.PutF("%c", bytes[i]);
}

// Writes the line of `bytesPerLine` positions that begins with byte `start` of `data`. Positions past the end of the
// data are blank.
void putFormattedLine(BufferStream& out, const unsigned char* data, unsigned int size, unsigned int start,
                      unsigned int bytesPerLine) {
    const unsigned char* bytes = data + start;
    const unsigned int held = std::min(bytesPerLine, size - start);
    out.PutF("\n[%06d] %02x", static_cast<int>(start), bytes[0]);
    for (unsigned int i = 1; i < bytesPerLine; ++i) {
        if (i % 4 == 0)
            out.PutC(' ');
        putHexByte(out, bytes, held, i);
    }
    out.PutS("  ");
    for (unsigned int i = 0; i < bytesPerLine; ++i)
        putCharacter(out, bytes, held, i);
}

} // namespace

void Debug::hexDump(const char* data, int size) {
    const int room = 0x100000;
    const std::unique_ptr<BufferStream> stream = makeDumpStream(room);
    if (stream == nullptr)
        return;
    stream->PutF("hexDump of [%p], size %d\n\r", static_cast<const void*>(data), size);
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(data);
    const int count = data != nullptr ? size : 0;
    for (int offset = 0; offset < count;) {
        const int length = std::min(bytesPerDumpLine, count - offset);
        char line[512];
        BufferStream lineStream(line, sizeof line, false);
        putDumpLine(lineStream, bytes + offset, offset, length);
        if (stream->WriteRemaining() < lineStream.ReadAvailable()) {
            framework::Logger::StaticLogS(framework::Logger::LOG_DEBUG, stream->pBuffer());
            stream->Rewind();
        }
        stream->PutF("%s", line);
        offset += length;
    }
    framework::Logger::StaticLogS(framework::Logger::LOG_DEBUG, stream->pBuffer());
}

void Debug::hexDumpFormatted(const char* data, unsigned int size, unsigned int bufferKiB, unsigned int bytesPerLine) {
    const unsigned int pageSize = 1024;
    if (data == nullptr)
        return;
    if (bytesPerLine == 0)
        bytesPerLine = 16;
    BufferStream stream(static_cast<int>(std::min(bufferKiB, 0x1FFFFFU) * 1024));
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(data);
    for (unsigned int page = 0; page < size;) {
        if (page == 0)
            stream.PutF("\nHexDump of [%p], size %d", static_cast<const void*>(data), static_cast<int>(size));
        const unsigned int pageEnd = page + std::min(pageSize, size - page);
        for (unsigned int start = page; start < pageEnd;) {
            putFormattedLine(stream, bytes, size, start, bytesPerLine);
            if (bytesPerLine >= pageEnd - start)
                break;
            start += bytesPerLine;
        }
        stream.PutS("\n\r");
        framework::Logger::StaticLogS(framework::Logger::LOG_DEBUG, stream.pBuffer());
        std::memset(stream.pBuffer(), 0, static_cast<std::size_t>(stream.Size()));
        stream.Rewind();
        page = pageEnd;
    }
}

void Debug::reverseHexDump(const char* data, int size) {
    const int bytesPerLine = 16;
    std::printf("hexDump of [%p], size %d\n\r", static_cast<const void*>(data), size);
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(data);
    for (int left = data != nullptr ? size : 0; left > 0;) {
        const int count = std::min(bytesPerLine, left);
        left -= count;
        std::printf("%08" PRIxPTR ": ", reinterpret_cast<std::uintptr_t>(bytes + left));
        for (int i = 0; i < count; ++i)
            std::printf("%02x ", bytes[left + i]);
        std::printf("\n\r      ");
    }
}

} // namespace utility
