// Writes parameters and reads them back.
#include <cstdio>

#include <VXut/ut_GetStream.h>
#include <VXut/ut_PutStream.h>

int main() {
    char bytes[64] = {};
    utility::PutStream out(bytes, sizeof bytes);
    out.PutParmUint32(4711);
    out.PutParmString("ports");

    utility::GetStream in(bytes, sizeof bytes - 1);
    in.WriteAdvance(sizeof bytes - 1);
    unsigned int number = 0;
    const bool isRead = in.GetParmUint32(&number);
    return !isRead || std::printf("%u %s\n", number, in.GetParmString()) < 0 ? 1 : 0;
}
