#include <cstdio>

#include <VXut/VXut.h>

int main() {
    char text[8];
    utility::PutStream out(text, sizeof text);
    out.PutF("%s=%d", "port", 4);
    try {
        out.PutC('x');
        out.PutC('y');
    } catch (framework::Exception* failure) {
        std::printf("%s %u %s\n", text, failure->code(), failure->file());
        delete failure;
    }
    return 0;
}
