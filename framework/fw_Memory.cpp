#include "fw_Memory.h"

#include <atomic>
#include <new>

#include "internal/fw_Text.h"

namespace framework {

namespace {

std::atomic<long> outstanding{0};

} // namespace

Memory::~Memory() = default;

void* Memory::StaticAlloc(unsigned long size) {
    void* piece = ::operator new(size, std::nothrow);
    if (piece != nullptr)
        outstanding.fetch_add(1, std::memory_order_relaxed);
    return piece;
}

void Memory::StaticFree(const void* piece) {
    if (piece == nullptr)
        return;
    outstanding.fetch_sub(1, std::memory_order_relaxed);
    ::operator delete(const_cast<void*>(piece));
}

char* Memory::StaticAllocString(const char* text) {
    return copyText(text, wholeText, StaticAlloc);
}

char* Memory::StaticAllocString(const char* text, unsigned int length) {
    return copyText(text, length, StaticAlloc);
}

void Memory::StaticFreeString(const void* text) {
    StaticFree(text);
}

long Memory::staticOutstanding() {
    return outstanding.load(std::memory_order_relaxed);
}

} // namespace framework
