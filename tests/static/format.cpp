// Formats one text.
#include <cstdio>

#include <VXut/ut_PutStream.h>

int main() {
    char text[32];
    utility::PutStream(text, sizeof text).PutF("%s=%d", "ports", 4);
    return std::puts(text) < 0 ? 1 : 0;
}
