// Loaded and unloaded again and again while soak.cpp runs: uses the library from its start, at its end and in between.

#include "fw_StableStringRepository.h"
#include "ut_BufferStream.h"

namespace {

struct AtLoadAndUnload {
    AtLoadAndUnload() {
        strings::GS.toToken("soak: module");
    }
    ~AtLoadAndUnload() {
        strings::GS.toToken("soak: module");
    }
};

const AtLoadAndUnload atLoadAndUnload;

} // namespace

// Whether the library still works from here.
extern "C" __attribute__((visibility("default"))) bool usesLibrary() {
    utility::BufferStream stream(64);
    stream.PutF("%s %d", "soak", 64);
    return stream.ReadAvailable() == 7;
}
