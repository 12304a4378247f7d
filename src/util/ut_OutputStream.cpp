#include "ut_OutputStream.h"

#include "ut_InputStream.h"

namespace framework {

OutputStream::~OutputStream() = default;

void OutputStream::FlushOutputStream() {}

bool OutputStream::TransferFromInputStream(InputStream& in) {
    char block[16384];
    while (in.isInputStreamGood()) {
        const int count = in.ReceiveInputStream(block, sizeof block);
        if (count < 0)
            return false;
        if (count == 0)
            return true;
        if (!SendOutputStream(block, static_cast<unsigned int>(count)))
            return false;
    }
    if (in.isInputStreamInError())
        return false;
    return in.isInputStreamAtEnd();
}

bool OutputStream::isOutputStreamGood() {
    return isOutputStreamOpen() && !isOutputStreamInError() && !isOutputStreamAtEnd();
}

} // namespace framework
